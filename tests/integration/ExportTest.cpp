// What records become in an export, and the run that hands the items to a store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "integration/ExportCalendar.h"
#include "integration/ExportContacts.h"
#include "integration/ExportRun.h"
#include "tests/fakes/FakePersonalStore.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using ::testing::ElementsAre;

constexpr DateHabits kHabits{DateOrder::DayMonthYear, 2000};
constexpr int kWhat = 0, kDay = 1, kFrom = 2, kTo = 3, kFlag = 4, kSecondDay = 5, kSecondWhat = 6;

class ExportTest : public ::testing::Test {
  protected:
    void Load(const std::vector<std::vector<std::string>>& records) {
        ImageParts parts;
        parts.AddSchema({"What", "Day", "From", "To", "Flag", "Day", "What"}, {"T", "D", "d", "d", "B", "D", "D"});
        for (const auto& record : records) parts.Add(2, record);
        files.contents["/x.pdb"] = parts.Build();
        ScriptedQuestions questions;
        ASSERT_TRUE(doc.OpenDatabase("/x.pdb", OpenMode::Read, questions));
    }
    double DateFrom(int field, std::size_t row = 0) {
        return MakeAppointment(doc, row, {field, -1, -1, {}}, kHabits).date;
    }

    MemoryFiles files;
    CQuillaryDoc doc{files};
};

TEST_F(ExportTest, DaysAndTimesComeFromTheStoredCounts) {
    const struct {
        const char* name;
        const char *day, *from, *to;
        bool isRead;
        double date, startMinute, endMinute;
        bool isAllDay;
    } kRows[] = {
        {"7 March 2004, 2:30 pm to 3 pm", "36591", "52200", "54000", true, 38053, 870, 900, false},
        {"the first day of the count", "0", "", "", true, 1462, 0, 0, true},
        {"the day that the store counts from", "-1462", "0", "0", true, 0, 0, 0, true},
        {"seconds do not count, hours wrap", "1", "90059", "86340", true, 1463, 60, 1439, false},
        {"a padded midnight, and an end before the start", "1", "7200", "00", true, 1463, 120, 0, false},
        {"no date", "", "3600", "", false, 0, 60, 0, false},
        {"behind the year 9999", "2958466", "-60", "", false, 0, 0, 0, true},
    };
    for (const auto& row : kRows) {
        Load({{"x", row.day, row.from, row.to}});
        const Appointment made = MakeAppointment(doc, 0, {kDay, kFrom, kTo, {}}, kHabits);
        EXPECT_EQ(made.isDateRead, row.isRead) << row.name;
        EXPECT_EQ(made.date, row.date) << row.name;
        EXPECT_DOUBLE_EQ(made.startTime * 1440, row.startMinute) << row.name;
        EXPECT_DOUBLE_EQ(made.endTime * 1440, row.endMinute) << row.name;
        EXPECT_EQ(made.IsAllDay(), row.isAllDay) << row.name;
        EXPECT_EQ(RowsWithoutDate(doc, kDay, kHabits), row.isRead ? 0U : 1U) << row.name;
    }
    EXPECT_EQ(RowsWithoutDate(doc, -1, kHabits), 1U);
}

TEST_F(ExportTest, TextsAreAsDisplayedAndTheFirstOfEqualNamesGivesTheValue) {
    Load({{"50%d\na\tb", "36591", "1800", "", "YES", "1"}, {"24.12.2004", "", "00", "0", "", "1"}});
    doc.SetStyle(DateStyle::Long);
    EXPECT_EQ(MakeAppointment(doc, 0, {-1, -1, -1, {kFlag, kDay, kWhat, kTo, kSecondDay, kSecondWhat}}, kHabits).body,
              u"Flag: true\n\rDay: March 07, 2004\n\rWhat: 50%d\r\na\tb\n\rTo: No Time\n\rDay: March 07, 2004\n\r"
              u"What: 50%d\r\na\tb");
    EXPECT_EQ(DateFrom(kSecondDay), 38053);
    EXPECT_EQ(DateFrom(kSecondWhat, 1), 38345) << "a text, in the user's order";
    EXPECT_EQ(RowsWithoutDate(doc, kSecondDay, kHabits), 1U) << "the second record's first Day is empty";
    EXPECT_THAT(OfferedFields(doc, FieldType::Date, std::nullopt), ElementsAre(kDay, kSecondDay, kSecondWhat));
    EXPECT_THAT(OfferedFields(doc, FieldType::Date, 1), ElementsAre(kSecondDay));
    EXPECT_THAT(OfferedFields(doc, FieldType::Time, 1), ElementsAre(kTo)) << "midnight, but not a padded one";

    ContactFields fields = NoContactFields();
    fields[43] = kFrom;  // Notes
    fields[static_cast<std::size_t>(ContactProperty::Birthday)] = kWhat;
    fields[static_cast<std::size_t>(ContactProperty::Anniversary)] = kDay;
    const Contact made = MakeContact(doc, 1, fields, kHabits);
    std::array<std::u16string, kContactProperties> texts;
    texts[43] = u"No Time";
    EXPECT_EQ(made.texts, texts);
    EXPECT_EQ(made.birthday, 38345);
    EXPECT_EQ(made.anniversary, std::nullopt);
}

TEST(ExportRun, TriesAllInOrder) {
    const auto items = std::make_shared<FakePersonalItems>();
    items->refuses = {300};
    ExportRun run(std::make_unique<FakePersonalStore>(items), 5000, [](std::size_t number) {
        Appointment item;
        item.date = static_cast<double>(number);
        return item;
    });
    while (!run.Advance()) std::this_thread::yield();
    ASSERT_EQ(items->appointments.size(), 4999U);
    for (std::size_t k = 0; k < 4999; ++k) EXPECT_EQ(items->appointments[k].date, k < 300 ? k : k + 1);
}

}  // namespace
}  // namespace quillary
