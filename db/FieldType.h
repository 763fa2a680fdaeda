// The ten field types: their numbers, names, stored codes and what differs between them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

enum class FieldType : std::uint8_t { Text, Number, Sequence, Checkbox, Date, Time, List, Phone, EMail, WebUrl };
inline constexpr std::size_t kFieldTypeCount = 10;
/// Stands for "no such field" where a type is looked up by name.
inline constexpr std::size_t kNoFieldType = 10;

enum class Align : std::uint8_t { Left, Right };

struct FieldTypeInfo {
    FieldType type;
    std::string_view name;         // as dialogs show it
    std::string_view commandName;  // as qly takes it
    Align align;
    std::span<const std::string_view> operators;  // of a filter condition; the index is the stored code
};

[[nodiscard]] const FieldTypeInfo& InfoOf(FieldType type);
[[nodiscard]] std::span<const FieldTypeInfo> AllFieldTypes();
/// The operators of a condition on All Fields.
[[nodiscard]] std::span<const std::string_view> AllFieldsOperators();
/// By the name that qly takes.
[[nodiscard]] std::optional<FieldType> FieldTypeFromCommandName(std::string_view name);

/// What a field's type carries besides its number. Only the members of the field's own type mean anything.
struct FieldOptions {
    bool capitalize = false;              // Text: auto capitalize first word
    bool checked = false;                 // Checkbox: default as checked
    bool today = false;                   // Date: default as current date
    bool now = false;                     // Time: default as current time
    std::int32_t first = 1;               // Sequence: the value that the next new record receives
    std::int32_t increment = 1;           // Sequence
    std::vector<std::string> items = {};  // List, in the file's code page; none holds ";"

    bool operator==(const FieldOptions&) const = default;
};

inline constexpr std::int32_t kDefaultWidth = 80;  // pixels

/// One column of the table.
struct Field {
    std::string name;  // in the file's code page, not empty
    FieldType type = FieldType::Text;
    FieldOptions options;
    std::int32_t width = kDefaultWidth;  // pixels, as stored; ShownWidth is what a list uses
    /// The texts that type and width were read from, if they were read. They are written back as they were, unknown
    /// letters included, until what they mean is changed.
    std::optional<std::string> storedType = std::nullopt;
    std::optional<std::string> storedWidth = std::nullopt;

    bool operator==(const Field&) const = default;
};

/// The nearest width from 0 to 4,096 pixels.
[[nodiscard]] std::int32_t ShownWidth(const Field& field);

/// The type text of the DataType record for `type` and `options`.
[[nodiscard]] std::string EncodeFieldType(FieldType type, const FieldOptions& options);
/// What to write for `field`: the text it was read from while that still means the field's type and options.
[[nodiscard]] std::string StoredFieldType(const Field& field);
/// The same for the width.
[[nodiscard]] std::string StoredFieldWidth(const Field& field);
/// A text that is no known type reads as Text with default options.
void DecodeFieldType(std::string_view stored, FieldType& type, FieldOptions& options);

}  // namespace quillary
