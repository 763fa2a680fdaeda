#include "query/Sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
