#include "app/CommandBar.h"

#include <QLabel>
#include <QResizeEvent>

namespace quillary {

CCommandBar::CCommandBar(QWidget* parent) : QMenuBar(parent), m_counter(new QLabel(this)) {
    setNativeMenuBar(false);  // it shares this bar with the counter
    m_counter->setObjectName(QString::number(kRecordCounter));
    m_counter->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const int gap = fontMetrics().averageCharWidth();
    m_counter->setContentsMargins(gap, 0, gap, 0);
    setCornerWidget(m_counter);
    m_counter->hide();
}

void CCommandBar::ShowCounter(bool show) {
    m_counter->setFixedHeight(sizeHint().height());  // on a line with the menus
    m_counter->setVisible(show);
}

void CCommandBar::SetCounter(const QString& text) {
    if (text == m_counter->text()) return;
    m_counter->setText(text);
    // The menu bar gives its corner a place only when it is itself resized.
    QResizeEvent resized(size(), size());
    resizeEvent(&resized);
}

}  // namespace quillary
