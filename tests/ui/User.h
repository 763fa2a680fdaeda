// A person at the window: waits for the dialogs and message boxes that a test expects, and answers them with real
// events.
#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <set>

#include "ui/QuillaryDialog.h"

class QFileDialog;
class QMessageBox;

namespace quillary {

class User : public QObject {
  public:
    using Steps = std::function<void(CQuillaryDialog&)>;

    User();
    /// Fails the test when something that was expected never came.
    ~User() override;

    /// When the dialog `id` opens: do these steps, which end it.
    void ExpectDialog(int id, Steps steps);
    /// When a message box comes: it must hold exactly `text`; press its button `button`.
    void ExpectMessage(const QString& text, const QString& button = QStringLiteral("OK"));

    /// When a file chooser comes: name `file` and go on.
    void ExpectFileChooser(const QString& file);

    int messages = 0;  // that came, whoever ended them

    /// All that was expected has come.
    [[nodiscard]] bool IsDone() const { return m_expected.empty(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    virtual void AnswerDialog(CQuillaryDialog& dialog);
    virtual void AnswerMessage(QMessageBox& box);
    virtual void AnswerFileChooser(QFileDialog& chooser);
    static void ChooseFile(QFileDialog& chooser, const QString& file);

  private:
    enum Other { kMessage = 0, kFileChooser = -2, kNothing = -1 };
    struct Expected {
        int dialog;  // or one of the others
        Steps steps;
        QString text;
        QString button;
    };
    [[nodiscard]] Expected Next(int dialog);

    std::deque<Expected> m_expected;
    std::set<CQuillaryDialog*> m_answering;
};

/// Clicks the middle of a widget that must be visible and enabled.
void Click(QWidget* widget);
inline void Press(const CQuillaryDialog& page, int control) { Click(page.Control<QWidget>(control)); }

}  // namespace quillary
