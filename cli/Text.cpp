#include "cli/Text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

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

}  // namespace

std::string_view NearestName(std::string_view typed, const std::vector<std::string_view>& candidates) {
    constexpr std::size_t kLongestName = 64;  // a longer word is no slip of the finger
    typed = typed.substr(0, kLongestName);
    std::string_view nearest;
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (const std::string_view candidate : candidates) {
        const std::size_t mistakes = MistakesBetween(typed, candidate);
        if (mistakes < fewest) {
            fewest = mistakes;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string Quoted(std::string_view text) {
    std::string quoted(1, '"');
    return quoted.append(text).append(1, '"');
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == '\n' || byte == '\r' || byte == '\t') {
            c = ' ';
        } else if (byte < 0x20 || byte == 0x7F) {
            c = '?';
        }
    }
    return line;
}

std::optional<std::int64_t> ReadWholeNumber(std::string_view text) {
    if (!IsPlainInteger(text)) return std::nullopt;
    std::int64_t number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc()) return number;
    using Limits = std::numeric_limits<std::int64_t>;
    return text.front() == '-' ? Limits::min() : Limits::max();
}

}  // namespace quillary
