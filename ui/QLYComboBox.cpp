#include "ui/QLYComboBox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QWheelEvent>
#include <algorithm>

#include "ui/ReadOnly.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kLeastCharacters = 6;  // of a long item that a small screen shows

}  // namespace

CQLYComboBox::CQLYComboBox(QWidget* parent) : QComboBox(parent) {
    setFocusPolicy(Qt::StrongFocus);  // not by the wheel
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kLeastCharacters);
    SetItems({});
}

void CQLYComboBox::SetItems(const QStringList& items) {
    clear();
    addItem(QString());
    addItems(items);
    m_entries = count();
    setCurrentIndex(0);
}

void CQLYComboBox::Select(const QString& text) {
    if (count() > m_entries) removeItem(m_entries);
    const int found = findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found < 0) addItem(text);
    setCurrentIndex(found < 0 ? m_entries : found);
}

void CQLYComboBox::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    TellReadOnly(*this, readOnly);
}

void CQLYComboBox::showPopup() {
    if (m_readOnly) return;
    // As wide as its longest item, as far as the screen allows.
    const int wanted = view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(std::min(wanted, screen()->availableGeometry().width()));
    QComboBox::showPopup();
}

void CQLYComboBox::initStyleOption(QStyleOptionComboBox* option) const {
    QComboBox::initStyleOption(option);
    const int room = style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this).width();
    option->currentText = option->fontMetrics.elidedText(OnOneLine(option->currentText), Qt::ElideRight, room);
}

void CQLYComboBox::keyPressEvent(QKeyEvent* event) {
    if (m_readOnly) {
        event->ignore();
    } else {
        QComboBox::keyPressEvent(event);
    }
}

void CQLYComboBox::wheelEvent(QWheelEvent* event) {
    if (m_readOnly || !hasFocus()) {
        event->ignore();
    } else {
        QComboBox::wheelEvent(event);
    }
}

}  // namespace quillary
