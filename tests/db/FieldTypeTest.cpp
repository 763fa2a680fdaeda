#include "db/FieldType.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(FieldType, StoredTextsAndBack) {
    struct Case {
        const char* stored;
        FieldType type;
        FieldOptions options;
        const char* written;
    };
    const Case kCases[] = {
        {"T", FieldType::Text, {.capitalize = true}, "T"},
        {"t", FieldType::Text, {}, "t"},
        {"F", FieldType::Number, {}, "F"},
        {"I100;5", FieldType::Sequence, {.first = 100, .increment = 5}, "I100;5"},
        {"I-3;-1", FieldType::Sequence, {.first = -3, .increment = -1}, "I-3;-1"},
        {"I7", FieldType::Sequence, {.first = 7, .increment = 0}, "I7;0"},
        {"B", FieldType::Checkbox, {}, "B"},
        {"B!", FieldType::Checkbox, {.checked = true}, "B!"},
        {"D!", FieldType::Date, {.today = true}, "D!"},
        {"Dx!", FieldType::Date, {}, "D"},
        {"d!", FieldType::Time, {.now = true}, "d!"},
        {"L", FieldType::List, {}, "L"},
        {"Lred;;blue", FieldType::List, {.items = {"red", "", "blue"}}, "Lred;;blue"},
        {"P", FieldType::Phone, {}, "P"},
        {"M", FieldType::EMail, {}, "M"},
        {"W", FieldType::WebUrl, {}, "W"},
        {"Zoo", FieldType::Text, {}, "t"},
        {"", FieldType::Text, {}, "t"},
    };
    for (const auto& c : kCases) {
        FieldType type{};
        FieldOptions options;
        DecodeFieldType(c.stored, type, options);
        EXPECT_EQ(c.type, type) << c.stored;
        EXPECT_EQ(c.options, options) << c.stored;
        EXPECT_EQ(c.written, EncodeFieldType(type, options)) << c.stored;
    }
}

TEST(FieldType, AnUnknownTextIsKeptUntilTheTypeChanges) {
    Field field;
    EXPECT_EQ("t", StoredFieldType(field)) << "a new field";
    for (const char* text : {"Zoo", ""}) {
        field.storedType = text;
        EXPECT_EQ(text, StoredFieldType(field));
    }
    field.options.capitalize = true;
    EXPECT_EQ("T", StoredFieldType(field));
    field = {};
    field.storedType = "F2";
    field.type = FieldType::Number;
    EXPECT_EQ("F2", StoredFieldType(field));
    field.type = FieldType::Phone;
    EXPECT_EQ("P", StoredFieldType(field));
}

}  // namespace
}  // namespace quillary
