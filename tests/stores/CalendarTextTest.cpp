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

// The values of the one event's properties as `kinds` lists them: texts as they are, times as they stand there.
std::vector<std::string> Read(const std::string& text, const std::vector<icalproperty_kind>& kinds) {
    const std::unique_ptr<icalcomponent, void (*)(icalcomponent*)> calendar(icalparser_parse_string(text.c_str()),
                                                                            icalcomponent_free);
    EXPECT_TRUE(calendar && icalcomponent_isa(calendar.get()) == ICAL_VCALENDAR_COMPONENT);
    EXPECT_EQ(0, icalcomponent_count_errors(calendar.get())) << text;
    EXPECT_EQ(1, icalcomponent_count_components(calendar.get(), ICAL_ANY_COMPONENT));
    icalcomponent* event = icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT);
    std::vector<std::string> values;
    for (const icalproperty_kind kind : kinds) {
        icalproperty* property = icalcomponent_get_first_property(event, kind);
        icalvalue* value = property ? icalproperty_get_value(property) : nullptr;
        const bool isText = value && icalvalue_isa(value) == ICAL_TEXT_VALUE;
        values.emplace_back(!value ? "none" : isText ? icalvalue_get_text(value) : icalvalue_as_ical_string(value));
    }
    return values;
}

constexpr double kHour = 1.0 / 24;
constexpr double kMinute = kHour / 60;

TEST(CalendarText, Times) {
    const struct {
        const char* why;
        double date, start, end;
        const char *starts, *ends;
    } kCases[] = {
        {"a whole day ends before the next", 36585, 0, 0, "20000229", "20000301"},
        {"the last day has no next", 2958465, 0, 0, "99991231", "none"},
        {"years that the library has no values for", 2958465, kHour, kHour, "99991231T010000", "99991231T010000"},
        {"the first one", -657434, 0, 0, "01000101", "01000102"},
        {"a minute that no fraction holds exactly", 36526, 23 * kHour + 59 * kMinute, kMinute, "20000101T235900",
         "20000101T000100"},
        {"an end before the start stays", 36526, 15 * kHour, 0, "20000101T150000", "20000101T000000"},
        {"a start at midnight", 36526, 0, kHour, "20000101T000000", "20000101T010000"},
    };
    for (const auto& c : kCases) {
        const std::string text = CalendarText({c.date, true, c.start, c.end, u"", u""}, "u1", 951782400);
        EXPECT_EQ((std::vector<std::string>{c.starts, c.ends, "u1", "20000229T000000Z", "none"}),
                  Read(text, {ICAL_DTSTART_PROPERTY, ICAL_DTEND_PROPERTY, ICAL_UID_PROPERTY, ICAL_DTSTAMP_PROPERTY,
                              ICAL_SUMMARY_PROPERTY}))
            << c.why;
    }
}

TEST(CalendarText, TextsComeBackAndStayInTheirProperty) {
    const std::tuple<std::u16string, std::string> kCases[] = {
        {u"A: 1\n\rB: 2\n\rC: 3", "A: 1\nB: 2\nC: 3"},
        {u"A: 1\r\n2\r\n\n\rB: x\ry\nz", "A: 1\n2\n\nB: x\ny\nz"},
        {u"a;b,c\\d\\n:\"e\" 100 %s", "a;b,c\\d\\n:\"e\" 100 %s"},
        {u"a\0\x1b\x07\x7f\tb\xDC00"s, "a\tb\xEF\xBF\xBD"},
        {std::u16string(200, u'漢'), WideToUtf8(std::u16string(200, u'漢'))},
    };
    for (const auto& [given, read] : kCases) {
        const std::string text = CalendarText({0, true, 0, 0, given, given}, "u1", 0);
        EXPECT_EQ((std::vector{read, read}), Read(text, {ICAL_SUMMARY_PROPERTY, ICAL_DESCRIPTION_PROPERTY}));
        for (std::size_t at = 0, end = 0; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
            EXPECT_TRUE(end - at <= 75 && Utf8ToWide(std::string_view(text).substr(at, end - at))) << text;
        }
    }
}

}  // namespace
}  // namespace quillary
