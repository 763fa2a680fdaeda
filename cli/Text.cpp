#include "cli/Text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

#include "db/Ascii.h"
#include "db/TextEntry.h"

namespace quillary {

void AppendJsonString(std::string_view utf8, std::string& out) {
    constexpr char kHexDigits[] = "0123456789abcdef";
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\'; };
    out.push_back('"');
    while (!utf8.empty()) {
        const auto* special = std::find_if_not(utf8.begin(), utf8.end(), isPlain);
        out.append(utf8.begin(), special);
        utf8.remove_prefix(static_cast<std::size_t>(special - utf8.begin()));
        if (utf8.empty()) break;
        const char c = utf8.front();
        utf8.remove_prefix(1);
        out.push_back('\\');
        switch (c) {
            case '\n':
                out.push_back('n');
                break;
            case '\r':
                out.push_back('r');
                break;
            case '\t':
                out.push_back('t');
                break;
            case '"':
            case '\\':
                out.push_back(c);
                break;
            default:
                out.append("u00");
                out.push_back(kHexDigits[c >> 4]);
                out.push_back(kHexDigits[c & 0x0F]);
        }
    }
    out.push_back('"');
}

namespace {

// Insertions, removals, replacements and exchanges of neighbours between two texts.
std::size_t MistakesBetween(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast.swap(last);
        last.swap(row);
    }
    return last[b.size()];
}

// In lower case, without the dashes of an option.
std::string PlainWord(std::string_view name) {
    std::string word(name.substr(std::min(name.find_first_not_of('-'), name.size())));
    std::transform(word.begin(), word.end(), word.begin(), AsciiLower);
    return word;
}

}  // namespace

std::string NearestNameHint(std::string_view typed, const std::vector<std::string_view>& names) {
    constexpr std::size_t kLettersAMistake = 3;
    constexpr std::size_t kLongestName = 32;
    const std::string word = PlainWord(typed.substr(0, kLongestName));
    std::string_view nearest;
    std::size_t fewest = kLongestName;
    for (const std::string_view name : names) {
        const std::string plain = PlainWord(name);
        const bool begun = word.size() >= kLettersAMistake && plain.starts_with(word);
        const std::size_t mistakes = begun ? 1 : MistakesBetween(word, plain);
        if (mistakes >= fewest || mistakes * kLettersAMistake > std::max(word.size(), plain.size())) continue;
        fewest = mistakes;
        nearest = name;
    }
    return nearest.empty() ? std::string() : " Did you mean " + Quoted(nearest) + "?";
}

std::string Quoted(std::string_view text) {
    std::string quoted(1, '"');
    return quoted.append(text).append(1, '"');
}

std::string ShowControls(std::string_view utf8, std::string_view kept, std::string_view prefix) {
    constexpr char kHexDigits[] = "0123456789ABCDEF";
    std::string shown;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const auto next = i + 1 < utf8.size() ? static_cast<unsigned char>(utf8[i + 1]) : 0u;
        const bool isHigh = byte == 0xC2 && next >= 0x80 && next < 0xA0;  // terminals obey these too
        const bool isControl = isHigh || byte < 0x20 || byte == 0x7F;
        if (!isControl || kept.find(utf8[i]) != kept.npos) {
            shown += utf8[i];
            continue;
        }
        const unsigned codePoint = isHigh ? next : byte;
        shown.append(prefix).append("00");
        shown.push_back(kHexDigits[codePoint >> 4]);
        shown.push_back(kHexDigits[codePoint & 0x0F]);
        if (isHigh) ++i;
    }
    return shown;
}

std::string OneLine(std::string_view utf8) { return ShowControls(utf8, ""); }

std::string Counted(std::uint64_t number, std::string_view noun) {
    return std::to_string(number).append(" ").append(noun).append(number == 1 ? "" : "s");
}

std::optional<std::int64_t> ReadWholeNumber(std::string_view text) {
    if (!IsPlainInteger(text)) return std::nullopt;
    std::int64_t number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc()) return number;
    using Limits = std::numeric_limits<std::int64_t>;
    return text.front() == '-' ? Limits::min() : Limits::max();
}

}  // namespace quillary
