#include "query/Filter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "db/FieldValue.h"
#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/query/ShownValues.h"

namespace quillary {
namespace {

// The rules word by word, on display texts: each value is read back from what a person sees.

template <typename Value>
bool Compare(int operation, bool same, const Value& v, const Value& c) {
    return operation == 0 ? same : operation == 1 ? !same : operation == 2 ? v < c : v > c;
}

bool MatchText(int operation, const AnsiText& page, const std::string& v, const std::string& c) {
    const auto upperV = AnsiText::Upper(page.ToWide(v));
    const auto upperC = AnsiText::Upper(page.ToWide(c));
    return operation == 0 ? upperV == upperC : operation == 1 && upperV.find(upperC) != upperV.npos;
}

bool MatchDirectly(FieldType type, const AnsiText& page, const std::string& v, int operation, std::string c) {
    switch (type) {
        case FieldType::Number:
        case FieldType::Sequence: {
            const double number = std::strtod(v.c_str(), nullptr), wanted = std::strtod(c.c_str(), nullptr);
            return Compare(operation, number == wanted, number, wanted);
        }
        case FieldType::Checkbox:
            return operation < 2 && ((v[0] != 'f') == (c[0] != 'F')) == (operation == 0);
        case FieldType::Date:
        case FieldType::Time: {
            // A condition's time counts as midnight where a record's would be none.
            if (type == FieldType::Time && !c.empty() && std::atoi(c.c_str()) == 0) c = "0";
            Moment moment = ReadShown(type, v);
            Moment wanted = ReadShown(type, DisplayText(type, c, DateStyle::Numeric, page));
            const bool sameState = (moment == Moment{}) == (wanted == Moment{});
            for (Moment* each : {&moment, &wanted}) *each = *each == Moment{} ? Moment{1899, 12, 30} : *each;
            return Compare(operation, sameState && moment == wanted, moment, wanted);
        }
        case FieldType::List:
            return operation < 2 && MatchText(0, page, v, c) == (operation == 0);
        default:
            return MatchText(operation, page, v, c);
    }
}

TEST(Filter, IsTheRulesWordByWord) {
    const std::vector<std::string> types = {"t", "F", "I1;1", "B", "D", "d", "Lred;blue", "P", "M", "W"};
    const std::vector<std::string> values = {
        "",           "0",          "1",        "-1",       "36500",   "36501", "-1462", "-1463",  "-700000",
        "43200",      "43259",      "60",       "x",        "00",      " 7.5",  "7.50",  "129600", "true",
        "FALSE",      "yes",        "T",        "F",        "red",     "ReD",   "RED\n", "1e2",    "(555)",
        "red\r\nand", "5551234567", "555 1234", "caf\xE9",  "CAF\xC9", "No D",  "/07",   ":00 p",  "a",
        "lse",        "\x84\x47",   "\x84\x77", "\x83\x5C", "\x5C"};
    const auto kana =
        CodePageByName("shift_jis");  // zhe in either case, and a character whose second byte is a backslash
    ASSERT_TRUE(kana);
    const auto value = rc::gen::elementOf(values);
    ::setenv("RC_PARAMS", "max_success=3000", 0);
    EXPECT_TRUE(rc::check([&] {
        MemoryFiles files;
        CQuillaryDoc doc(files, **rc::gen::element(&AnsiText::Windows1252(), &*kana));
        std::vector<Field> fields;
        for (const auto& type : types) fields.push_back(MakeField(type, type));
        doc.NewDatabase("x", fields);
        FilterSettings settings{{}, *rc::gen::arbitrary<bool>(), false};
        for (int k = *rc::gen::inRange(1, 4); k > 0; --k) {
            const bool all = *rc::gen::inRange(0, 6) == 0;
            const auto operation = *rc::gen::inRange<std::uint8_t>(0, 4);
            settings.conditions.push_back({all, all ? "" : *rc::gen::elementOf(types), operation, *value});
        }
        Failure failure;
        for (int row = *rc::gen::inRange(0, 30); row > 0; --row) {
            const std::size_t entries = *rc::gen::element(10, 10, 10, 3);  // the missing ones show as empty texts
            RC_ASSERT(
                doc.AppendRecord(Entries(*rc::gen::container<std::vector<std::string>>(entries, value)), failure));
        }
        auto texts = ShownTexts(doc, true);
        std::vector<const char*> shown, hidden;
        for (const RecordRef& record : doc.Shown()) shown.push_back(record.data);
        for (std::size_t row = texts.size(); row-- > 0;) {
            std::replace(texts[row].begin(), texts[row].end(), std::string("<none>"), std::string());
            bool result = !settings.matchAny;
            for (const FilterCondition& c : settings.conditions) {
                bool outcome = false;
                for (std::size_t k = 0; k < types.size(); ++k) {
                    const FieldType type = c.allFields ? FieldType::Text : fields[k].type;
                    if (c.allFields || c.field == types[k])
                        outcome |= MatchDirectly(type, doc.Page(), texts[row][k], c.operation, c.value);
                }
                result = settings.matchAny ? result || outcome : result && outcome;
            }
            if (result) continue;
            hidden.push_back(shown[row]);
            shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(row));
        }
        SetAndApplyFilter(doc, settings);
        const auto isOf = [](const char* data, const RecordRef& record) { return data == record.data; };
        const bool isSame = std::equal(shown.begin(), shown.end(), doc.Shown().begin(), doc.Shown().end(), isOf) &&
                            std::equal(hidden.begin(), hidden.end(), doc.Hidden().begin(), doc.Hidden().end(), isOf);
        RC_ASSERT(isSame);
    }));
}

class FilterDoc : public ::testing::Test {
  protected:
    void Make(const std::vector<Field>& fields, const std::vector<std::string>& values) {
        doc.NewDatabase("x", fields);
        Failure failure;
        for (const auto& value : values) ASSERT_TRUE(doc.AppendRecord(Entries({value}), failure));
    }
    std::string Filtered(const FilterSettings& settings) {
        SetAndApplyFilter(doc, settings);
        std::string all;
        for (const auto& row : ShownTexts(doc)) all += row[0] + "|";
        return all;
    }
    void Reopen() {
        static int files = 0;
        Failure failure;
        ASSERT_TRUE(doc.SaveDatabaseAs("/" + std::to_string(++files) + ".pdb", "x", failure));
        ScriptedQuestions questions;
        ASSERT_TRUE(doc.OpenDatabase(Path(doc.FilePath()), OpenMode::Edit, questions));
    }

