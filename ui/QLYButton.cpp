#include "ui/QLYButton.h"

#include <QPainter>
#include <algorithm>

#include "ui/CheckImage.h"
#include "ui/ReadOnly.h"

namespace quillary {

namespace {

constexpr int kMargin = 5;  // around the image, for the sign of the focus
constexpr int kSide = kCheckImageSize + 2 * kMargin;
constexpr int kText = kSide + 3;  // where a text begins

}  // namespace

CQLYButton::CQLYButton(QWidget* parent) : QCheckBox(parent) {}

void CQLYButton::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    TellReadOnly(*this, readOnly);
}

QSize CQLYButton::sizeHint() const {
    if (text().isEmpty()) return {kSide, kSide};
    return {kText + fontMetrics().horizontalAdvance(text()) + kMargin, std::max(kSide, fontMetrics().height())};
}

void CQLYButton::nextCheckState() {
    if (!m_readOnly) QCheckBox::nextCheckState();
}

void CQLYButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect box(0, (height() - kSide) / 2, kSide, kSide);
    const QColor color = palette().color(QPalette::WindowText);
    PaintCheckImage(painter, CheckImageRect(box), isChecked(), color);
    painter.setPen(color);
    painter.drawText(rect().adjusted(kText, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine, text());
    if (!hasFocus()) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawRoundedRect(QRectF(box).adjusted(1, 1, -1, -1), 2, 2);
}

}  // namespace quillary
