#include "admin/ApplySchema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using testing::ElementsAre, testing::HasSubstr;

struct ConversionCase {
    const char* why;
    const char* from;  // stored type
    const char* to;
    const char* old;
    const char* converted;
    DateOrder order = DateOrder::MonthDayYear;
    std::size_t emptied = 0;
    std::size_t unchecked = 0;
};

constexpr auto kDay = DateOrder::DayMonthYear;
constexpr auto kYear = DateOrder::YearMonthDay;

// Day 36295 is 16 May 2003, 36296 the 17th; day 0 is 1 January 1904; the century is 2000.
const ConversionCase kConversions[] = {
    {"checked is 1, however it was written", "B", "F", "Ja", "1"},
    {"anything else is 0", "B", "I1;1", "on", "0", {}, 0, 1},
    {"which is no loss of a no", "B", "F", "Nein", "0"},
    {"a text that is neither is lost on the way back", "B", "t", "hello", "false", {}, 0, 1},
    {"and told of before it comes in", "t", "B", "hello", "hello", {}, 0, 1},
    {"as a number is", "F", "B", "7", "7", {}, 0, 1},
    {"but 0 is a no", "F", "B", "0", "0"},
    {"and nothing is lost of nothing", "B", "t", "", "false"},
    {"a date's count stays in a number", "D", "F", "36296", "36296"},
    {"a check box keeps its text", "B", "B!", "JA", "JA"},
    {"a date leaves nothing in one", "D", "B", "36296", "false", {}, 0, 1},
    {"but there was none to lose", "D", "B", "", "false"},
    {"a text may read as checked", "t", "B", "yes", "yes"},
    {"month first", "t", "D", "5/17/2003", "36296"},
    {"day first, with dots", "t", "D", "17.5.2003", "36296", kDay},
    {"year first, with dashes", "La;b", "D", "2003-05-17", "36296", kYear},
    {"what follows the numbers does not matter", "t", "D", "5/17/2003 at noon", "36296"},
    {"a year below 100 is of this century", "t", "D", "5/17/03", "36296"},
    {"to its end", "t", "D", "1/1/99", "71224"},
    {"from 100 on it is a year", "t", "D", "12/31/100", "-658532"},
    {"a missing year is 0", "t", "D", "5/17/", "35201"},
    {"the wrong order is no date", "t", "D", "17.5.2003", "", {}, 1},
    {"nor are two numbers", "t", "D", "5/17", "", {}, 1},
    {"nor a word in front", "t", "D", "on 5/17/2003", "", {}, 1},
    {"nor a day that never was", "t", "D", "2/30/2003", "", {}, 1},
    {"nor is what an empty date shows", "t", "D", "No Date", ""},
    {"seconds are read as days", "d", "D", "3600", "3600"},
    {"a time with am or pm", "t", "d", "1:30 pm", "48600"},
    {"seconds are dropped", "Lx", "d", "13:30:59", "48600"},
    {"no time", "t", "d", "25:00", "", {}, 1},
    {"no time at all", "t", "d", "", ""},
    {"a time keeps its count", "d", "d!", "00", "00"},
    {"a number stays a number's text", "F", "D", "1.5", "1.5"},
    {"a date as it shows", "D", "T", "36296", "05/17/2003"},
    {"none as it shows", "D", "P", "", "No Date"},
    {"a time as it shows", "d", "W", "48600", "01:30 pm"},
    {"a check box as it shows", "B", "M", "1", "true"},
    {"line ends become one kind", "t", "La", "a\nb\r\nc", "a\r\nb\r\nc"},
    {"a phone number as it shows", "P", "t", "5551234", "555-1234"},
    {"an item of a list", "Lred;blue", "t", "green", "green"},
};

class ApplySchemaTest : public testing::Test {
  protected:
    void Make(const std::vector<std::string>& types) {
        std::vector<Field> fields;
        for (const std::string& type : types)
            fields.push_back(MakeField(std::string(1, char('A' + fields.size())), type));
        doc.NewDatabase("x", fields);
    }
    void Append(std::string_view entries) { ASSERT_TRUE(doc.AppendRecord(entries, failure)); }
    std::vector<FieldDefinition> Definitions() { return DefinitionsOf(doc); }
    void Apply(std::vector<FieldDefinition> definitions) {
        auto prepared = PrepareSchema(doc, std::move(definitions), 2000, failure);
        ASSERT_TRUE(prepared) << failure.text;
        ApplySchema(doc, std::move(*prepared));
    }

    MemoryFiles files;
    CQuillaryDoc doc{files};
    Failure failure;
};

