#include "ui/MessageBox.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "ui/Captions.h"
#include "ui/Mnemonics.h"
#include "ui/OpenDialog.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

void SetUp(QMessageBox& box, const QString& text) {
    box.setWindowTitle(FromWide(Caption(kCaptionProgram)));
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
}

}  // namespace

void ShowMessage(QWidget* parent, const QString& text, const QString& details) {
    QMessageBox box(parent);
    SetUp(box, text);
    if (!details.isEmpty()) box.setInformativeText(details);
    for (auto* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);  // the details' too
    box.setIcon(QMessageBox::Warning);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    const OpenDialog open(box);
    box.exec();
}

void ShowMessageAndReason(QWidget* parent, const QString& text, const std::string& reason) {
    QString sentence = FromUtf8(reason);
    if (!sentence.isEmpty()) {
        sentence[0] = sentence[0].toUpper();
        sentence += u'.';
    }
    ShowMessage(parent, text, sentence);
}

int AskUser(QWidget* parent, const QString& text, const QStringList& answers, int defaultAnswer) {
    QMessageBox box(parent);
    SetUp(box, text);
    box.setIcon(QMessageBox::Question);
    QList<QPushButton*> buttons;
    for (const QString& answer : WithMnemonics(answers)) {
        const bool last = buttons.size() + 1 == answers.size();
        buttons << box.addButton(answer, last ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
    }
    box.setDefaultButton(buttons[defaultAnswer]);
    box.setEscapeButton(buttons.last());
    const OpenDialog open(box);
    box.exec();
    const auto clicked = buttons.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
    return static_cast<int>(clicked < 0 ? buttons.size() - 1 : clicked);  // none when the program ends the box
}

}  // namespace quillary
