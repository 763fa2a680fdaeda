#include "ui/LinkEdit.h"

#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <algorithm>
#include <utility>

namespace quillary {

namespace {

constexpr int kTextMargin = 2;  // that the toolkit leaves inside the frame

}  // namespace

void CLinkEdit::SetReadOnly(bool readOnly) {
    setReadOnly(readOnly);
    QFont look;  // sets nothing else, so that the rest comes from the program's font
    if (readOnly) look.setUnderline(true);
    setFont(look);
    setCursor(Qt::IBeamCursor);
}

bool CLinkEdit::IsLinkAt(const QPoint& place) const {
    if (!isReadOnly()) return false;
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect inside = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    const int left = inside.left() + kTextMargin;
    const int width = std::min(fontMetrics().horizontalAdvance(text()), inside.right() - left);
    return place.x() >= left && place.x() < left + width && rect().contains(place);
}

void CLinkEdit::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton && IsLinkAt(event->position().toPoint());
    if (!m_pressed) CLineEdit::mousePressEvent(event);
}

void CLinkEdit::mouseMoveEvent(QMouseEvent* event) {
    setCursor(IsLinkAt(event->position().toPoint()) ? Qt::PointingHandCursor : Qt::IBeamCursor);
    if (!m_pressed) CLineEdit::mouseMoveEvent(event);
}

void CLinkEdit::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(m_pressed, false)) return CLineEdit::mouseReleaseEvent(event);
    if (IsLinkAt(event->position().toPoint()) && onFollow) onFollow();
}

void CLinkEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    // Its first half has followed the link.
    if (!IsLinkAt(event->position().toPoint())) CLineEdit::mouseDoubleClickEvent(event);
}

}  // namespace quillary
