#include "ui/TitleHeader.h"

#include <QPainter>

namespace quillary {

namespace {

constexpr int kLineHeight = 2;

}  // namespace

CTitleHeader::CTitleHeader(const QString& title, QWidget* parent) : QLabel(title, parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    QFont large = font();
    large.setBold(true);
    large.setPointSizeF(QFontInfo(large).pointSizeF() * 1.3);
    setFont(large);
    const int gap = fontMetrics().height() / 4;
    setContentsMargins(0, gap, 0, gap + kLineHeight);
}

void CTitleHeader::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    QPainter painter(this);
    painter.fillRect(0, height() - kLineHeight, width(), kLineHeight, palette().highlight());
}

}  // namespace quillary
