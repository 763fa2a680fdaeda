#include "db/FieldValue.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>

#include "db/NumericEntry.h"

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

TEST(FieldValue, Display) {
    const std::tuple<const char*, FieldType, const char*, const char*> kCases[] = {
        {"day 0", FieldType::Date, "0", "01/01/1904"},
        {"a leap day", FieldType::Date, "35123", "02/29/2000"},
        {"before the epoch", FieldType::Date, "-1", "12/31/1903"},
        {"the first day of year 100", FieldType::Date, "-658896", "01/01/100"},
        {"a day earlier shows as stored", FieldType::Date, "-658897", "-658897"},
        {"a day later shows as stored", FieldType::Date, "2957004", "2957004"},
        {"letters count as 0", FieldType::Date, "abc", "01/01/1904"},
        {"digits up to a letter", FieldType::Date, " 12x", "01/13/1904"},
        {"no date", FieldType::Date, "", "No Date"},
        {"far out of 32 bits", FieldType::Date, "99999999999999999999", "99999999999999999999"},
        {"midnight is a time", FieldType::Time, "0", "12:00 am"},
        {"but a padded zero is none", FieldType::Time, "00", "No Time"},
        {"and so are letters", FieldType::Time, "abc", "No Time"},
        {"noon", FieldType::Time, "43200", "12:00 pm"},
        {"seconds do not show", FieldType::Time, "59", "12:00 am"},
        {"hours wrap after a day", FieldType::Time, "90000", "01:00 am"},
        {"a negative count shows as stored", FieldType::Time, "-60", "-60"},
        {"no time", FieldType::Time, "", "No Time"},
        {"seven digits", FieldType::Phone, "555 12 34", "555-1234"},
        {"letters stop the digits", FieldType::Phone, "call 5551234", "call 5551234"},
        {"letters behind them too", FieldType::Phone, "5551234 x", "5551234 x"},
        {"ten digits", FieldType::Phone, "555.123.4567", "(555) 123-4567"},
        {"eleven", FieldType::Phone, "+1 555 123 4567", "+1 555 123 4567"},
        {"an accented letter is one", FieldType::Phone, "\xE9 5551234", "\xE9 5551234"},
        {"checked in any case", FieldType::Checkbox, "yEs", "true"},
        {"a letter is not", FieldType::Checkbox, "T", "false"},
        {"nor a longer word", FieldType::Checkbox, "yes please", "false"},
        {"line ends become uniform", FieldType::Text, "a\nb\r\nc\rd", "a\r\nb\r\nc\rd"},
        {"a list item too", FieldType::List, "a\n", "a\r\n"},
    };
    for (const auto& [name, type, stored, shown] : kCases) {
        EXPECT_EQ(shown, DisplayText(type, stored, DateStyle::Numeric, kPage)) << name;
    }
    EXPECT_EQ("March 07, 2004", DisplayText(FieldType::Date, "36591", DateStyle::Long, kPage));
}

TEST(FieldValue, EveryDayComesBackAndTheCalendarHasNoGap) {
    CivilDate previous = DayToDate(-658896);
    for (std::int32_t day = -658895; day <= 2957003; ++day) {
        const CivilDate date = DayToDate(day);
        const bool next = (date.day == previous.day + 1 && date.month == previous.month) ||
                          (date.day == 1 && date.month == previous.month + 1) ||
                          (date.day == 1 && date.month == 1 && date.year == previous.year + 1);
        if (!next || DateToDay(date) != day) FAIL() << day;
        previous = date;
    }
    EXPECT_FALSE(DateToDay({1900, 2, 29}));
    EXPECT_FALSE(DateToDay({99, 1, 1}));
    EXPECT_FALSE(DateToDay({2003, 4, 31}));
    EXPECT_FALSE(DateToDay({2003, 13, 1}));
}

TEST(FieldValue, NumbersReadTheSameInEveryLocale) {
    constexpr double kMax = std::numeric_limits<double>::max();
    const std::pair<const char*, double> kCases[] = {{"12.5", 12.5}, {" \t-3", -3}, {"+4", 4},       {"1,500", 1},
                                                     {".5", 0.5},    {"5.", 5},     {"1e3", 1000},   {"1e", 1},
                                                     {"2e+x", 2},    {"12abc", 12}, {"1e999", kMax}, {"-1e999", -kMax}};
    for (const auto& [text, value] : kCases) EXPECT_EQ(value, ReadNumber(text)) << text;
    for (const char* none : {"", "+-4", ".", "-", "0x10", "inf", "nan", "1e-999", "0.000e99999999999"}) {
        EXPECT_EQ(0, ReadNumber(none)) << none;
    }
    EXPECT_EQ(kMax, ReadNumber(std::string(400, '9')));
    EXPECT_EQ(0, ReadNumber("0." + std::string(400, '0') + "1"));
}

TEST(FieldValue, PhonesAreStoredAsDigitsOnlyWhenThereAreSevenOrTen) {
    EXPECT_EQ("5551234", NormalizePhone("555-1234", kPage));
    EXPECT_EQ("5551234567", NormalizePhone("(555) 123-4567", kPage));
    EXPECT_EQ("555 123", NormalizePhone("555 123", kPage));
    EXPECT_EQ("555-1234 home", NormalizePhone("555-1234 home", kPage));
    EXPECT_TRUE(rc::check("what is stored shows the same as what was typed", [] {
        const auto typed = *rc::gen::resize(
            14, rc::gen::container<std::string>(rc::gen::elementOf(std::string("01234567890123456789 -(.)+x\xE9"))));
        RC_ASSERT(DisplayText(FieldType::Phone, typed, DateStyle::Numeric, kPage) ==
                  DisplayText(FieldType::Phone, NormalizePhone(typed, kPage), DateStyle::Numeric, kPage));
    }));
}

TEST(NumericEntry, KeysValidityAndCleaning) {
    for (const char16_t* valid : {u"", u"12", u"-1.5", u" -1 ", u".", u"-", u"abc"})
        EXPECT_TRUE(IsValidNumericText(valid));
    for (const char16_t* invalid : {u"12.5.", u"12-", u"--1", u"1.2.3"}) EXPECT_FALSE(IsValidNumericText(invalid));
    for (const char16_t accepted : {u'0', u'9', u'.', u'-', u'\b'}) EXPECT_TRUE(AcceptsNumericKey(accepted));
    for (const char16_t refused : {u'/', u':', u',', u' ', u'a', u'\u0661', u'\r'})
        EXPECT_FALSE(AcceptsNumericKey(refused));
    EXPECT_EQ(u"12", CleanNumericText(u"abc12x3"));
    EXPECT_EQ(u"", CleanNumericText(u"1-2"));
    EXPECT_EQ(u"-.5", CleanNumericText(u"x-.5kg"));
    EXPECT_EQ(u"", CleanNumericText(u"abc"));
}

}  // namespace
}  // namespace quillary
