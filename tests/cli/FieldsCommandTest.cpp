#include "tests/cli/Qly.h"

namespace quillary {
namespace {

class FieldsCommand : public QlyTest {
  protected:
    void SetUp() override {
        ImageParts parts;
        parts.AddSchema({"Name", "When", "Kind", "\x81?"}, {"T", "t", "Lred;\x8D", "X"}, {"90", "", "-5", "80"});
        parts.Add(2, {"Bo", "2003-05-17", "red", "1"});
        parts.Add(2, {"Ann", "soon", "red", "2"});
        Write("t.pdb", parts);
    }
};

// A name, an item and a type that nobody could give anew, a width that was left out, an order that no key made.
TEST_F(FieldsCommand, WhatItPrintsChangesNothing) {
    const std::string before = Read("t.pdb");
    Write("s.json", Output({"fields", "t.pdb"}));
    EXPECT_EQ("", Output({"fields", "t.pdb", "s.json"}));
    EXPECT_EQ(before, Read("t.pdb"));
}

TEST_F(FieldsCommand, Refuses) {
    const std::tuple<const char*, const char*, const char*> kCases[] = {
        {"no JSON", "[{", "no JSON list"},
        {"no list", "{}", "no JSON list"},
        {"an empty one", "[]", "Please define at least one column."},
        {"no object in it", "[1]", "Field 1 of the schema: it is no JSON object."},
        {"no name", R"([{"type": "text"}])", "it has no name"},
        {"one that cannot be stored", R"([{"name": "ж", "type": "text"}])", "ж"},
        {"no type", R"([{"name": "A"}])", "it has no type"},
        {"an unknown type", R"([{"name": "A", "type": "Text"}])", "no field type \"Text\""},
        {"a slip", R"([{"name": "A", "type": "text", "widht": 1}])", "Did you mean \"width\"?"},
        {"a width beyond 32 bits", R"([{"name": "A", "type": "text", "width": 2147483648}])", "its width"},
        {"a position that is none", R"([{"name": "A", "type": "text", "from": 4}])", "from 0 to 3"},
        {"one that is taken", R"([{"name": "A", "type": "text", "from": 1}, {"name": "B", "type": "text", "from": 1}])",
         "Field 2 of the schema: an earlier field"},
        {"another type's option", R"([{"name": "A", "type": "date", "options": {"items": []}}])", "has no \"items\""},
        {"an order that is none", R"([{"name": "A", "type": "date", "options": {"convertFrom": "Y/M/D"}}])", "Y-M-D"},
        {"an item of two", R"([{"name": "A", "type": "list", "options": {"items": ["a;b"]}}])", "separates"},
        {"values that would be lost",
         R"([{"name": "A", "type": "date", "from": 1, "options": {"convertFrom": "Y-M-D"}}])",
         "1 value cannot be converted"},
    };
    for (const auto& [why, schema, message] : kCases)
        Expect({"fields", "t.pdb", "-"}, {{why, {}, 1, message, {}, {schema}}});
}

TEST_F(FieldsCommand, TellsOfWhatIsNeitherYesNorNo) {
    const std::string schema = R"([{"name": "A", "type": "checkbox", "from": 0}])";
    Expect({"fields", "t.pdb", "-"},
           {{"becoming a check box", {}, 0, "2 values neither yes nor no became a no.", {}, {schema}}});
}

TEST_F(FieldsCommand, AppliesToEveryRecordAndSorts) {
    Output({"fields", "t.pdb", "-", "--lenient"}, {R"([
        {"name": "Due", "type": "date", "from": 1, "options": {"convertFrom": "Y-M-D", "today": true}},
        {"name": "Done", "type": "checkbox"},
        {"name": "Name", "type": "text", "from": 0, "width": 7}])"});
    EXPECT_EQ("[\"36296\", \"false\", \"Bo\"]\n[\"\", \"false\", \"Ann\"]\n", Stored("t.pdb"));
    EXPECT_EQ(
        "[\n"
        "  {\"name\":\"Due\",\"type\":\"date\",\"width\":0,\"from\":0,\"options\":{\"today\":true}},\n"
        "  {\"name\":\"Done\",\"type\":\"checkbox\",\"width\":80,\"from\":1,\"options\":{\"checked\":false}},\n"
        "  {\"name\":\"Name\",\"type\":\"text\",\"width\":7,\"from\":2,\"options\":{\"capitalize\":false}}\n"
        "]\n",
        Output({"fields", "t.pdb"}));
}

}  // namespace
}  // namespace quillary
