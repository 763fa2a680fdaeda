#include "ui/ColorButton.h"

#include <QDialog>
#include <QPainter>
#include <utility>

#include "ui/ColorPicker.h"

namespace quillary {

CColorButton::CColorButton(QString label, QWidget* parent) : QPushButton(parent), m_label(std::move(label)) {
    connect(this, &QPushButton::clicked, this, &CColorButton::Pick);
    SetColor(Qt::white);
}

void CColorButton::SetColor(const QColor& color) {
    m_color = color;
    const QString name = CColorPicker::ColorName(color);
    setText(name.isEmpty() ? color.name().toUpper() : name);
    setAccessibleName(m_label + QStringLiteral(": ") + (name.isEmpty() ? QString() : name + QStringLiteral(", ")) +
                      color.name().toUpper());
    const int side = fontMetrics().height();
    QPixmap square(QSize(2 * side, side) * devicePixelRatioF());
    square.setDevicePixelRatio(devicePixelRatioF());
    square.fill(color);
    QPainter painter(&square);
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, 2 * side - 1, side - 1);
    painter.end();
    setIcon(square);
    setIconSize({2 * side, side});
}

void CColorButton::Pick() {
    QWidget* page = this;
    while (page->parentWidget() && !qobject_cast<QDialog*>(page)) page = page->parentWidget();
    auto* picker = new CColorPicker(m_color, *this, *page);  // goes by itself
    picker->onPicked = [this](const QColor& color) { SetColor(color); };
}

}  // namespace quillary
