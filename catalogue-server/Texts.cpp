#include "catalogue-server/Texts.h"

#include <algorithm>
#include <cstdio>

#include "db/AnsiText.h"
#include "db/Ascii.h"
#include "db/Utf.h"

namespace quillary {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

int HexValue(char c) {
    if (IsDigit(c)) return c - '0';
    const char lower = AsciiLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool IsBlankOrControl(char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7F'; }

bool IsInsideCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string FoldedText(std::string_view utf8) {
    const auto wide = Utf8ToWide(utf8);
    return wide ? WideToUtf8(AnsiText::Upper(*wide)) : std::string(utf8);
}

std::string ValidText(std::string_view bytes) {
    std::string text(bytes);
    if (!Utf8ToWide(bytes)) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    }
    return text;
}

std::string_view TrimmedText(std::string_view text) {
    while (!text.empty() && IsBlankOrControl(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlankOrControl(text.back())) text.remove_suffix(1);
    return text;
}

std::string KilobytesText(std::uint64_t bytes) {
    // In whole tenths, so that no locale and no rounding of halves has a say.
    std::uint64_t tenths = bytes / 1024 * 10 + (bytes % 1024 * 10 + 512) / 1024;
    if (bytes > 0) tenths = std::max<std::uint64_t>(tenths, 1);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string PercentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low < 0) {
            decoded += text[i];
        } else {
            decoded += static_cast<char>(high * 16 + low);
            i += 2;
        }
    }
    return decoded;
}

std::string PercentEncoded(std::string_view bytes) {
    std::string encoded;
    for (const char c : bytes) {
        if (IsAsciiLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_' || c == '~') {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
        }
    }
    return encoded;
}

std::string HtmlEscaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += IsBlankOrControl(c) ? ' ' : c;
        }
    }
    return escaped;
}

std::string HexText(std::uint64_t number) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(number));
    return digits;
}

std::string_view BeginningOf(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text;
    while (most > 0 && IsInsideCharacter(text[most])) --most;
    return text.substr(0, most);
}

std::string_view EndOf(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text;
    text.remove_prefix(text.size() - most);
    while (!text.empty() && IsInsideCharacter(text.front())) text.remove_prefix(1);
    return text;
}

}  // namespace quillary
