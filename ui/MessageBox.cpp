#include "ui/MessageBox.h"

#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

#include "ui/Captions.h"
#include "ui/Mnemonics.h"
#include "ui/OpenDialog.h"
#include "ui/WideText.h"
#include "ui/WrappingLabel.h"

namespace quillary {

namespace {

constexpr int kWidestText = 500;  // pixels

void SetUp(QMessageBox& box, const QString& text) {
    box.setWindowTitle(FromWide(Caption(kCaptionProgram)));
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
}

// The toolkit's labels would make the box as wide as the longest path in them.
void WrapTexts(QMessageBox& box) {
    for (const char* name : {"qt_msgbox_label", "qt_msgbox_informativelabel"}) {
        auto* given = box.findChild<QLabel*>(QLatin1String(name));
        if (!given) continue;
        auto* label = new CWrappingLabel(given->text());
        const int screen = box.screen()->availableSize().width();
        label->setMinimumWidth(label->NaturalWidth(std::min(kWidestText, screen * 2 / 3)));
        label->setAlignment(given->alignment());
        label->setContentsMargins(given->contentsMargins());
        delete box.layout()->replaceWidget(given, label);
        given->hide();
    }
}

}  // namespace

void ShowMessage(QWidget* parent, const QString& text, const QString& details) {
    QMessageBox box(parent);
    SetUp(box, text);
    if (!details.isEmpty()) box.setInformativeText(details);
    for (auto* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);  // the details' too
    box.setIcon(QMessageBox::Warning);
    box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    WrapTexts(box);
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
    WrapTexts(box);
    const OpenDialog open(box);
    box.exec();
    const auto clicked = buttons.indexOf(qobject_cast<QPushButton*>(box.clickedButton()));
    return static_cast<int>(clicked < 0 ? buttons.size() - 1 : clicked);  // none when the program ends the box
}

}  // namespace quillary
