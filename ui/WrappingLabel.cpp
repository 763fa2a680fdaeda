#include "ui/WrappingLabel.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr int kFewestCharacters = 10;  // in a line
constexpr int kUsualCharacters = 60;

QSizeF LayOut(QTextLayout& layout, const QLabel& label, int width) {
    QString text = label.text();
    layout.setText(text.replace(u'\n', QChar::LineSeparator));
    layout.setFont(label.font());
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QSizeF size(0, 0);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, size.height()});
        size = {std::max(size.width(), line.naturalTextWidth()), size.height() + line.height()};
    }
    layout.endLayout();
    return size;
}

}  // namespace

CWrappingLabel::CWrappingLabel(const QString& text) : QLabel(text) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

int CWrappingLabel::NaturalWidth(int most) const {
    QTextLayout layout;
    return static_cast<int>(std::ceil(LayOut(layout, *this, most).width())) + 1;
}

int CWrappingLabel::heightForWidth(int width) const {
    QTextLayout layout;
    const QMargins around = contentsMargins();
    const int room = std::max(width - around.left() - around.right(), 1);
    const double height = std::max(LayOut(layout, *this, room).height(), static_cast<double>(fontMetrics().height()));
    return static_cast<int>(std::ceil(height)) + around.top() + around.bottom();
}

QSize CWrappingLabel::sizeHint() const {
    const int width = NaturalWidth(kUsualCharacters * fontMetrics().averageCharWidth());
    return {width, heightForWidth(width)};
}

QSize CWrappingLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), kFewestCharacters * fontMetrics().averageCharWidth()), fontMetrics().height()};
}

void CWrappingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QTextLayout layout;
    LayOut(layout, *this, contentsRect().width());
    layout.draw(&painter, contentsRect().topLeft());
}

}  // namespace quillary
