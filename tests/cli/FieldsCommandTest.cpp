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
    const auto schema = [](std::string text) { return QlySurroundings{std::move(text)}; };
    Expect(
        {"fields", "t.pdb", "-"},
        {
            {"no JSON", {}, 1, "no JSON list", {}, schema("[{")},
            {"no list", {}, 1, "no JSON list", {}, schema("{}")},
            {"an empty one", {}, 1, "Please define at least one column.", {}, schema("[]")},
            {"no object in it", {}, 1, "Field 1 of the schema: it is no JSON object.", {}, schema("[1]")},
            {"no name", {}, 1, "it has no name", {}, schema(R"([{"type": "text"}])")},
            {"a blank one",
             {},
             1,
             "The blank field must have a name.",
             {},
             schema(R"([{"name": " ", "type": "text"}])")},
            {"one that cannot be stored", {}, 1, "ж", {}, schema(R"([{"name": "ж", "type": "text"}])")},
            {"no type", {}, 1, "it has no type", {}, schema(R"([{"name": "A"}])")},
            {"an unknown type", {}, 1, "no field type \"Text\"", {}, schema(R"([{"name": "A", "type": "Text"}])")},
            {"a slip", {}, 1, "Did you mean \"width\"?", {}, schema(R"([{"name": "A", "type": "text", "widht": 1}])")},
            {"a width beyond 32 bits",
             {},
             1,
             "its width",
             {},
             schema(R"([{"name": "A", "type": "text", "width": 2147483648}])")},
            {"a position that is none",
             {},
             1,
             "from 0 to 3",
             {},
             schema(R"([{"name": "A", "type": "text", "from": 4}])")},
            {"one that is taken",
             {},
             1,
             "Field 2 of the schema: an earlier field",
             {},
             schema(R"([{"name": "A", "type": "text", "from": 1}, {"name": "B", "type": "text", "from": 1}])")},
            {"another type's option",
             {},
             1,
             "has no \"items\"",
             {},
             schema(R"([{"name": "A", "type": "date", "options": {"items": []}}])")},
            {"an order that is none",
             {},
             1,
             "Y-M-D",
             {},
             schema(R"([{"name": "A", "type": "date", "options": {"convertFrom": "Y/M/D"}}])")},
            {"an item of two",
             {},
             1,
             "separates",
             {},
             schema(R"([{"name": "A", "type": "list", "options": {"items": ["a;b"]}}])")},
            {"values that would be lost",
             {},
             1,
             "1 value cannot be converted",
             {},
             schema(R"([{"name": "A", "type": "date", "from": 1, "options": {"convertFrom": "Y-M-D"}}])")},
        });
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
