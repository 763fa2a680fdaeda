#include "tests/ui/User.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace quillary {

User::User() { qApp->installEventFilter(this); }

User::~User() {
    for (const Expected& missed : m_expected) {
        ADD_FAILURE() << "never came: dialog " << missed.dialog << " \"" << missed.text.toStdString() << '"';
    }
}

void User::ExpectDialog(int id, Steps steps) { m_expected.push_back({id, std::move(steps), {}, {}}); }

void User::ExpectMessage(const QString& text, const QString& button) {
    m_expected.push_back({kMessage, {}, text, button});
}

void User::ExpectFileChooser(const QString& file) { m_expected.push_back({kFileChooser, {}, file, {}}); }

bool User::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        // Answered once its event loop runs.
        if (auto* box = dynamic_cast<QMessageBox*>(watched)) {
            ++messages;
            QTimer::singleShot(0, box, [this, box] { AnswerMessage(*box); });
        } else if (auto* chooser = dynamic_cast<QFileDialog*>(watched)) {
            QTimer::singleShot(0, chooser, [this, chooser] { AnswerFileChooser(*chooser); });
        } else if (auto* dialog = dynamic_cast<CQuillaryDialog*>(watched)) {
            QTimer::singleShot(0, dialog, [this, dialog] { AnswerDialog(*dialog); });
        }
    }
    return false;
}

User::Expected User::Next(int dialog) {
    if (m_expected.empty() || m_expected.front().dialog != dialog) return {kNothing, {}, {}, {}};
    Expected next = std::move(m_expected.front());
    m_expected.pop_front();
    return next;
}

void User::AnswerDialog(CQuillaryDialog& dialog) {
    if (!m_answering.insert(&dialog).second) return;  // it shows again after one that had covered it
    const Expected expected = Next(dialog.objectName().toInt());
    if (expected.steps) expected.steps(dialog);
    m_answering.erase(&dialog);
    if (dialog.isVisible()) {
        ADD_FAILURE() << "dialog " << dialog.objectName().toStdString() << " was not expected, or did not end";
        dialog.reject();
    }
}

void User::AnswerMessage(QMessageBox& box) {
    if (box.isHidden()) return;  // the program has ended it itself
    const Expected expected = Next(kMessage);
    EXPECT_EQ(box.text(), expected.text);
    for (QAbstractButton* button : box.buttons()) {
        if (button->text().remove(u'&') == expected.button) {
            Click(button);
            return;
        }
    }
    ADD_FAILURE() << "no button \"" << expected.button.toStdString() << "\" in \"" << box.text().toStdString() << '"';
    box.reject();
}

void User::AnswerFileChooser(QFileDialog& chooser) {
    const Expected expected = Next(kFileChooser);
    if (expected.dialog == kNothing) {
        ADD_FAILURE() << "a file chooser was not expected";
        chooser.reject();
        return;
    }
    ChooseFile(chooser, expected.text);
}

void User::ChooseFile(QFileDialog& chooser, const QString& file) {
    chooser.findChild<QLineEdit*>()->setText(file);  // typing would open the completer's window
    const auto button =
        chooser.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
    Click(chooser.findChild<QDialogButtonBox*>()->button(button));
}

void Click(QWidget* widget) {
    ASSERT_NE(widget, nullptr);
    ASSERT_TRUE(widget->isVisible() && widget->isEnabled()) << widget->objectName().toStdString();
    QTest::mouseClick(widget, Qt::LeftButton);
}

}  // namespace quillary
