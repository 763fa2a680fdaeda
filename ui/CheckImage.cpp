#include "ui/CheckImage.h"

#include <QPainter>
#include <QPolygonF>

namespace quillary {

QRect CheckImageRect(const QRect& cell) {
    return {cell.left() + cell.width() / 2 - kCheckImageSize / 2, cell.top() + cell.height() / 2 - kCheckImageSize / 2,
            kCheckImageSize, kCheckImageSize};
}

void PaintCheckImage(QPainter& painter, const QRect& image, bool checked, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor outline = color;
    outline.setAlphaF(0.6F);
    painter.setPen(QPen(outline, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(image).adjusted(0.5, 0.5, -0.5, -0.5), 1.5, 1.5);
    if (checked) {
        painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF origin = image.topLeft();
        painter.drawPolyline(
            QPolygonF{origin + QPointF(2.8, 5.6), origin + QPointF(4.7, 7.6), origin + QPointF(8.2, 3.2)});
    }
    painter.restore();
}

}  // namespace quillary
