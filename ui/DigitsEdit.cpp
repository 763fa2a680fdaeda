#include "ui/DigitsEdit.h"

#include <QApplication>
#include <QValidator>
#include <algorithm>

namespace quillary {

namespace {

// Refuses a change after which the text would be no such number; the line edit then puts text and selection back.
class DigitsValidator : public QValidator {
  public:
    explicit DigitsValidator(QLineEdit& edit) : QValidator(&edit), m_edit(edit) {}

    State validate(QString& text, int& /*caret*/) const override {
        // Unmodified is what the program has set, or what an undo has brought back.
        return !m_edit.isModified() || IsNumber(text.trimmed()) ? Acceptable : Invalid;
    }

  private:
    [[nodiscard]] static bool IsNumber(const QString& text) {
        bool fits = text.isEmpty();
        if (!fits) (void)text.toInt(&fits);
        return fits && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    }

    const QLineEdit& m_edit;
};

}  // namespace

CDigitsEdit::CDigitsEdit(QWidget* parent) : QLineEdit(parent) {
    setInputMethodHints(Qt::ImhDigitsOnly);
    setValidator(new DigitsValidator(*this));
    connect(this, &QLineEdit::inputRejected, this, [] { QApplication::beep(); });
}

void CDigitsEdit::SetValue(std::int32_t value) { setText(QString::number(value)); }

std::int32_t CDigitsEdit::Value(std::int32_t blank) const {
    const QString typed = text().trimmed();
    return typed.isEmpty() ? blank : typed.toInt();
}

}  // namespace quillary
