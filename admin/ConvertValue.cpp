#include "admin/ConvertValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "db/FieldValue.h"
#include "db/TextEntry.h"

namespace quillary {

namespace {

constexpr std::string_view kDigitsAndSlash = "0123456789/";

// Three numbers with "/", "-" or "." between them, as a date; what follows them does not matter.
std::optional<std::int32_t> DayOfText(std::string_view text, DateOrder order, int century) {
    std::string numbers(text);
    std::replace_if(
        numbers.begin(), numbers.end(), [](char c) { return c == '-' || c == '.'; }, '/');
    numbers.resize(std::min(numbers.find_first_not_of(kDigitsAndSlash), numbers.size()));
    const auto first = numbers.find('/');
    const auto second = first == numbers.npos ? numbers.npos : numbers.find('/', first + 1);
    if (second == numbers.npos) return std::nullopt;

    const std::array<std::int32_t, 3> parts = {ReadDecimal(numbers.substr(0, first)),
                                               ReadDecimal(numbers.substr(first + 1, second - first - 1)),
                                               ReadDecimal(numbers.substr(second + 1))};
    CivilDate date{};
    switch (order) {
        case DateOrder::MonthDayYear:
            date = {parts[2], parts[0], parts[1]};
            break;
        case DateOrder::DayMonthYear:
            date = {parts[2], parts[1], parts[0]};
            break;
        case DateOrder::YearMonthDay:
            date = {parts[0], parts[1], parts[2]};
            break;
    }
    if (date.year < 100) date.year += century;  // no window slides: 99 is the end of the present century
    return DateToDay(date);
}

Converted AppendCount(std::optional<std::int32_t> count, bool wasEmpty, std::string& out) {
    if (!count) return wasEmpty ? Converted::Kept : Converted::Emptied;
    std::array<char, 11> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), *count).ptr);
    return Converted::Kept;
}

bool IsText(FieldType type) { return type == FieldType::Text || type == FieldType::List; }
bool IsCount(FieldType type) { return type == FieldType::Date || type == FieldType::Time; }

}  // namespace

Converted AppendConverted(const Conversion& conversion, std::string_view stored, const AnsiText& page,
                          std::string& out) {
    const auto [to, from, order, century, style] = conversion;
    switch (to) {
        case FieldType::Number:
        case FieldType::Sequence:
            if (from == FieldType::Checkbox) {
                out.push_back(IsChecked(stored) ? '1' : '0');
                return Converted::Kept;
            }
            if (IsCount(from)) {
                out.append(stored);
                return Converted::Kept;
            }
            break;
        case FieldType::Checkbox:
            if (IsCount(from)) {
                out.append("false");
                return stored.empty() ? Converted::Kept : Converted::Unchecked;
            }
            if (from == FieldType::Checkbox) {
                out.append(stored);
                return Converted::Kept;
            }
            break;
        case FieldType::Date:
            if (IsText(from)) return AppendCount(DayOfText(stored, order, century), IsNoDate(stored), out);
            [[fallthrough]];
        case FieldType::Time:
            // A count stays what it is, between the two types as well: seconds are then read as days.
            if (IsCount(from)) {
                out.append(stored);
                return Converted::Kept;
            }
            if (IsText(from)) return AppendCount(ParseTime(stored), IsNoTime(stored), out);
            break;
        default:
            break;
    }
    AppendDisplayText(from, stored, style, page, out);
    return Converted::Kept;
}

}  // namespace quillary
