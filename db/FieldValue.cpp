#include "db/FieldValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>

#include "db/Ascii.h"

namespace quillary {

namespace {

constexpr std::string_view kNoDate = "No Date";
constexpr std::string_view kNoTime = "No Time";
constexpr std::int32_t kSecondsADay = 24 * 60 * 60;

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Days from 1 March of year 0, in the calendar that begins its years in March.
constexpr std::int64_t DaysFromMarchOfYearZero(std::int64_t year, int month, int day) {
    year -= month <= 2;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
}
constexpr std::int64_t kEpoch = DaysFromMarchOfYearZero(1904, 1, 1);
constexpr auto kFirstDay = static_cast<std::int32_t>(DaysFromMarchOfYearZero(100, 1, 1) - kEpoch);
constexpr auto kLastDay = static_cast<std::int32_t>(DaysFromMarchOfYearZero(9999, 12, 31) - kEpoch);

// Writes two digits and `behind` them; returns the end.
char* PutTwoDigits(int value, std::string_view behind, char* at) {
    *at++ = static_cast<char>('0' + value / 10);
    *at++ = static_cast<char>('0' + value % 10);
    return std::copy(behind.begin(), behind.end(), at);
}

void AppendDate(std::string_view stored, DateStyle style, std::string& out) {
    if (stored.empty()) {
        out.append(kNoDate);
        return;
    }
    const auto day = ReadDay(stored);
    if (!day) {
        out.append(stored);
        return;
    }
    const CivilDate date = DayToDate(*day);
    std::array<char, 10> text;
    char* at = text.data();
    if (style == DateStyle::Long) {
        out.append(kMonthNames[date.month - 1]).push_back(' ');
        at = PutTwoDigits(date.day, ", ", at);
    } else {
        at = PutTwoDigits(date.month, "/", at);
        at = PutTwoDigits(date.day, "/", at);
    }
    at = std::to_chars(at, text.data() + text.size(), date.year).ptr;
    out.append(text.data(), at);
}

void AppendTime(std::string_view stored, std::string& out) {
    const auto minute = ReadMinute(stored);
    if (!minute) {
        // A negative count is no time of day; it shows as what it is, so that nobody takes it for an empty field.
        out.append(ReadDecimal(stored) < 0 ? stored : kNoTime);
        return;
    }
    const int hour = *minute / 60;
    std::array<char, 8> text;
    char* at = PutTwoDigits(hour % 12 == 0 ? 12 : hour % 12, ":", text.data());
    at = PutTwoDigits(*minute % 60, hour < 12 ? " am" : " pm", at);
    out.append(text.data(), at);
}

using PhoneBuffer = std::array<char, 10>;

// The digits of a phone number in `buffer`, or nothing when it is none: a letter, or not 7 or 10 digits.
std::string_view PhoneDigits(std::string_view text, const AnsiText& page, PhoneBuffer& buffer) {
    std::size_t count = 0;
    for (const char c : text) {
        if (!IsDigit(c)) continue;
        if (count == buffer.size()) return {};
        buffer[count++] = c;
    }
    if (count != 7 && count != 10) return {};
    if (count < text.size() && page.HasLetter(text)) return {};
    return {buffer.data(), count};
}

void AppendPhone(std::string_view stored, const AnsiText& page, std::string& out) {
    PhoneBuffer buffer;
    const std::string_view digits = PhoneDigits(stored, page, buffer);
    if (digits.empty()) {
        out.append(stored);
        return;
    }
    const std::string_view form = digits.size() == 7 ? "000-0000" : "(000) 000-0000";
    std::array<char, 14> shown;
    std::transform(form.begin(), form.end(), shown.begin(),
                   [digit = digits.begin()](char c) mutable { return c == '0' ? *digit++ : c; });
    out.append(shown.data(), form.size());
}

// The value of a decimal number too large or too small for a double.
double Saturated(std::string_view number) {
    const bool negative = number[0] == '-';
    const auto exponentAt = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, exponentAt);
    const auto firstDigit = mantissa.find_first_of("123456789");
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    double exponent = static_cast<double>(point) - static_cast<double>(firstDigit);
    if (exponentAt != number.npos) exponent += ReadDecimal(number.substr(exponentAt + 1));
    const double value = exponent > 0 ? std::numeric_limits<double>::max() : 0.0;
    return negative ? -value : value;
}

// The number at the start of a text, behind blanks and a plus sign; empty when there is none.
std::string_view FindNumber(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return {};
    }
    std::size_t end = !text.empty() && text.front() == '-' ? 1 : 0;
    const auto skipDigits = [&text](std::size_t at) {
        while (at < text.size() && IsDigit(text[at])) ++at;
        return at;
    };
    const std::size_t wholeEnd = skipDigits(end);
    bool anyDigit = wholeEnd > end;
    end = wholeEnd;
    if (end < text.size() && text[end] == '.') {
        const std::size_t fractionEnd = skipDigits(end + 1);
        anyDigit = anyDigit || fractionEnd > end + 1;
        end = fractionEnd;
    }
    if (!anyDigit) return {};
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t digits = end + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) ++digits;
        const std::size_t exponentEnd = skipDigits(digits);
        if (exponentEnd > digits) end = exponentEnd;
    }
    return text.substr(0, end);
}

}  // namespace

