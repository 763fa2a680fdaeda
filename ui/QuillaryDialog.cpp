#include "ui/QuillaryDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/Mnemonics.h"
#include "ui/TitleHeader.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kColumnCharacters = 80;  // a wider text is tiring to read

}  // namespace

CQuillaryDialog::CQuillaryDialog(const DialogInfo& info, FrameWindow& frame) : QDialog(frame.Window()), m_frame(frame) {
    setWindowFlags(Qt::Widget);
    setObjectName(QString::number(info.id));
    setAccessibleName(FromWide(info.title));

    auto* content = new QWidget;
    auto* middle = new QHBoxLayout(content);
    auto* columnWidget = new QWidget(content);
    columnWidget->setMaximumWidth(kColumnCharacters * fontMetrics().averageCharWidth());
    middle->addStretch(1);
    middle->addWidget(columnWidget, 1000);
    middle->addStretch(1);

    auto* column = new QVBoxLayout(columnWidget);
    column->setSpacing(fontMetrics().height() / 2);
    auto* header = new CTitleHeader(FromWide(info.title), columnWidget);
    header->setObjectName(QString::number(kTitleHeader));
    column->addWidget(header);
    column->addSpacing(fontMetrics().height() / 2);

    QStringList labels;
    for (const ControlInfo& control : info.controls) {
        labels << (control.kind == ControlKind::Text ? QString() : FromWide(control.label));
    }
    labels = WithMnemonics(labels);
    qsizetype next = 0;
    for (const ControlInfo& control : info.controls) AddControl(*column, control, labels[next++]);

    column->addSpacing(fontMetrics().height() / 2);
    column->addWidget(MakeButtons(info.buttons));
    column->addStretch(1);

    // On a small screen the page scrolls; moving the focus brings its control into sight.
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins({});
    page->addWidget(scroll);
}

void CQuillaryDialog::AddControl(QVBoxLayout& column, const ControlInfo& control, const QString& markedLabel) {
    QWidget* widget = nullptr;
    Qt::Alignment place;  // across the column
    switch (control.kind) {
        case ControlKind::Text: {
            auto* text = new QLabel(FromWide(control.label));
            text->setTextFormat(Qt::PlainText);
            text->setWordWrap(true);
            widget = text;
            break;
        }
        case ControlKind::CheckBox:
            widget = new QCheckBox(markedLabel);
            place = Qt::AlignLeft;
            break;
        case ControlKind::PasswordEdit: {
            auto* label = new QLabel(markedLabel);
            label->setWordWrap(true);
            column.addWidget(label);
            auto* edit = new QLineEdit;
            edit->setEchoMode(QLineEdit::Password);
            label->setBuddy(edit);
            widget = edit;
            break;
        }
    }
    if (control.id != 0) widget->setObjectName(QString::number(control.id));
    widget->setAccessibleName(FromWide(control.label));
    column.addWidget(widget, 0, place);
}

QWidget* CQuillaryDialog::MakeButtons(Buttons buttons) {
    auto* box = new QDialogButtonBox;
    QPushButton* ok = box->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QString::number(kOkButton));
    ok->setDefault(true);
    if (buttons == Buttons::OkCancel) {
        QPushButton* cancel = box->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
        cancel->setObjectName(QString::number(kCancelButton));
    }
    connect(box, &QDialogButtonBox::accepted, this, &CQuillaryDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &CQuillaryDialog::reject);
    return box;
}

int CQuillaryDialog::exec() {
    Load();
    m_frame.BeginDialog(*this);
    const int result = QDialog::exec();
    m_frame.EndDialog(*this);
    return result;
}

void CQuillaryDialog::accept() {
    if (Commit()) QDialog::accept();
}

bool CQuillaryDialog::Refuse(int control, const QString& why) {
    ShowMessage(m_frame.Window(), why);
    if (auto* edit = Control<QLineEdit>(control)) edit->selectAll();
    if (auto* widget = Control<QWidget>(control)) widget->setFocus();
    return false;
}

}  // namespace quillary
