// Tooltips that show a text as it is: nothing in it is read as markup, and a screen reader gets none.
#pragma once

#include <QString>
#include <QWidget>

namespace quillary {

/// What to hand to Qt, which reads markup in texts that look like it.
[[nodiscard]] inline QString PlainToolTip(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

/// For a control; `text` also becomes its description, for which the toolkit would take the tooltip as it is.
inline void SetPlainToolTip(QWidget& widget, const QString& text) {
    widget.setToolTip(PlainToolTip(text));
    widget.setAccessibleDescription(text);
}

}  // namespace quillary
