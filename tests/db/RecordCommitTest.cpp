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

TEST_F(RecordCommit, AValueThatReadsTheSameIsNoChange) {
    const std::vector<std::string> odd = {"a\nb", "1,500", "x", "JA", "abc", "3661", "green", "555 1234", "", "", "z"};
    const std::size_t row = Append(odd);
    const std::uint64_t before = doc.ChangeNumber();
    const std::vector<EnteredValue> same = {{0, "a\r\nb"}, {1, "1,500"}, {3, "true"},   {4, "0"},
                                            {5, "3660"},   {6, "green"}, {7, "5551234"}};
    bool changed = true;
    ASSERT_TRUE(CommitRecord(doc, row, same, changed, failure));
    EXPECT_FALSE(changed);
    EXPECT_EQ(before, doc.ChangeNumber());
    EXPECT_EQ(Entries(odd), doc.Shown()[row].Entries());
}

TEST_F(RecordCommit, OnlyWhatWasEnteredChanges) {
    std::vector<std::string> texts = {"cut\rhere", "1,500",  "x", "JA", "-700000", "90001",
                                      "green",     "5\xA0x", "",  "",   "z"};
    const std::size_t row = Append(texts);
    bool changed = false;
    ASSERT_TRUE(CommitRecord(doc, row, std::vector<EnteredValue>{{10, "end"}, {3, "false"}}, changed, failure));
    EXPECT_TRUE(changed);
    texts[10] = "end";
    texts[3] = "false";
    EXPECT_EQ(Entries(texts), doc.Shown()[row].Entries());
}

// What another program may have written: entry 0 is found in the first place alone.
TEST(RecordOrder, ATextThatWouldBeLostGetsItsPlaceOrIsRefused) {
    struct Case {
        const char* name;
        std::string entries;
        std::string after;  // with "q" set in A; empty when refused
        const char* words;
    };
    const Case kCases[] = {
        {"B before A", FromHex("0001 62 0000 61"), FromHex("0000 71 0001 62"), ""},
        {"equal numbers stay in their order", FromHex("0001 62 0000 61 0001 63"), FromHex("0000 71 0001 62 0001 63"),
         ""},
        {"B's text would hide C in order", FromHex("0002 63 0001 62 02 0000 61"), "",
         "The entries of this record stand in an order in which a new text of \"A\" would not be found again."},
    };
    for (const Case& c : kCases) {
        MemoryFiles files;
        CQuillaryDoc doc(files);
        Failure failure;
        doc.NewDatabase("x", {MakeField("A", "t"), MakeField("B", "t"), MakeField("C", "t")});
        ASSERT_TRUE(doc.AppendRecord(c.entries, failure));
        bool changed = false;
        EXPECT_EQ(CommitRecord(doc, 0, std::vector<EnteredValue>{{0, "q"}}, changed, failure), !c.after.empty())
            << c.name << failure.text;
        EXPECT_THAT(failure.text, testing::StartsWith(c.words)) << c.name;
        EXPECT_EQ(c.after.empty() ? c.entries : c.after, doc.Shown()[0].Entries()) << c.name;
    }
}

TEST_F(RecordCommit, RefusalsNameWhatIsWrongAndChangeNothing) {
    const std::size_t row = Append({"a"});
    bool changed = false;
    EXPECT_FALSE(CommitRecord(doc, row, std::vector<EnteredValue>{{8, "x"}, {0, "one\ntwo"}}, changed, failure));
    EXPECT_EQ(
        "A line break in \"Notes\" would hide the field \"Last\". Move \"Notes\" behind it or take the line break out.",
        failure.text);
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

    EXPECT_FALSE(StoredText(doc, 0, u"\u4F60\u00FF", failure));
    EXPECT_EQ("These characters cannot be stored in \"Notes\": \xE4\xBD\xA0\xC3\xBF", failure.text);
    EXPECT_EQ("5551234", StoredText(doc, 7, u"555-1234", failure));
    EXPECT_EQ("555-1234", StoredText(doc, 0, u"555-1234", failure));
}

}  // namespace
}  // namespace quillary
