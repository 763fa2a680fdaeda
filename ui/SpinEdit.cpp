#include "ui/SpinEdit.h"

#include <QLineEdit>
#include <QWheelEvent>
#include <algorithm>

namespace quillary {

CSpinEdit::CSpinEdit(QWidget* parent) : QAbstractSpinBox(parent) {
    setFocusPolicy(Qt::StrongFocus);  // not by the wheel
    Edit().setInputMethodHints(Qt::ImhDigitsOnly);
    setInputMethodHints(Qt::ImhDigitsOnly);
}

void CSpinEdit::SetRange(int least, int most) {
    m_least = least;
    m_most = most;
    setMinimumWidth(sizeHint().width() + fontMetrics().horizontalAdvance(QString::number(most) + u'0'));
}

// What is no number counts as the least one.
int CSpinEdit::Value() const {
    bool isNumber = false;
    const int value = text().toInt(&isNumber);
    return isNumber ? value : m_least;
}

void CSpinEdit::stepBy(int steps) {
    Edit().setText(QString::number(std::clamp(Value() + steps, m_least, m_most)));
    selectAll();
}

QAbstractSpinBox::StepEnabled CSpinEdit::stepEnabled() const {
    StepEnabled enabled;
    if (Value() > m_least) enabled |= StepDownEnabled;
    if (Value() < m_most) enabled |= StepUpEnabled;
    return enabled;
}

void CSpinEdit::wheelEvent(QWheelEvent* event) { hasFocus() ? QAbstractSpinBox::wheelEvent(event) : event->ignore(); }

}  // namespace quillary
