#include "ui/NumericEdit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QValidator>
#include <algorithm>

#include "db/NumericEntry.h"
#include "ui/TypedText.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

// Refuses a change after which the text would be no valid one; the line edit then puts text and selection back.
class NumericValidator : public QValidator {
  public:
    explicit NumericValidator(QLineEdit& edit) : QValidator(&edit), m_edit(edit) {}

    State validate(QString& text, int& /*caret*/) const override {
        // Unmodified is what the program has set, or what an undo has brought back.
        return !m_edit.isModified() || IsValidNumericText(ToWide(text)) ? Acceptable : Invalid;
    }

  private:
    const QLineEdit& m_edit;
};

bool Accepts(const QString& typed) {
    return std::all_of(typed.begin(), typed.end(), [](QChar c) { return AcceptsNumericKey(c.unicode()); });
}

}  // namespace

CNumericEdit::CNumericEdit(QWidget* parent) : QLineEdit(parent) {
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    setValidator(new NumericValidator(*this));
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!isModified()) m_given = text;
    });
    connect(this, &QLineEdit::inputRejected, this, [] { QApplication::beep(); });
}

void CNumericEdit::CleanUp() {
    if (!isModified() || text() == m_given) return;
    const QString given = m_given;
    setText(FromWide(CleanNumericText(ToWide(text()))));
    setModified(true);
    m_given = given;
}

void CNumericEdit::keyPressEvent(QKeyEvent* event) {
    // Return, Tab and Escape have a text too, but write none.
    const QString typed = event->text();
    const bool writes = IsWriting(typed) && !(event->modifiers() & Qt::ControlModifier);
    if (writes && !isReadOnly() && !Accepts(typed)) {
        QApplication::beep();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

// Composed characters and those of a keyboard on the screen come this way.
void CNumericEdit::inputMethodEvent(QInputMethodEvent* event) {
    if (isReadOnly() || Accepts(event->commitString())) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    QApplication::beep();
    QInputMethodEvent nothing;  // ends what was being composed
    QLineEdit::inputMethodEvent(&nothing);
}

void CNumericEdit::focusOutEvent(QFocusEvent* event) {
    // Its own context menu takes the focus for a while only.
    if (event->reason() != Qt::PopupFocusReason) CleanUp();
    QLineEdit::focusOutEvent(event);
}

}  // namespace quillary
