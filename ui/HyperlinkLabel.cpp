#include "ui/HyperlinkLabel.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace quillary {

CHyperlinkLabel::CHyperlinkLabel(const QString& text, std::function<void()> follow)
    : QLabel(QStringLiteral("<a href=\"#\">%1</a>").arg(text.toHtmlEscaped())), m_follow(std::move(follow)) {
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QLabel::linkActivated, this, [this] { m_follow(); });
}

void CHyperlinkLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        m_follow();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void CHyperlinkLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

}  // namespace quillary
