// Between the texts of the document and of its messages and the texts of the window.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace quillary {

[[nodiscard]] inline QString FromWide(std::u16string_view text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

/// Points into `text`.
[[nodiscard]] inline std::u16string_view ToWide(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

[[nodiscard]] inline QString FromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// `text` with a blank for every control character, for places that show one line.
[[nodiscard]] inline QString OnOneLine(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control) c = u' ';
    }
    return text;
}

/// A path for places of several lines: it can go on in a new line behind a separator, and in a long name anywhere.
[[nodiscard]] inline QString Breakable(const QString& path) {
    constexpr int kLongName = 12;
    QString out;
    int unbroken = 0;
    for (const QChar c : path) {
        const bool isInside = c.isLowSurrogate() || c.category() == QChar::Mark_NonSpacing;
        if (unbroken >= kLongName && !isInside) {
            out += QChar(0x200B);
            unbroken = 0;
        }
        out += c;
        unbroken = c == u' ' ? 0 : unbroken + 1;  // a line can go on behind a blank, too
        if (c == u'/') {
            out += QChar(0x200B);
            unbroken = 0;
        }
    }
    return out;
}

}  // namespace quillary
