// Events as another program's calendar library reads them.
#include "platform/posix/CalendarText.h"

#include <gtest/gtest.h>
#include <libical/ical.h>

#include <memory>

#include "db/Utf.h"
#include "integration/Appointment.h"

namespace quillary {

namespace {

using namespace std::string_literals;

struct Event {
    std::string start, end, summary, description, uid, stamp;  // times as they stand in the text
};

std::string ValueOf(icalcomponent* event, icalproperty_kind kind) {
    icalproperty* property = icalcomponent_get_first_property(event, kind);
    if (!property) return "none";
    EXPECT_EQ(nullptr, icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER));
    char* text = icalvalue_as_ical_string_r(icalproperty_get_value(property));
    std::string value = text;
    icalmemory_free_buffer(text);
    return value;
}

Event Parse(const std::string& text) {
    const std::unique_ptr<icalcomponent, void (*)(icalcomponent*)> calendar(icalparser_parse_string(text.c_str()),
                                                                            icalcomponent_free);
    EXPECT_TRUE(calendar);
    if (!calendar) return {};
    EXPECT_EQ(0, icalcomponent_count_errors(calendar.get())) << text;
    EXPECT_EQ(ICAL_VCALENDAR_COMPONENT, icalcomponent_isa(calendar.get()));
    EXPECT_EQ(1, icalcomponent_count_components(calendar.get(), ICAL_ANY_COMPONENT));
    EXPECT_NE("none", ValueOf(calendar.get(), ICAL_PRODID_PROPERTY));
    icalcomponent* event = icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT);
    const char* summary = icalcomponent_get_summary(event);
    const char* description = icalcomponent_get_description(event);
    return {ValueOf(event, ICAL_DTSTART_PROPERTY),
            ValueOf(event, ICAL_DTEND_PROPERTY),
            summary ? summary : "none",
            description ? description : "none",
            icalcomponent_get_uid(event),
            ValueOf(event, ICAL_DTSTAMP_PROPERTY)};
}

constexpr double kHour = 1.0 / 24;
constexpr double kMinute = kHour / 60;

TEST(CalendarText, Times) {
    const struct {
        const char* why;
        double date, start, end;
        const char *starts, *ends;
    } kCases[] = {
        {"a whole day ends before the next", 36526, 0, 0, "20000101", "20000102"},
        {"over the end of a leap year's February", 36585, 0, 0, "20000229", "20000301"},
        {"no date at all", 0, 0, 0, "18991230", "18991231"},
        {"the last day has no next", 2958465, 0, 0, "99991231", "none"},
        {"the first one", -657434, 0, 0, "01000101", "01000102"},
        {"times of no zone", 36526, 9 * kHour, 10 * kHour + 30 * kMinute, "20000101T090000", "20000101T103000"},
        {"a minute that no fraction holds exactly", 36526, 23 * kHour + 59 * kMinute, kMinute, "20000101T235900",
         "20000101T000100"},
        {"an end before the start stays", 36526, 15 * kHour, 0, "20000101T150000", "20000101T000000"},
        {"years that the library has no values for", 2958465, kHour, kHour, "99991231T010000", "99991231T010000"},
        {"a start at midnight", 36526, 0, kHour, "20000101T000000", "20000101T010000"},
        {"no date, but a time", 0, kHour, kHour, "18991230T010000", "18991230T010000"},
    };
    for (const auto& c : kCases) {
        Appointment appointment;
        appointment.date = c.date;
        appointment.startTime = c.start;
        appointment.endTime = c.end;
        const Event event = Parse(CalendarText(appointment, "u1", 951782400));
        EXPECT_EQ(c.starts, event.start) << c.why;
        EXPECT_EQ(c.ends, event.end) << c.why;
        EXPECT_EQ("u1", event.uid) << c.why;
        EXPECT_EQ("20000229T000000Z", event.stamp) << c.why;
    }
}

TEST(CalendarText, TextsComeBackAndStayInTheirProperty) {
    const struct {
        const char* why;
        std::u16string body;
        std::string read;
    } kCases[] = {
        {"none", u"", "none"},
        {"a line a field", u"A: 1\n\rB: 2\n\rC: 3", "A: 1\nB: 2\nC: 3"},
        {"lines inside a value", u"A: 1\r\n2\r\n\n\rB: x\ry\nz", "A: 1\n2\n\nB: x\ny\nz"},
        {"another event", u"x\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nATTACH:file:///etc/passwd",
         "x\nEND:VEVENT\nBEGIN:VEVENT\nATTACH:file:///etc/passwd"},
        {"marks", u"a;b,c\\d\\n:\"e\" 100 %s", "a;b,c\\d\\n:\"e\" 100 %s"},
        {"control characters but tabs", u"a\0\x1b\x07\x7f\tb"s, "a\tb"},
        {"half a character", u"\xDC00", "\xEF\xBF\xBD"},
        {"a long line of wide characters", std::u16string(200, u'漢'), WideToUtf8(std::u16string(200, u'漢'))},
    };
    for (const auto& c : kCases) {
        Appointment appointment;
        appointment.body = c.body;
        appointment.subject = c.body;
        const std::string text = CalendarText(appointment, "u1", 0);
        const Event event = Parse(text);
        EXPECT_EQ(c.read, event.description) << c.why;
        EXPECT_EQ(c.read, event.summary) << c.why;
        for (std::size_t at = 0, end = 0; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
            EXPECT_LE(end - at, 75U) << c.why;
            EXPECT_TRUE(Utf8ToWide(std::string_view(text).substr(at, end - at))) << c.why;
        }
    }
}

}  // namespace

}  // namespace quillary
