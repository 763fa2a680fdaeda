#include "db/TextEntry.h"

#include <gtest/gtest.h>

#include "db/FieldValue.h"

namespace quillary {
namespace {

constexpr auto kMDY = DateOrder::MonthDayYear;
constexpr auto kDMY = DateOrder::DayMonthYear;
constexpr auto kYMD = DateOrder::YearMonthDay;

TEST(TextEntry, Dates) {
    const std::tuple<const char*, DateOrder, CivilDate> kCases[] = {
        {"2004-03-07", kMDY, {2004, 3, 7}},     {" 2004-3-7 ", kDMY, {2004, 3, 7}},
        {"March 07, 2004", kDMY, {2004, 3, 7}}, {"mArCh 7 2004", kYMD, {2004, 3, 7}},
        {"03/07/2004", kMDY, {2004, 3, 7}},     {"03.07.2004", kDMY, {2004, 7, 3}},
        {"3-7-2004", kDMY, {2004, 7, 3}},       {"2004/03/07", kYMD, {2004, 3, 7}},
        {"3/7/04", kMDY, {2004, 3, 7}},         {"01/01/0100", kMDY, {100, 1, 1}},
        {"04/03/202", kMDY, {202, 4, 3}},       {"202-04-03", kYMD, {202, 4, 3}},
    };
    for (const auto& [text, order, date] : kCases) EXPECT_EQ(DateToDay(date), ParseDate(text, order, 2000)) << text;
    for (const char* refused : {"", "March7, 2004", "Mar 7, 2004", "2004/03/07", "13/01/2004", "03/07.2004",
                                "02/29/1900", "3/7/004", "1/1/0", "36500", "12/12/12345", "2004-03-07T10:00"}) {
        EXPECT_FALSE(ParseDate(refused, kMDY, 2000)) << refused;
    }
    for (const char* halfTyped : {"04/03/202", "04.03.202", "April 3, 202"}) {
        EXPECT_FALSE(ParseDate(halfTyped, kMDY, 2000, ShortYears::Refused)) << halfTyped;
    }
    EXPECT_TRUE(ParseDate("04/03/0202", kMDY, 2000, ShortYears::Refused));
    EXPECT_FALSE(ParseDate("3/7/04", kMDY, std::nullopt)) << "two digits of a year without a century";
}

TEST(TextEntry, Times) {
    const std::pair<const char*, int> kMinutes[] = {{"10:30", 630},   {"0:00", 0},      {"23:59:59", 1439},
                                                    {"12:30 am", 30}, {"12:30PM", 750}, {" 1:05 pm ", 785}};
    for (const auto& [text, minutes] : kMinutes) EXPECT_EQ(minutes * 60, ParseTime(text)) << text;
    for (const char* refused :
         {"24:00", "13:00 pm", "0:30 am", "10:5", "10", "10:30:", "10:60", "10:30 xm", "10:30 am.", "36000"}) {
        EXPECT_FALSE(ParseTime(refused)) << refused;
    }
}

TEST(TextEntry, WhatIsShownCanBeEntered) {
    for (const std::int32_t day : {-658896, -1, 0, 36591, 2957003}) {
        for (const DateStyle style : {DateStyle::Numeric, DateStyle::Long}) {
            const std::string shown = DisplayText(FieldType::Date, std::to_string(day), style, AnsiText::Windows1252());
            EXPECT_EQ(day, ParseDate(shown, kMDY, std::nullopt)) << shown;
        }
    }
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const std::string stored = std::to_string(minute * 60);
        EXPECT_EQ(minute * 60,
                  ParseTime(DisplayText(FieldType::Time, stored, DateStyle::Numeric, AnsiText::Windows1252())));
    }
    EXPECT_TRUE(IsNoDate(" no date "));
    EXPECT_FALSE(IsNoDate("No Time"));
    EXPECT_TRUE(IsNoTime(""));
}

TEST(TextEntry, NumbersAndCheckBoxes) {
    for (const char* number : {"0", "-1", "1.5", ".5", "5.", "007"}) EXPECT_TRUE(IsPlainNumber(number)) << number;
    for (const char* other : {"", "-", ".", "1.2.3", "1,5", "+1", " 1", "1e3", "1-"})
        EXPECT_FALSE(IsPlainNumber(other)) << other;
    EXPECT_TRUE(IsPlainInteger("-12"));
    EXPECT_FALSE(IsPlainInteger("1.0"));
    EXPECT_EQ(true, ParseCheckBox("YES"));
    EXPECT_EQ(false, ParseCheckBox("0"));
    EXPECT_FALSE(ParseCheckBox("ja"));
}

}  // namespace
}  // namespace quillary
