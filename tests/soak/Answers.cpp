// What is done with what opens: as the action that is going on has said, or whatever.
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include "app/HandOver.h"
#include "tests/soak/Soak.h"
#include "ui/OpenDialog.h"

namespace quillary::soak {

namespace {

// Boxes that show how far something has come; they go by themselves.
constexpr const char* kProgress[] = {"Searching the", "Fetching the", "Fetching more",
                                     "Exporting",     "Opening the",  "Looking for"};

}  // namespace

void Soak::AnswerDialog(CQuillaryDialog& dialog) {
    if (dialog.isHidden() || !m_answering.insert(&dialog).second) return;
    const int id = dialog.objectName().toInt();
    const std::string name = "dialog " + std::to_string(id);
    Cover(name);
    if (id != 213) Log(name);  // which shows what takes long
    CountCommands();
    QTest::qWait(0);                          // the menu has gone
    QApplication::setActiveWindow(&Frame());  // as a window manager does
    const auto* ok = dialog.Control<QPushButton>(kOkButton);
    if (id == 213) {
        WaitFor([&] { return dialog.isHidden() || ok->isVisible(); }, "the download ends");
        if (dialog.isVisible()) Press(dialog, kOkButton);
    } else if (m_isPlaying) {
        // Those with passwords would lock what was there.
        const bool asksPassword = id == 138 || id == 143 || id == 166;
        if (const Steps steps = m_steps[id]; steps && !asksPassword && Percent(70)) steps(dialog);
        if (!asksPassword) PlayAbout(dialog, 1 + Pick(12));
        if (!asksPassword && ok->isVisible() && ok->isEnabled() && Percent(30)) Press(dialog, kOkButton);
        if (dialog.isVisible()) dialog.reject();
    } else {
        const Steps steps = m_steps[id];
        if (!steps) Fail(name + " was not expected");
        steps(dialog);
    }
    m_answering.erase(&dialog);
    if (dialog.isVisible() && !Frame().IsEndingDialogs()) Fail(name + " did not end");
}

void Soak::AnswerMessage(QMessageBox& box) {
    const auto tells = [&](const QString& part) { return (box.text() + box.informativeText()).contains(part); };
    if (box.isHidden() || std::ranges::any_of(kProgress, [&](auto* text) { return box.text().startsWith(text); }))
        return;
    const auto all = box.buttons();
    QString wanted = m_isPlaying ? all[Pick(all.size())]->text().remove(u'&') : QString();
    if (m_isPlaying && tells("about to be deleted") && disk.size() < 4) wanted = "No";
    for (auto& [part, buttons] : m_answers) {
        if (m_isPlaying || !tells(part)) continue;
        wanted = buttons.front();
        if (buttons.size() > 1) buttons.pop_front();
        break;
    }
    m_refused += tells("would hide") || tells("Change the fields all the same?");
    Log("message \"" + box.text().toStdString() + "\": " + wanted.toStdString());
    const auto pressed = std::ranges::find_if(all, [&](auto* b) { return b->text().remove(u'&') == wanted; });
    if (pressed == all.end()) Fail("this message was not expected, or has no such button");
    QTest::mouseClick(*pressed, Qt::LeftButton);
}

void Soak::AnswerFileChooser(QFileDialog& chooser) {
    Log("file chooser: " + chosenFile.toStdString());
    if (chosenFile.isEmpty() && !m_isPlaying) Fail("a file chooser was not expected");
    chosenFile.isEmpty() ? chooser.reject() : ChooseFile(chooser, chosenFile);
}

bool Soak::Finish(CQuillaryDialog& page, Ends ends) {
    if (Percent(10)) Frame().resize(240 + Pick(900), 320 + Pick(500));
    if (Percent(5)) Key(Focus(), Qt::Key_F1);
    const int way = Pick(100);
    const bool isAlone = ends == Ends::Any && OpenDialog::All().size() == 1;
    const auto ended = [&, before = m_refused] { return page.isHidden() || m_refused > before; };
    const QString answer = Of<QString>({"Save", "Discard", "Cancel"});
    bool mayStore = answer == "Save";
    if (isAlone && way < 3) {
        handedOver = AnyPath();
        Log("hands over " + handedOver->string());
        Answer("Save the changes before opening", {mayStore ? "Save" : "Discard"});
        app->HandOver().Receive({handedOver->native(), {}});
        WaitFor(ended, "the dialog ends");
        if (page.isVisible()) handedOver.reset();
    } else if (isAlone && way < 6) {
        Log("closes the window");
        const bool asks = page.IsChanged();
        Answer("Save the changes before closing?", {answer});
        Frame().close();
        if (!asks || answer != "Cancel") WaitFor(ended, "the dialog ends");
    } else {
        mayStore = way < 85;
        if (way < 92) Press(page, mayStore ? kOkButton : kCancelButton);
    }
    for (int k = 0; k < 3 && page.isVisible(); ++k) {
        Log("Escape");
        Key(page.focusWidget() ? page.focusWidget() : &page, Qt::Key_Escape);
    }
    const bool stores = page.result() == QDialog::Accepted;
    Expect(mayStore || !stores, "what is given up is not stored");
    return stores;
}

}  // namespace quillary::soak
