#include "admin/ConvertValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "db/Ascii.h"
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

// Whether a check box shows what `stored` says: of any other text it shows a no.
Converted AsYesOrNo(std::string_view stored) {
    std::string upper(stored);
    std::transform(upper.begin(), upper.end(), upper.begin(), AsciiUpper);
    const bool isNo = upper == "FALSE" || upper == "0" || upper == "NO" || upper == "NEIN" ||
                      upper.find_first_not_of(' ') == upper.npos;
    return isNo || IsChecked(stored) ? Converted::Kept : Converted::Unchecked;
}

bool IsText(FieldType type) { return type == FieldType::Text || type == FieldType::List; }
bool IsCount(FieldType type) { return type == FieldType::Date || type == FieldType::Time; }

}  // namespace

bool KeepsEveryValue(FieldType to, FieldType from) {
    switch (from) {
        case FieldType::Number:
        case FieldType::Sequence:
        case FieldType::EMail:
        case FieldType::WebUrl:
            return to != FieldType::Checkbox;  // they show what is stored
        case FieldType::Checkbox:
            return to == FieldType::Checkbox;
        case FieldType::Date:
        case FieldType::Time:
            return IsCount(to) || to == FieldType::Number || to == FieldType::Sequence;
        default:
            return false;
    }
}

Converted AppendConverted(const Conversion& conversion, std::string_view stored, const AnsiText& page,
                          std::string& out) {
    const auto [to, from, order, century, style] = conversion;
    // A count stays what it is, between dates and times as well: seconds are then read as days.
    if (KeepsEveryValue(to, from)) {
        out.append(stored);
        return Converted::Kept;
    }
    switch (to) {
        case FieldType::Number:
        case FieldType::Sequence:
            if (from != FieldType::Checkbox) break;
            out.push_back(IsChecked(stored) ? '1' : '0');
            return AsYesOrNo(stored);
        case FieldType::Checkbox:
            if (!IsCount(from)) {
                AppendDisplayText(from, stored, style, page, out);
                return AsYesOrNo(stored);
            }
            out.append("false");
            return stored.empty() ? Converted::Kept : Converted::Unchecked;
        case FieldType::Date:
            if (!IsText(from)) break;
            return AppendCount(DayOfText(stored, order, century), IsNoDate(stored), out);
        case FieldType::Time:
            if (!IsText(from)) break;
            return AppendCount(ParseTime(stored), IsNoTime(stored), out);
        default:
            break;
    }
    AppendDisplayText(from, stored, style, page, out);
    return from == FieldType::Checkbox ? AsYesOrNo(stored) : Converted::Kept;
}

}  // namespace quillary
