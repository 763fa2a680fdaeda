#include "query/Sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>

#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/query/ShownValues.h"

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

// The rules word by word, on display texts: "" for a missing entry.
int CompareDirectly(FieldType type, const AnsiText& page, const std::string& a, const std::string& b) {
    const auto order = [](const auto& x, const auto& y) { return x < y ? -1 : y < x; };
    switch (type) {
        case FieldType::Text:
        case FieldType::Checkbox:
        case FieldType::List:
            return order(page.ToWide(a), page.ToWide(b));
        case FieldType::Number:
        case FieldType::Sequence:
            return order(std::strtod(a.c_str(), nullptr), std::strtod(b.c_str(), nullptr));
        case FieldType::Date:
            return order(ReadShown(type, a), ReadShown(type, b));
        case FieldType::Time: {
            const auto timeOf = [type](const std::string& text) {
                return std::max(ReadShown(type, text), Moment{1990, 0, 0});
            };
            return order(timeOf(a), timeOf(b));
        }
        default:
            return 0;
    }
}

void SortTablesOfEveryType(const AnsiText& page) {
    const std::vector<std::string> types = {"t", "F", "I1;1", "B", "D", "d", "Lx;y", "P", "M", "W"};
    const std::vector<std::string> keyTypes = {"t", "t", "t", "t", "F", "I1;1", "B", "D", "d", "Lx;y", "P"};
    std::vector<std::string> values = {"",   "a",    "A", "a\nb", "\x96", "\xE9",  "JA",      "\x83\x7E", "\x84\x47",
                                       "00", "-1.5", "9", "10",   "59",   "86460", "-700000", "36500",    "true"};
    // Around the lengths at which the sort goes over from beginnings to whole texts, and from one step to the next.
    const std::string digits(40, '1');
    for (const char* end : {"", "a", "B", "\n", "\nx", "\r\nx", "\r\ny", "\rx", "\x84\x47"}) {
        for (const std::size_t length : {7, 8, 15, 16, 33}) values.push_back(digits.substr(0, length) + end);
    }
    EXPECT_TRUE(rc::check([&] {
        MemoryFiles files;
        CQuillaryDoc doc(files, page);
        std::vector<Field> fields;
        for (const auto& type : types) fields.push_back(MakeField(type, type));
        doc.NewDatabase("x", fields);
        Failure failure;
        for (auto rows = *rc::gen::inRange(0, 40); rows > 0; --rows) {
            auto texts = *rc::gen::container<std::vector<std::string>>(types.size(), rc::gen::elementOf(values));
            // In some the last ones are missing.
            texts.resize(*rc::gen::element<std::size_t>(10, 10, 10, 3));
            RC_ASSERT(doc.AppendRecord(Entries(texts), failure));
        }
        SortSettings keys;
        while (keys.size() < 3) keys.push_back({*rc::gen::elementOf(keyTypes), *rc::gen::arbitrary<bool>()});
        doc.SetSort(keys);

        auto texts = ShownTexts(doc, true);
        for (auto& row : texts) std::replace(row.begin(), row.end(), std::string("<none>"), std::string());
        const auto compare = [&](std::size_t a, std::size_t b) {
            for (const SortKey& key : keys) {
                const std::size_t field = *doc.FieldByName(key.field);
                const int difference = CompareDirectly(doc.TypeOf(field), page, texts[a][field], texts[b][field]);
                if (difference != 0) return key.descending ? -difference : difference;
            }
            return 0;
        };
        std::vector<std::uint32_t> expected(texts.size());
        std::iota(expected.begin(), expected.end(), 0u);
        std::stable_sort(expected.begin(), expected.end(), [&](auto a, auto b) { return compare(a, b) < 0; });
        RC_ASSERT(SortedOrder(doc) == expected);
        for (std::size_t row = 1; row < texts.size(); ++row) {
            RC_ASSERT(CompareRecords(doc, row - 1, row) == compare(row - 1, row));
        }
    }));
}

TEST(Sort, IsTheRulesWordByWord) { SortTablesOfEveryType(AnsiText::Windows1252()); }

TEST(Sort, IsTheRulesWordByWordInAPageOfSeveralBytes) {
    const auto page = CodePageByName("shift_jis");
    ASSERT_TRUE(page);
    SortTablesOfEveryType(*page);
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

}  // namespace
}  // namespace quillary
