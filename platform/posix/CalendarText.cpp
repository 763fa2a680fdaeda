#include "platform/posix/CalendarText.h"

#include <libical/ical.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

#include "integration/Appointment.h"
#include "integration/ItemText.h"

namespace quillary {

namespace {

constexpr int kSecondsADay = 24 * 60 * 60;

struct FreeComponent {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
struct FreeText {
    void operator()(char* text) const { icalmemory_free_buffer(text); }
};

// As text: the library has no values for years behind 3000, though it reads and writes them.
std::string Day(double day) {
    const CivilDate date = DateOfDay(day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d%02d%02d", static_cast<int>(date.year), date.month, date.day);
    return text;
}

// Without a zone, so floating: the same hour wherever the calendar is looked at.
std::string DayAndTime(double day, double timeOfDay) {
    const auto seconds = static_cast<int>(std::lround(std::clamp(timeOfDay, 0.0, 1.0) * kSecondsADay));
    const int wholeDays = seconds / kSecondsADay;
    const int ofDay = seconds % kSecondsADay;
    char text[48];
    std::snprintf(text, sizeof text, "T%02d%02d%02d", ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
    return Day(day + wholeDays) + text;
}

void Add(const std::string& property, icalcomponent* event) {
    icalcomponent_add_property(event, icalproperty_new_from_string(property.c_str()));  // and takes it over
}

void AddTimes(const Appointment& appointment, icalcomponent* event) {
    if (!appointment.IsAllDay()) {
        Add("DTSTART:" + DayAndTime(appointment.date, appointment.startTime), event);
        Add("DTEND:" + DayAndTime(appointment.date, appointment.endTime), event);
        return;
    }
    const std::string start = Day(appointment.date);
    const std::string next = Day(appointment.date + 1);
    Add("DTSTART;VALUE=DATE:" + start, event);
    // A whole day ends with the day behind it. The last day that a date can have has none; an event that starts with a
    // date and has no end lasts that day.
    if (next != start) Add("DTEND;VALUE=DATE:" + next, event);
}

}  // namespace

std::string CalendarText(const Appointment& appointment, const std::string& uid, std::time_t stamp) {
    const std::unique_ptr<icalcomponent, FreeComponent> calendar(icalcomponent_new_vcalendar());
    icalcomponent* event = icalcomponent_new_vevent();
    if (!calendar || !event) return {};
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Telvane//Quillary//EN"));
    icalcomponent_add_component(calendar.get(), event);

    icalcomponent_add_property(event, icalproperty_new_uid(uid.c_str()));
    const icaltimetype made = icaltime_from_timet_with_zone(stamp, 0, icaltimezone_get_utc_timezone());
    icalcomponent_add_property(event, icalproperty_new_dtstamp(made));
    AddTimes(appointment, event);
    // An empty text is read as a fault.
    const std::string subject = PlainLines(appointment.subject);
    if (!subject.empty()) icalcomponent_add_property(event, icalproperty_new_summary(subject.c_str()));
    const std::string body = PlainLines(appointment.body);
    if (!body.empty()) icalcomponent_add_property(event, icalproperty_new_description(body.c_str()));

    const std::unique_ptr<char, FreeText> text(icalcomponent_as_ical_string_r(calendar.get()));
    return text ? std::string(text.get()) : std::string();
}

}  // namespace quillary
