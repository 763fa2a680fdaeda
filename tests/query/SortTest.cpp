#include "query/Sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <random>

#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

std::string Sorted(const char* type, const std::vector<std::string>& values, bool descending = false) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("Key", type)});
    Failure failure;
    for (const auto& value : values) EXPECT_TRUE(doc.AppendRecord(Entries({value}), failure));
    doc.SetSort({{"Key", descending}});
    SortRecords(doc);
    std::string sorted;
    for (const auto& row : ShownTexts(doc)) sorted += row[0] + "|";
    return sorted;
}

TEST(Sort, OrderByType) {
    struct Case {
        const char* name;
        const char* type;
        std::vector<std::string> values;
        const char* ascending;
        const char* descending;
    };
    const Case kCases[] = {
        {"capitals come first",
         "t",
         {"cherry", "apple", "", "Banana"},
         "|Banana|apple|cherry|",
         "cherry|apple|Banana||"},
        {"by UTF-16 unit, not by byte: a dash lies above letters with accents",
         "t",
         {"\x96", "\xE9", "z"},
         "z|\xE9|\x96|",
         "\x96|\xE9|z|"},
        {"line ends as they are shown, all alike",
         "t",
         {"a\n", "a\r\nb", "a\nb", "a\r", "a\n\n", "a\r\n", "a\rb"},
         "a\r|a\n|a\r\n|a\n\n|a\r\nb|a\nb|a\rb|",
         "a\rb|a\r\nb|a\nb|a\n\n|a\n|a\r\n|a\r|"},
        {"numbers, unreadable ones are 0", "F", {"10", "9", "x", "", "-1"}, "-1|x||9|10|", "10|9|x||-1|"},
        {"unchecked before checked", "B", {"yes", "no", "1", ""}, "no||yes|1|", "yes|1|no||"},
        {"unreadable dates first", "D", {"5", "", "-700000", "-3"}, "|-700000|-3|5|", "5|-3||-700000|"},
        {"unreadable times are midnight; seconds do not count",
         "d",
         {"61", "119", "0", "x", "60"},
         "0|x|61|119|60|",
         "61|119|60|0|x|"},
        {"a phone key has no effect", "P", {"2", "1"}, "2|1|", "2|1|"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.ascending, Sorted(c.type, c.values)) << c.name;
        EXPECT_EQ(c.descending, Sorted(c.type, c.values, true)) << c.name;
    }
}

RC_GTEST_PROP(Sort, SortsAsItComparesOverTablesOfEveryType, ()) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    std::vector<Field> fields;
    for (const char* type : {"t", "F", "I1;1", "B", "D", "d", "Lx;y", "P", "M", "W"}) {
        fields.push_back(MakeField(type, type));
    }
    doc.NewDatabase("x", fields);
    const std::vector<std::string> values = {"",   "a",    "A", "a\nb", "\x96", "\xE9",  "JA",     "0",
                                             "00", "-1.5", "9", "10",   "59",   "86460", "-700000"};
    Failure failure;
    for (auto rows = *rc::gen::inRange(0, 12); rows > 0; --rows) {
        auto texts = *rc::gen::container<std::vector<std::string>>(fields.size(), rc::gen::elementOf(values));
        texts.resize(*rc::gen::inRange<std::size_t>(0, texts.size() + 1));  // the other entries are missing
        RC_ASSERT(doc.AppendRecord(Entries(texts), failure));
    }
    SortSettings keys;
    while (keys.size() < 3) keys.push_back({(*rc::gen::elementOf(fields)).name, *rc::gen::arbitrary<bool>()});
    doc.SetSort(keys);
    const std::vector<std::uint32_t> order = SortedOrder(doc);
    for (std::size_t i = 0; i < order.size(); ++i) {
        for (std::size_t j = i + 1; j < order.size(); ++j) {
            const int difference = CompareRecords(doc, order[i], order[j]);
            RC_ASSERT(difference < 0 || (difference == 0 && order[i] < order[j]));
            RC_ASSERT(CompareRecords(doc, order[j], order[i]) == -difference);
        }
    }
}

TEST(Sort, ThreeKeysAreStableAndDeadKeysAreSkipped) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("A", "F"), MakeField("B", "t"), MakeField("C", "D"), MakeField("Row", "F")});
    std::mt19937 random(7);
    Failure failure;
    for (int i = 0; i < 5000; ++i) {
        ASSERT_TRUE(doc.AppendRecord(
            Entries({std::to_string(random() % 5), std::string(1, static_cast<char>('a' + random() % 4)),
                     std::to_string(random() % 3), std::to_string(i)}),
            failure));
    }
    doc.SetSort({{"Gone", false}, {"A", true}, {"A", false}, {"B", false}});
    SortRecords(doc);
    const auto rows = ShownTexts(doc);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const auto& a = rows[i - 1];
        const auto& b = rows[i];
        const bool ordered = a[0] != b[0]   ? a[0] > b[0]
                             : a[1] != b[1] ? a[1] < b[1]
                                            : std::stoi(a[3]) < std::stoi(b[3]);
        ASSERT_TRUE(ordered) << i;
    }
}

TEST(Sort, ARecordWithoutTheEntrySortsAsEmpty) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("Row", "F"), MakeField("Key", "B")});
    Failure failure;
    for (const auto& texts : std::vector<std::vector<std::string>>{{"0", "false"}, {"1"}, {"2", "true"}}) {
        ASSERT_TRUE(doc.AppendRecord(Entries(texts), failure));
    }
    doc.SetSort({{"Key", false}});
    EXPECT_THAT(SortedOrder(doc), testing::ElementsAre(1, 0, 2));
}

TEST(Sort, KeysOfRenamedAndRemovedFieldsCountForNothing) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("A", "t"), MakeField("B", "F"), MakeField("C", "F")});
    Failure failure;
    for (const char* number : {"3", "1", "2"}) {
        ASSERT_TRUE(doc.AppendRecord(Entries({number, number}), failure));
    }
    doc.SetSort({{"A", true}, {"C", false}, {"B", false}});
    doc.SetFields({MakeField("a", "t"), MakeField("B", "F")});
    ASSERT_TRUE(doc.SaveDatabaseAs("/x.pdb", "x", failure));
    EXPECT_THAT(files.contents["/x.pdb"], testing::HasSubstr(FromHex("00 01000000 FF000000 FF000000 FF FF FF")));
    ScriptedQuestions questions;
    for (const bool reopened : {false, true}) {
        ASSERT_TRUE(!reopened || doc.OpenDatabase("/x.pdb", OpenMode::Read, questions));
        EXPECT_EQ((SortSettings{{"B", false}}), KeysInUse(doc)) << reopened;
        EXPECT_THAT(SortedOrder(doc), testing::ElementsAre(1, 2, 0)) << reopened;
    }
}

TEST(Sort, PagesOfSeveralBytesSortByTheirCharacters) {
    const auto page = CodePageByName("shift_jis");
    ASSERT_TRUE(page);
    MemoryFiles files;
    CQuillaryDoc doc(files, *page);
    doc.NewDatabase("x", {MakeField("Key", "t")});
    Failure failure;
    // Katakana mi and Cyrillic zhe: the other way round by their bytes.
    for (const char* text : {"\x83\x7E", "\x84\x47", "z"}) ASSERT_TRUE(doc.AppendRecord(Entries({text}), failure));
    doc.SetSort({{"Key", false}});
    EXPECT_THAT(SortedOrder(doc), testing::ElementsAre(2, 1, 0));
}

}  // namespace
}  // namespace quillary
