#include "ui/QLYButton.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

#include "ui/CheckImage.h"
#include "ui/ReadOnly.h"

namespace quillary {

namespace {

constexpr int kMargin = 5;  // around the image, for the sign of the focus

}  // namespace

CQLYButton::CQLYButton(QWidget* parent) : QCheckBox(parent) {}

void CQLYButton::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    TellReadOnly(*this, readOnly);
}

QSize CQLYButton::sizeHint() const {
    constexpr int kSide = kCheckImageSize + 2 * kMargin;
    return {kSide, kSide};
}

void CQLYButton::nextCheckState() {
    if (!m_readOnly) QCheckBox::nextCheckState();
}

void CQLYButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QSize square = sizeHint();
    const QRect box(0, (height() - square.height()) / 2, square.width(), square.height());
    PaintCheckImage(painter, CheckImageRect(box), isChecked(), palette().color(foregroundRole()));
    if (!hasFocus()) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawRoundedRect(QRectF(box).adjusted(1, 1, -1, -1), 2, 2);
}

}  // namespace quillary