TEST_F(ApplySchemaTest, ConvertsByOldAndNewType) {
    for (const ConversionCase& c : kConversions) {
        Make({c.from, "t"});
        Append(Entries({c.old, "last"}));
        auto definitions = Definitions();
        const Field retyped = MakeField("A", c.to);
        definitions[0].field.type = retyped.type;
        definitions[0].field.options = retyped.options;
        definitions[0].convertFrom = c.order;
        std::swap(definitions[0], definitions[1]);  // so that the records are rebuilt for one type, too
        const auto prepared = PrepareSchema(doc, definitions, 2000, failure);
        ASSERT_TRUE(prepared) << c.why << failure.text;
        EXPECT_EQ(c.emptied, prepared->emptied) << c.why;
        EXPECT_EQ(c.unchecked, prepared->unchecked) << c.why;
        EXPECT_EQ(Entries({"last", c.converted}), prepared->shown[0].Entries()) << c.why;
    }
}

TEST_F(ApplySchemaTest, RecordsGetTheNewLayoutShownAndHidden) {
    Make({"t", "F", "P"});
    Append(Entries({"x", "1", "call"}));
    const auto before = doc.Snapshot();
    auto definitions = Definitions();
    std::rotate(definitions.begin(), definitions.begin() + 2, definitions.end());  // P t F
    definitions.pop_back();
    definitions.insert(definitions.begin(), {MakeField("Done", "B!"), std::nullopt});
    definitions.push_back({MakeField("Day", "D!"), std::nullopt});
    Apply(definitions);
    EXPECT_THAT(ShownTexts(doc), ElementsAre(ElementsAre("false", "call", "x", "")));
    EXPECT_EQ("Done", doc.Fields()[0].name);
    doc.Restore(*before);
    EXPECT_THAT(ShownTexts(doc), ElementsAre(ElementsAre("x", "1", "call")));

    ImageParts parts;
    parts.AddSchema({"A", "B"}, {"t", "B"});
    parts.Add(2, {"seen", "1"});
    parts.Add(0x43, {"unseen", "ja"});
    files.contents["h.pdb"] = parts.Build();
    ScriptedQuestions questions;
    ASSERT_TRUE(doc.OpenDatabase("h.pdb", OpenMode::Edit, questions));
    definitions = Definitions();
    definitions[1].field.type = FieldType::Number;
    Apply(definitions);
    EXPECT_EQ(Entries({"unseen", "1"}), doc.Hidden()[0].Entries());
    EXPECT_EQ(0x43, doc.Hidden()[0].category);
}

// In the first record a line feed stands where the scan takes it for field 10, in the second nothing can be walked.
TEST_F(ApplySchemaTest, EntriesAreWhatTheyAreAndNotWhatTheScanFinds) {
    Make(std::vector<std::string>(11, "t"));
    std::vector<std::string> texts(11, "");
    texts[0] = "a\nb";
    texts[10] = "true text";
    Append(Entries(texts) + std::string("\0\x15lost", 6));
    Append("x" + Entries({"only"}).substr(1));
    auto definitions = Definitions();
    std::swap(definitions[9], definitions[10]);
    definitions.erase(definitions.begin() + 1, definitions.begin() + 9);
    Apply(definitions);
    EXPECT_EQ(Entries({"a\r\nb", "true text", ""}), doc.Shown()[0].Entries());
    EXPECT_EQ(Entries({"only", "", ""}), doc.Shown()[1].Entries());
}

// Fields that stay are copied together, where their entries allow it.
TEST_F(ApplySchemaTest, FieldsThatStayKeepTheirTexts) {
    std::vector<std::string> types(12, "t");
    types[1] = "F";
    types[11] = "P";
    Make(types);
    const auto texts = [](std::string notes, std::string ten, std::string phone) {
        return std::vector<std::string>{notes, "1.5", "", "d", "e", "f", "g", "h", "i", "j", ten, phone};
    };
    std::string outOfOrder = Entries({"first"});
    AppendEntry(outOfOrder, 11, "last");
    AppendEntry(outOfOrder, 1, "7");
    AppendEntry(outOfOrder, 1, "again");
    AppendEntry(outOfOrder, 10, "a\nb");
    Append(Entries(texts("one", "10\nten", "5551234")));  // behind the number that is a line feed, too
    Append(Entries(texts("two\nlines", "ten", "call")));
    Append(outOfOrder);
    Append({});
    auto definitions = Definitions();
    definitions.push_back({MakeField("New", "B"), std::nullopt});
    Apply(definitions);

    auto expected = texts("one", "10\r\nten", "555-1234");
    expected.emplace_back("false");
    EXPECT_EQ(Entries(expected), doc.Shown()[0].Entries());
    expected = texts("two\r\nlines", "ten", "call");
    expected.emplace_back("false");
    EXPECT_EQ(Entries(expected), doc.Shown()[1].Entries());
    EXPECT_EQ(Entries({"first", "7", "", "", "", "", "", "", "", "", "a\r\nb", "last", "false"}),
              doc.Shown()[2].Entries());
    EXPECT_EQ(Entries({"", "", "", "", "", "", "", "", "", "", "", "", "false"}), doc.Shown()[3].Entries());
}

