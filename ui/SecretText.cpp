#include "ui/SecretText.h"

#include <QLineEdit>

namespace quillary {

namespace {

void Overwrite(QString& text) {
    // volatile: a compiler may leave out plain writes to memory that nobody reads again.
    volatile char16_t* units = reinterpret_cast<char16_t*>(text.data());
    for (qsizetype i = 0; i < text.size(); ++i) units[i] = 0;
}

}  // namespace

SecretText::SecretText(const QLineEdit& edit) : m_text(edit.text()) {
    m_text.detach();  // a copy of our own, so that wiping it leaves the edit alone
}

SecretText::~SecretText() { Overwrite(m_text); }

void SecretText::Wipe(QLineEdit& edit) {
    QString text = edit.text();
    edit.setText(QString());  // `text` is now the last owner of what was typed
    Overwrite(text);
}

}  // namespace quillary