void AppendUniformLines(std::string_view text, std::string& out) {
    for (;;) {
        const auto lineFeed = text.find('\n');
        if (lineFeed == text.npos) break;
        const bool paired = lineFeed > 0 && text[lineFeed - 1] == '\r';
        out.append(text, 0, paired ? lineFeed - 1 : lineFeed).append("\r\n");
        text.remove_prefix(lineFeed + 1);
    }
    out.append(text);
}

void AppendDisplayText(FieldType type, std::string_view stored, DateStyle style, const AnsiText& page,
                       std::string& out) {
    switch (type) {
        case FieldType::Text:
        case FieldType::List:
            AppendUniformLines(stored, out);
            break;
        case FieldType::Number:
        case FieldType::Sequence:
        case FieldType::EMail:
        case FieldType::WebUrl:
            out.append(stored);
            break;
        case FieldType::Checkbox:
            out.append(IsChecked(stored) ? "true" : "false");
            break;
        case FieldType::Date:
            AppendDate(stored, style, out);
            break;
        case FieldType::Time:
            AppendTime(stored, out);
            break;
        case FieldType::Phone:
            AppendPhone(stored, page, out);
            break;
    }
}

std::string DisplayText(FieldType type, std::string_view stored, DateStyle style, const AnsiText& page) {
    std::string text;
    AppendDisplayText(type, stored, style, page, text);
    return text;
}

bool IsChecked(std::string_view stored) {
    constexpr std::string_view kTrueTexts[] = {"TRUE", "1", "YES", "JA"};
    const auto sameUpper = [](char wanted, char c) { return wanted == AsciiUpper(c); };
    return std::any_of(std::begin(kTrueTexts), std::end(kTrueTexts), [&](std::string_view text) {
        return text.size() == stored.size() && std::equal(text.begin(), text.end(), stored.begin(), sameUpper);
    });
}

std::int32_t ReadDecimal(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+')) text.remove_prefix(1);
    constexpr std::int64_t kBeyond = std::int64_t{1} << 40;
    std::int64_t value = 0;
    for (const char c : text) {
        if (!IsDigit(c)) break;
        value = std::min(value * 10 + (c - '0'), kBeyond);
    }
    if (negative) value = -value;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

double ReadNumber(std::string_view text) {
    const std::string_view number = FindNumber(text);
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    return result.ec == std::errc::result_out_of_range ? Saturated(number) : value;
}

bool IsNumber(std::string_view text) {
    const std::string_view number = FindNumber(text);
    return !number.empty() && number.data() + number.size() == text.data() + text.size();
}

std::optional<std::int32_t> ReadDay(std::string_view stored) {
    if (stored.empty()) return std::nullopt;
    const std::int32_t day = ReadDecimal(stored);
    if (day < kFirstDay || day > kLastDay) return std::nullopt;
    return day;
}

std::optional<std::int32_t> ReadMinute(std::string_view stored) {
    if (stored.empty()) return std::nullopt;
    const std::int32_t seconds = ReadDecimal(stored);
    if (seconds < 0 || (seconds == 0 && stored != "0")) return std::nullopt;
    return seconds % kSecondsADay / 60;
}

CivilDate DayToDate(std::int32_t daysSince1904) {
    const std::int64_t days = kEpoch + daysSince1904;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const auto marchMonth = static_cast<int>((5 * dayOfYear + 2) / 153);
    const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    return {static_cast<std::int32_t>(yearOfEra + era * 400 + (month <= 2)), month,
            static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1)};
}

std::optional<std::int32_t> DateToDay(const CivilDate& date) {
    if (date.year < 100 || date.year > 9999 || date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31) {
        return std::nullopt;
    }
    const auto day = static_cast<std::int32_t>(DaysFromMarchOfYearZero(date.year, date.month, date.day) - kEpoch);
    if (DayToDate(day).day != date.day) return std::nullopt;  // 30 February and its like
    return day;
}

std::string NormalizePhone(std::string_view text, const AnsiText& page) {
    PhoneBuffer buffer;
    const std::string_view digits = PhoneDigits(text, page, buffer);
    return std::string(digits.empty() ? text : digits);
}

}  // namespace quillary
