#include "ui/DialogControl.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "ui/ColorButton.h"
#include "ui/HyperlinkLabel.h"
#include "ui/SpinEdit.h"
#include "ui/WideText.h"
#include "ui/WrappingLabel.h"

namespace quillary {

namespace {

constexpr bool HasLabelAbove(ControlKind kind) {
    switch (kind) {
        case ControlKind::ComboBox:
        case ControlKind::TextEdit:
        case ControlKind::PasswordEdit:
        case ControlKind::Number:
        case ControlKind::Color:
            return true;
        default:
            return false;
    }
}

}  // namespace

void AddControl(QVBoxLayout& column, const ControlInfo& control, const QString& markedLabel,
                std::function<void()> openHelp) {
    QWidget* widget = nullptr;
    CSpinEdit* spin = nullptr;
    Qt::Alignment place;  // across the column
    switch (control.kind) {
        case ControlKind::Text:
            widget = new CWrappingLabel(FromWide(control.label));
            break;
        case ControlKind::Hyperlink:
            widget = new CHyperlinkLabel(FromWide(control.label), std::move(openHelp));
            break;
        case ControlKind::CheckBox:
            widget = new QCheckBox(markedLabel);
            place = Qt::AlignLeft;
            break;
        case ControlKind::ComboBox: {
            auto* box = new QComboBox;
            // As wide as the column, whatever its entries.
            box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            widget = box;
            break;
        }
        case ControlKind::TextEdit:
        case ControlKind::PasswordEdit: {
            auto* edit = new QLineEdit;
            if (control.kind == ControlKind::PasswordEdit) edit->setEchoMode(QLineEdit::Password);
            widget = edit;
            break;
        }
        case ControlKind::Number:
            spin = new CSpinEdit;
            spin->setObjectName(QString::number(control.spinId));
            widget = spin;
            place = Qt::AlignLeft;
            break;
        case ControlKind::Color:
            widget = new CColorButton(FromWide(control.label));
            place = Qt::AlignLeft;
            break;
    }
    QVBoxLayout* pair = &column;
    if (HasLabelAbove(control.kind)) {
        auto* label = new QLabel(markedLabel);
        label->setWordWrap(true);
        label->setBuddy(widget);
        pair = new QVBoxLayout;
        pair->setSpacing(label->fontMetrics().height() / 4);
        pair->addWidget(label);
        column.addLayout(pair);
    }
    QWidget* named = spin ? &spin->Edit() : widget;
    if (control.id != 0) named->setObjectName(QString::number(control.id));
    for (QWidget* part : {named, widget}) part->setAccessibleName(FromWide(control.label));
    pair->addWidget(widget, 0, place);
}

}  // namespace quillary
