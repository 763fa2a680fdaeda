#include "query/Sort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/query/ShownValues.h"

namespace quillary {
namespace {

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
    for (const char* end : {"", "a", "B", "\n", "\nx", "\r\nx", "\r\ny", "\rx", "\x84\x47", "\n\nx", "\n\ny"}) {
        for (const std::size_t length : {4, 7, 8, 15, 16, 33}) values.push_back(digits.substr(0, length) + end);
    }
    ::setenv("RC_PARAMS", "max_success=500", 0);
    EXPECT_TRUE(rc::check([&] {
        MemoryFiles files;
        CQuillaryDoc doc(files, page);
        std::vector<Field> fields;
        for (const auto& type : types) fields.push_back(MakeField(type, type));
        doc.NewDatabase("x", fields);
        Failure failure;
        // Seldom so many that their keys are found on several threads.
        for (auto rows = *rc::gen::weightedOneOf<int>({{200, rc::gen::inRange(0, 40)}, {1, rc::gen::just(2100)}});
             rows > 0; --rows) {
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
