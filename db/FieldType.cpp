#include "db/FieldType.h"

#include <algorithm>
#include <iterator>

#include "db/FieldValue.h"

namespace quillary {

namespace {

constexpr std::string_view kTextOperators[] = {"is", "contains"};
constexpr std::string_view kNumberOperators[] = {"is", "is not", "less than", "greater than"};
constexpr std::string_view kEqualityOperators[] = {"is", "is not"};
constexpr std::string_view kMomentOperators[] = {"is", "is not", "is before", "is after"};

constexpr FieldTypeInfo kFieldTypes[] = {
    {FieldType::Text, "Text", "text", Align::Left, kTextOperators},
    {FieldType::Number, "Number", "number", Align::Right, kNumberOperators},
    {FieldType::Sequence, "Sequence", "sequence", Align::Right, kNumberOperators},
    {FieldType::Checkbox, "Checkbox", "checkbox", Align::Left, kEqualityOperators},
    {FieldType::Date, "Date", "date", Align::Left, kMomentOperators},
    {FieldType::Time, "Time", "time", Align::Left, kMomentOperators},
    {FieldType::List, "List", "list", Align::Left, kEqualityOperators},
    {FieldType::Phone, "Phone", "phone", Align::Left, kTextOperators},
    {FieldType::EMail, "E-Mail", "e-mail", Align::Left, kTextOperators},
    {FieldType::WebUrl, "Web URL", "web-url", Align::Left, kTextOperators},
};
static_assert(std::size(kFieldTypes) == kFieldTypeCount);

constexpr std::int32_t kMaxShownWidth = 4096;
constexpr char kItemSeparator = ';';

std::vector<std::string> SplitItems(std::string_view text) {
    std::vector<std::string> items;
    if (text.empty()) return items;
    for (;;) {
        const auto end = text.find(kItemSeparator);
        items.emplace_back(text.substr(0, end));
        if (end == text.npos) return items;
        text.remove_prefix(end + 1);
    }
}

}  // namespace

const FieldTypeInfo& InfoOf(FieldType type) { return kFieldTypes[static_cast<std::size_t>(type)]; }

std::span<const FieldTypeInfo> AllFieldTypes() { return kFieldTypes; }

std::span<const std::string_view> AllFieldsOperators() { return kTextOperators; }

std::optional<FieldType> FieldTypeFromCommandName(std::string_view name) {
    const auto* found = std::find_if(std::begin(kFieldTypes), std::end(kFieldTypes),
                                     [name](const FieldTypeInfo& info) { return info.commandName == name; });
    if (found == std::end(kFieldTypes)) return std::nullopt;
    return found->type;
}

std::int32_t ShownWidth(const Field& field) { return std::clamp(field.width, 0, kMaxShownWidth); }

std::string EncodeFieldType(FieldType type, const FieldOptions& options) {
    const auto flagged = [](char letter, bool on) { return on ? std::string{letter, '!'} : std::string{letter}; };
    switch (type) {
        case FieldType::Text:
            return options.capitalize ? "T" : "t";
        case FieldType::Number:
            return "F";
        case FieldType::Sequence:
            return 'I' + std::to_string(options.first) + kItemSeparator + std::to_string(options.increment);
        case FieldType::Checkbox:
            return flagged('B', options.checked);
        case FieldType::Date:
            return flagged('D', options.today);
        case FieldType::Time:
            return flagged('d', options.now);
        case FieldType::List: {
            std::string text = "L";
            for (std::size_t i = 0; i < options.items.size(); ++i) {
                if (i > 0) text += kItemSeparator;
                text += options.items[i];
            }
            return text;
        }
        case FieldType::Phone:
            return "P";
        case FieldType::EMail:
            return "M";
        case FieldType::WebUrl:
            return "W";
    }
    return "t";
}

std::string StoredFieldType(const Field& field) {
    std::string encoded = EncodeFieldType(field.type, field.options);
    if (!field.storedType) return encoded;
    FieldType type{};
    FieldOptions options;
    DecodeFieldType(*field.storedType, type, options);
    return type == field.type && EncodeFieldType(type, options) == encoded ? *field.storedType : encoded;
}

std::string StoredFieldWidth(const Field& field) {
    const bool isKept = field.storedWidth && ReadDecimal(*field.storedWidth) == field.width;
    return isKept ? *field.storedWidth : std::to_string(field.width);
}

void DecodeFieldType(std::string_view stored, FieldType& type, FieldOptions& options) {
    type = FieldType::Text;
    options = {};
    if (stored.empty()) return;
    const bool flag = stored.size() > 1 && stored[1] == '!';
    switch (stored[0]) {
        case 'T':
            options.capitalize = true;
            break;
        case 'F':
            type = FieldType::Number;
            break;
        case 'I': {
            type = FieldType::Sequence;
            const std::string_view numbers = stored.substr(1);
            const auto separator = numbers.find(kItemSeparator);
            options.first = ReadDecimal(numbers.substr(0, separator));
            options.increment = separator == numbers.npos ? 0 : ReadDecimal(numbers.substr(separator + 1));
            break;
        }
        case 'B':
            type = FieldType::Checkbox;
            options.checked = flag;
            break;
        case 'D':
            type = FieldType::Date;
            options.today = flag;
            break;
        case 'd':
            type = FieldType::Time;
            options.now = flag;
            break;
        case 'L':
            type = FieldType::List;
            options.items = SplitItems(stored.substr(1));
            break;
        case 'P':
            type = FieldType::Phone;
            break;
        case 'M':
            type = FieldType::EMail;
            break;
        case 'W':
            type = FieldType::WebUrl;
            break;
        default:
            break;
    }
}

}  // namespace quillary
