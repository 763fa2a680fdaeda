#include "db/FieldType.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(FieldType, StoredTextsAndBack) {
    const std::tuple<const char*, FieldType, FieldOptions, const char*> kCases[] = {
        {"T", FieldType::Text, {.capitalize = true}, "T"},
        {"t", FieldType::Text, {}, "t"},
        {"F", FieldType::Number, {}, "F"},
        {"I-3;-1", FieldType::Sequence, {.first = -3, .increment = -1}, "I-3;-1"},
        {"I7", FieldType::Sequence, {.first = 7, .increment = 0}, "I7;0"},
        {"B!", FieldType::Checkbox, {.checked = true}, "B!"},
        {"D!", FieldType::Date, {.today = true}, "D!"},
        {"Dx!", FieldType::Date, {}, "D"},
        {"d!", FieldType::Time, {.now = true}, "d!"},
        {"Lred;;blue", FieldType::List, {.items = {"red", "", "blue"}}, "Lred;;blue"},
        {"P", FieldType::Phone, {}, "P"},
        {"M", FieldType::EMail, {}, "M"},
        {"W", FieldType::WebUrl, {}, "W"},
        {"Zoo", FieldType::Text, {}, "t"},
        {"", FieldType::Text, {}, "t"},
    };
    for (const auto& [stored, type, options, written] : kCases) {
        FieldType readType{};
        FieldOptions readOptions;
        DecodeFieldType(stored, readType, readOptions);
        EXPECT_EQ(type, readType) << stored;
        EXPECT_EQ(options, readOptions) << stored;
        EXPECT_EQ(written, EncodeFieldType(type, options)) << stored;
    }
}

TEST(FieldType, AnUnknownTextIsKeptUntilTheTypeChanges) {
    Field field{"A", FieldType::Text, {}};
    for (const char* text : {"Zoo", ""}) {
        field.storedType = text;
        EXPECT_EQ(text, StoredFieldType(field));
    }
    field.options.capitalize = true;
    EXPECT_EQ("T", StoredFieldType(field));
    field.type = FieldType::Phone;
    EXPECT_EQ("P", StoredFieldType(field));
}

}  // namespace
}  // namespace quillary
