#include "db/TextEntry.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "db/Ascii.h"
#include "db/FieldValue.h"

namespace quillary {

namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool SameIgnoringCase(std::string_view text, std::string_view other) {
    return text.size() == other.size() && std::equal(text.begin(), text.end(), other.begin(),
                                                     [](char a, char b) { return AsciiLower(a) == AsciiLower(b); });
}

// Takes pieces off the front of a text.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    struct Digits {
        int value;
        std::size_t count;
    };
    // A number of `most` digits at most.
    std::optional<Digits> Number(std::size_t most) {
        std::size_t count = 0;
        int value = 0;
        while (count < m_rest.size() && IsDigit(m_rest[count])) {
            if (count == most) return std::nullopt;
            value = value * 10 + (m_rest[count++] - '0');
        }
        if (count == 0) return std::nullopt;
        m_rest.remove_prefix(count);
        return Digits{value, count};
    }
    bool Take(char c) {
        if (m_rest.empty() || m_rest.front() != c) return false;
        m_rest.remove_prefix(1);
        return true;
    }
    bool Blanks() {
        bool any = false;
        while (Take(' ')) any = true;
        return any;
    }
    std::string_view Word() {
        const auto* end = std::find_if_not(m_rest.begin(), m_rest.end(), IsAsciiLetter);
        const std::string_view word = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
        m_rest.remove_prefix(word.size());
        return word;
    }
    [[nodiscard]] char Peek() const { return m_rest.empty() ? '\0' : m_rest.front(); }
    [[nodiscard]] bool AtEnd() const { return m_rest.empty(); }

  private:
    std::string_view m_rest;
};

struct YearRules {
    std::optional<int> century;
    ShortYears shortYears;
};

std::optional<int> Year(Scanner::Digits digits, const YearRules& rules) {
    if (digits.count == 3 && rules.shortYears == ShortYears::Refused) return std::nullopt;
    if (digits.value >= 100) return digits.value;
    if (!rules.century || digits.count != 2) return std::nullopt;
    return *rules.century + digits.value;
}

std::optional<std::int32_t> ParseMonthName(std::string_view text, const YearRules& rules) {
    Scanner scanner(text);
    const std::string_view name = scanner.Word();
    const auto* month = std::find_if(std::begin(kMonthNames), std::end(kMonthNames),
                                     [name](std::string_view m) { return SameIgnoringCase(name, m); });
    if (month == std::end(kMonthNames) || !scanner.Blanks()) return std::nullopt;
    const auto day = scanner.Number(2);
    if (!day) return std::nullopt;
    const bool comma = scanner.Take(',');
    if (!scanner.Blanks() && !comma) return std::nullopt;
    const auto yearDigits = scanner.Number(4);
    if (!yearDigits || !scanner.AtEnd()) return std::nullopt;
    const auto year = Year(*yearDigits, rules);
    if (!year) return std::nullopt;
    return DateToDay({*year, static_cast<int>(month - std::begin(kMonthNames)) + 1, day->value});
}

}  // namespace

std::optional<std::int32_t> ParseDate(std::string_view text, DateOrder order, std::optional<int> century,
                                      ShortYears shortYears) {
    const YearRules rules{century, shortYears};
    text = Trimmed(text);
    if (text.empty()) return std::nullopt;
    if (!IsDigit(text.front())) return ParseMonthName(text, rules);

    Scanner scanner(text);
    std::array<Scanner::Digits, 3> numbers{};
    const char separator = [&]() -> char {
        const auto first = scanner.Number(4);
        if (!first) return '\0';
        numbers[0] = *first;
        return scanner.Peek();
    }();
    if (separator != '/' && separator != '.' && separator != '-') return std::nullopt;
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (!scanner.Take(separator)) return std::nullopt;
        const auto number = scanner.Number(4);
        if (!number) return std::nullopt;
        numbers[i] = *number;
    }
    if (!scanner.AtEnd()) return std::nullopt;

    if (separator == '-' && numbers[0].count == 4) order = DateOrder::YearMonthDay;
    struct Places {
        std::size_t year, month, day;
    };
    constexpr Places kPlaces[] = {{2, 0, 1}, {2, 1, 0}, {0, 1, 2}};
    const Places& at = kPlaces[static_cast<std::size_t>(order)];
    if (numbers[at.month].count > 2 || numbers[at.day].count > 2) return std::nullopt;
    const auto year = Year(numbers[at.year], rules);
    if (!year) return std::nullopt;
    return DateToDay({*year, numbers[at.month].value, numbers[at.day].value});
}

std::optional<std::int32_t> ParseTime(std::string_view text) {
    Scanner scanner(Trimmed(text));
    const auto hour = scanner.Number(2);
    if (!hour || !scanner.Take(':')) return std::nullopt;
    const auto minute = scanner.Number(2);
    if (!minute || minute->count != 2 || minute->value > 59) return std::nullopt;
    if (scanner.Take(':')) {
        const auto second = scanner.Number(2);
        if (!second || second->count != 2 || second->value > 59) return std::nullopt;
    }
    scanner.Blanks();
    int hours = hour->value;
    const std::string_view half = scanner.Word();
    if (!scanner.AtEnd()) return std::nullopt;
    if (!half.empty()) {
        const bool afternoon = SameIgnoringCase(half, "pm");
        if ((!afternoon && !SameIgnoringCase(half, "am")) || hours < 1 || hours > 12) return std::nullopt;
        hours = hours % 12 + (afternoon ? 12 : 0);
    }
    if (hours > 23) return std::nullopt;
    return (hours * 60 + minute->value) * 60;
}

bool IsNoDate(std::string_view text) { return Trimmed(text).empty() || SameIgnoringCase(Trimmed(text), "no date"); }

bool IsNoTime(std::string_view text) { return Trimmed(text).empty() || SameIgnoringCase(Trimmed(text), "no time"); }

std::optional<bool> ParseCheckBox(std::string_view text) {
    text = Trimmed(text);
    for (const std::string_view yes : {"true", "1", "yes"}) {
        if (SameIgnoringCase(text, yes)) return true;
    }
    for (const std::string_view no : {"false", "0", "no"}) {
        if (SameIgnoringCase(text, no)) return false;
    }
    return std::nullopt;
}

bool IsPlainNumber(std::string_view text) {
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    return std::any_of(text.begin(), text.end(), IsDigit) && std::count(text.begin(), text.end(), '.') <= 1 &&
           std::all_of(text.begin(), text.end(), [](char c) { return IsDigit(c) || c == '.'; });
}

bool IsPlainInteger(std::string_view text) {
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

}  // namespace quillary