TEST_F(ApplySchemaTest, TextsThatWouldHideAFieldStopIt) {
    Make({"t", "t"});
    Append(Entries({"a\x02z", "x"}));
    Append(Entries({"\x02", "\x02"}));
    auto definitions = Definitions();
    definitions.push_back({MakeField("City", "t"), std::nullopt});
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure));
    EXPECT_THAT(failure.text, HasSubstr("hide a later field: 3. The first: A control character in \"A\" would hide "
                                        "the field \"City\"."));
    definitions = {definitions[2], definitions[0]};  // A behind every field that its bytes name
    Apply(definitions);

    // So may the texts of the schema, which another program can have made.
    Make({"t", "t", "Lx"});
    for (const auto& [name, item] : {std::pair{"C\x02", "x"}, std::pair{"C", "x\x02"}}) {
        definitions = Definitions();
        definitions[2].field.name = name;
        definitions[2].field.options.items = {item};
        EXPECT_TRUE(PrepareSchema(doc, definitions, 2000, failure)) << "they hide nothing where they stand";
        std::swap(definitions[0], definitions[2]);
        EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure));
        EXPECT_EQ(Message::ControlCharacter, failure.message);
    }
    definitions = Definitions();
    definitions[0].field.storedWidth = "\x02";
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure)->fields[0].storedWidth);
    definitions[0].field.name = "ends\x03";
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure)) << "the empty name behind the last one is read, too";

    // A field that was hidden before may stay so, another one in its place may not.
    Make({"t", "t", "t", "t"});
    Append(Entries({"a\x02z", "x", "y", "z"}));
    definitions = Definitions();
    std::swap(definitions[2], definitions[3]);
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure));
    definitions.pop_back();
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure));
    Make({"t", "t", "t"});
    Append(Entries({"x", "y", "a\x01z"}));
    definitions = Definitions();
    std::swap(definitions[0], definitions[2]);
    EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure)) << "one that stood ahead of the text was not hidden";
    Make({"t", "t", "t"});
    Append(Entries({"a\x02z", "x", "y"}));
    definitions = Definitions();
    definitions[1].field.type = FieldType::List;
    Apply(definitions);
    EXPECT_EQ(Entries({"a\x02z", "x", "y"}), doc.Shown()[0].Entries());
}

TEST_F(ApplySchemaTest, NamesWidthsAndOptionsTouchNoRecord) {
    Make({"T", "P", "Lx"});
    const std::string odd = Entries({"a\nb", "5551234"});  // as it is: one entry short, a line feed alone
    Append(odd);
    auto definitions = Definitions();
    const std::uint64_t change = doc.ChangeNumber();
    auto same = PrepareSchema(doc, definitions, 2000, failure);
    EXPECT_FALSE(ApplySchema(doc, std::move(*same)));
    EXPECT_EQ(change, doc.ChangeNumber());
    definitions[0].field.name = " new ";
    definitions[1].field.width = 7;
    definitions[2].field.options.items = {"x", ""};
    Apply(definitions);
    EXPECT_EQ(odd, doc.Shown()[0].Entries());
    EXPECT_EQ(" new ", doc.Fields()[0].name);
    EXPECT_LT(change, doc.ChangeNumber());
}

TEST_F(ApplySchemaTest, WhatNamesAFieldThatIsGoneDoesNotComeBackWithItsName) {
    Make({"t", "F"});
    auto definitions = Definitions();
    const std::string first = definitions[0].field.name;
    const std::string second = definitions[1].field.name;
    doc.SetSort({{first, true}, {second, false}});
    doc.SetFilter({{{false, first, 1, "x"}, {true, "", 1, "y"}}, true, false});
    for (const std::string& name : {std::string("other"), first}) {
        definitions = Definitions();
        definitions[0].field.name = name;
        Apply(definitions);
    }
    EXPECT_EQ((SortSettings{{second, false}}), doc.Sort());
    EXPECT_EQ((FilterSettings{{{true, "", 1, "y"}}, true, false}), doc.Filter());
}

TEST_F(ApplySchemaTest, ThereIsOneFieldAtLeastAndTwentyAtMost) {
    Make({"t"});
    for (const auto& [count, why] : {std::pair{0u, Message::NoColumns}, std::pair{21u, Message::TooManyFields}}) {
        const std::vector<FieldDefinition> definitions(count, {MakeField("x", "t"), std::nullopt});
        EXPECT_FALSE(PrepareSchema(doc, definitions, 2000, failure));
        EXPECT_EQ(why, failure.message);
    }
}

}  // namespace
}  // namespace quillary
