// Tooltips that show a text as it is: nothing in it is read as markup.
#pragma once

#include <QString>

namespace quillary {

/// What to hand to Qt, which reads markup in texts that look like it.
[[nodiscard]] inline QString PlainToolTip(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

}  // namespace quillary
