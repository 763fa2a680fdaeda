#include "db/RecordCommit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

struct FixedClock : Clock {
    std::int32_t Today() const override { return 36591; }
    std::int32_t SecondsSinceMidnight() const override { return 3661; }
};

class RecordCommit : public testing::Test {
  protected:
    RecordCommit() {
        // One field of every type; "Notes" stands where a line feed would hide "Last".
        doc.NewDatabase(
            "x", {MakeField("Notes", "T"), MakeField("No", "F"), MakeField("Seq", "I7;3"), MakeField("Done", "B!"),
                  MakeField("Day", "D!"), MakeField("At", "d!"), MakeField("Pick", "Lred;blue"), MakeField("Tel", "P"),
                  MakeField("Mail", "M"), MakeField("Web", "W"), MakeField("Last", "t")});
    }
    std::size_t Append(const std::vector<std::string>& texts) {
        EXPECT_TRUE(doc.AppendRecord(Entries(texts), failure));
        return doc.CurrentRecord();
    }

    MemoryFiles files;
    CQuillaryDoc doc{files};
    Failure failure;
};

TEST_F(RecordCommit, NewRecordsStartWithTheirDefaultsAndAdvanceTheSequence) {
    auto values = NewRecordValues(doc, FixedClock());
    EXPECT_THAT(values, testing::ElementsAre("", "", "7", "true", "36591", "3660", "", "", "", "", ""));
    values[2] = "99";
    ASSERT_TRUE(CommitNewRecord(doc, values, failure));
    EXPECT_EQ("10", NewRecordValues(doc, FixedClock())[2]) << "by its increment, whatever was typed";
    doc.SetSequenceNext(2, 0x7FFFFFFE);
    ASSERT_TRUE(CommitNewRecord(doc, values, failure));
    EXPECT_EQ("2147483647", NewRecordValues(doc, FixedClock())[2]) << "stops at the limit";
    doc.NewDatabase("x", {MakeField("Done", "B"), MakeField("Day", "D"), MakeField("At", "d")});
    EXPECT_THAT(NewRecordValues(doc, FixedClock()), testing::ElementsAre("false", "", "")) << "without the options";
}

// What another program may have written: entry 0 is found in the first place alone.
TEST(RecordOrder, ATextThatWouldBeLostGetsItsPlaceOrIsRefused) {
    // Name, entries, the entries with "q" set in A or empty when that is refused, and the refusal's words.
    const std::tuple<const char*, std::string, std::string, const char*> kCases[] = {
        {"B before A", FromHex("0001 62 0000 61"), FromHex("0000 71 0001 62"), ""},
        {"equal numbers stay in their order", FromHex("0001 62 0000 61 0001 63"), FromHex("0000 71 0001 62 0001 63"),
         ""},
        {"B's text would hide C in order", FromHex("0002 63 0001 62 02 0000 61"), "",
         "The entries of this record stand in an order in which a new text of \"A\" would not be found again."},
    };
    for (const auto& [name, entries, after, words] : kCases) {
        MemoryFiles files;
        CQuillaryDoc doc(files);
        Failure failure;
        doc.NewDatabase("x", {MakeField("A", "t"), MakeField("B", "t"), MakeField("C", "t")});
        ASSERT_TRUE(doc.AppendRecord(entries, failure));
        bool changed = false;
        EXPECT_EQ(CommitRecord(doc, 0, std::vector<EnteredValue>{{0, "q"}}, changed, failure), !after.empty())
            << name << failure.text;
        EXPECT_THAT(failure.text, testing::StartsWith(words)) << name;
        EXPECT_EQ(after.empty() ? entries : after, doc.Shown()[0].Entries()) << name;
    }
}

TEST_F(RecordCommit, RefusalsNameWhatIsWrongAndChangeNothing) {
    const std::size_t row = Append({"a"});
    bool changed = false;
    EXPECT_FALSE(CommitRecord(doc, row, std::vector<EnteredValue>{{8, "x"}, {0, "one\ntwo"}}, changed, failure));
    EXPECT_THAT(failure.text, testing::StartsWith("A line break in \"Notes\" would hide the field \"Last\". Move"));
    EXPECT_EQ(Entries({"a"}), doc.Shown()[row].Entries());
    std::vector<std::string> values(11);
    values[2] = "tab\t";
    EXPECT_FALSE(CommitNewRecord(doc, values, failure));
    EXPECT_THAT(failure.text, testing::StartsWith("A tab in \"Seq\" would hide the field \"Web\"."));
    EXPECT_EQ(1u, doc.RecordCount());
    EXPECT_EQ(7, doc.Fields()[2].options.first) << "a refused record takes no sequence value";

    const std::vector<std::string> hiding = {"a\nb", "", "", "", "", "", "", "", "", "", "z"};
    const std::size_t hidden = Append(hiding);
    EXPECT_FALSE(CommitRecord(doc, hidden, std::vector<EnteredValue>{{10, "end"}}, changed, failure));
    EXPECT_THAT(failure.text, testing::StartsWith("A line break in \"Notes\" would hide the field \"Last\"."))
        << "a text that stays";
    EXPECT_EQ(Entries(hiding), doc.Shown()[hidden].Entries());
}

}  // namespace
}  // namespace quillary
