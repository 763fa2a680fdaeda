#include "ui/HyperlinkLabel.h"

namespace quillary {

CHyperlinkLabel::CHyperlinkLabel(const QString& text, const std::function<void()>& follow)
    : QLabel(QStringLiteral("<a href=\"#\">%1</a>").arg(text.toHtmlEscaped())) {
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QLabel::linkActivated, this, follow);
}

}  // namespace quillary