    MemoryFiles files;
    CQuillaryDoc doc{files};
};

TEST_F(FilterDoc, NarrowsStaysStaleAndComesBack) {
    Make({MakeField("A", "F")}, {"1", "2", "3", "4"});
    EXPECT_EQ("2|3|4|", Filtered({{{false, "A", 3, "1"}}, false, false}));
    EXPECT_EQ(3, doc.Hidden().at(0).category);
    Reopen();
    ApplyFilter(doc);
    EXPECT_FALSE(doc.IsModified()) << "the same records in the same order";
    EXPECT_EQ("2|3|", Filtered({{{false, "A", 2, "4"}}, false, true}));
    EXPECT_EQ("2|3|", Filtered({})) << "without a condition nothing happens";
    Reopen();
    EXPECT_EQ("2|3|", Filtered({{}, false, true}));
    EXPECT_EQ("2|3|1|4|", Filtered({{{false, "A", 1, "7"}}, false, false})) << "in the order of their hiding";
}

TEST_F(FilterDoc, ConditionsOnFieldsThatAreGoneCountAsAbsentBeforeAndAfterReopening) {
    for (const bool reopens : {false, true}) {
        std::vector<Field> fields = {MakeField("A", "F"), MakeField("B", "F")};
        Make(fields, {"1", "2", "3"});
        EXPECT_EQ("1|", Filtered({{{false, "B", 1, "0"}, {false, "A", 2, "2"}}, true, false}));
        for (const std::size_t gone : {1, 0}) {
            fields[gone].name = gone == 1 ? "C" : "D";
            doc.SetFields(fields);
            if (reopens) Reopen();
            ApplyFilter(doc);
            EXPECT_EQ(1u, doc.Shown().size()) << "the first that counts sets the result; without one all stays";
            EXPECT_EQ(gone, EffectiveFilter(doc).conditions.size());
            EXPECT_EQ(reopens ? gone : 2, doc.Filter().conditions.size());
        }
    }
}

}  // namespace
}  // namespace quillary
