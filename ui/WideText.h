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

}  // namespace quillary
