#include "db/CellText.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "db/Ascii.h"
#include "db/QuillaryDoc.h"

namespace quillary {

namespace {

constexpr std::size_t kMaxWidth = 255;

struct Directive {
    bool leftAlign = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zeros = false;
    std::size_t width = 0;
    std::size_t precision = kNoPrecision;
    char letter = 0;

    static constexpr std::size_t kNoPrecision = std::numeric_limits<std::size_t>::max();
};

std::size_t ReadCount(std::string_view text, std::size_t& at) {
    std::size_t count = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        count = std::min(count * 10 + static_cast<std::size_t>(text[at] - '0'), kMaxWidth);
    }
    return count;
}

// Reads what follows a "%"; the number of characters read, or 0 when it is no directive.
std::size_t ReadDirective(std::string_view text, Directive& directive) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        switch (text[at]) {
            case '-':
                directive.leftAlign = true;
                continue;
            case '+':
                directive.plus = true;
                continue;
            case ' ':
                directive.blank = true;
                continue;
            case '#':
                directive.alternate = true;
                continue;
            case '0':
                directive.zeros = true;
                continue;
            default:
                break;
        }
        break;
    }
    directive.width = ReadCount(text, at);
    if (at < text.size() && text[at] == '.') {
        ++at;
        directive.precision = ReadCount(text, at);
    }
    constexpr std::string_view kLengthLetters = "hlLwjztq";
    while (at < text.size()) {
        if (kLengthLetters.find(text[at]) != kLengthLetters.npos) {
            ++at;
        } else if (text.substr(at, 3) == "I64" || text.substr(at, 3) == "I32") {
            at += 3;
        } else {
            break;
        }
    }
    if (at == text.size() || !IsAsciiLetter(text[at])) return 0;
    directive.letter = text[at];
    return at + 1;
}

void AppendPadded(std::string_view prefix, std::string_view body, const Directive& directive, std::string& out) {
    const std::size_t size = prefix.size() + body.size();
    const std::size_t padding = directive.width > size ? directive.width - size : 0;
    const bool zeros = directive.zeros && !directive.leftAlign && directive.precision == Directive::kNoPrecision;
    if (!directive.leftAlign && !zeros) out.append(padding, ' ');
    out.append(prefix);
    if (zeros) out.append(padding, '0');
    out.append(body);
    if (directive.leftAlign) out.append(padding, ' ');
}

void AppendNumber(const Directive& directive, std::size_t row, std::string& out) {
    const char letter = directive.letter;
    const bool isHex = letter == 'x' || letter == 'X';
    const int base = isHex ? 16 : letter == 'o' ? 8 : 10;
    char buffer[24];
    std::string digits(buffer, std::to_chars(buffer, buffer + sizeof buffer, row, base).ptr);
    if (letter == 'X') std::transform(digits.begin(), digits.end(), digits.begin(), AsciiUpper);
    if (row == 0 && directive.precision == 0) digits.clear();
    if (directive.precision != Directive::kNoPrecision && digits.size() < directive.precision) {
        digits.insert(0, directive.precision - digits.size(), '0');
    }
    std::string_view prefix;
    if (letter == 'd' || letter == 'i') {
        if (directive.plus || directive.blank) prefix = directive.plus ? "+" : " ";
    } else if (directive.alternate && isHex && row != 0) {
        prefix = letter == 'x' ? "0x" : "0X";
    } else if (directive.alternate && letter == 'o' && (digits.empty() || digits.front() != '0')) {
        prefix = "0";
    }
    AppendPadded(prefix, digits, directive, out);
}

void AppendRow(const Directive& directive, std::size_t row, std::string& out) {
    if (directive.letter != 'c') {
        AppendNumber(directive, row, out);
        return;
    }
    // As a character; one that cannot be seen prints nothing.
    Directive plain = directive;
    plain.zeros = false;
    const char character = static_cast<char>(row);
    const bool printable = row >= 0x20 && row < 0x7F;
    AppendPadded({}, std::string_view(&character, printable ? 1 : 0), plain, out);
}

}  // namespace

void AppendCellText(std::string_view display, std::size_t row, std::string& out) {
    std::string_view text = display.substr(0, display.find('\n'));
    text = text.substr(0, text.find('\r'));
    bool rowTaken = false;
    for (;;) {
        const auto percent = text.find('%');
        out.append(text.substr(0, percent));
        if (percent == text.npos) return;
        text.remove_prefix(percent + 1);
        if (!text.empty() && text.front() == '%') {
            out.push_back('%');
            text.remove_prefix(1);
            continue;
        }
        Directive directive;
        text.remove_prefix(ReadDirective(text, directive));
        constexpr std::string_view kRowLetters = "diuoxXc";
        if (!rowTaken && directive.letter != 0 && kRowLetters.find(directive.letter) != kRowLetters.npos) {
            AppendRow(directive, row, out);
            rowTaken = true;
        }
    }
}

void AppendListCell(const CQuillaryDoc& doc, std::size_t field, std::string_view stored, std::size_t row,
                    std::string& display, std::string& out) {
    display.clear();
    doc.AppendDisplay(stored.substr(0, kMaxCellBytes), field, display);
    AppendCellText(std::string_view(display).substr(0, kMaxCellBytes), row, out);
}

}  // namespace quillary
