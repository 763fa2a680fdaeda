#include "views/FieldLabel.h"

#include <QPainter>
#include <algorithm>

namespace quillary {

CFieldLabel::CFieldLabel(const QString& name, QWidget& editor, QWidget* parent) : QLabel(parent), m_name(name) {
    setTextFormat(Qt::PlainText);
    setText(QString(name).replace(u'&', QStringLiteral("&&")));  // a single one would mark a letter to press with Alt
    setBuddy(&editor);
}

int CFieldLabel::NaturalWidth() const { return fontMetrics().horizontalAdvance(m_name) + 1; }

int CFieldLabel::Flags(int width) const {
    const QStringList words = m_name.split(u' ');
    const bool isTooWide = std::any_of(
        words.begin(), words.end(), [&](const QString& word) { return fontMetrics().horizontalAdvance(word) > width; });
    return static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | (isTooWide ? Qt::TextWrapAnywhere : Qt::TextWordWrap);
}

int CFieldLabel::HeightFor(int width) const {
    return fontMetrics().boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX), Flags(width), m_name).height();
}

void CFieldLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Flags(width()), m_name);
}

}  // namespace quillary
