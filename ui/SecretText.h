// A typed password, taken out of its edit box and wiped from memory when it is no longer needed.
#pragma once

#include <string_view>

#include <QString>

class QLineEdit;

namespace quillary {

class SecretText {
  public:
    /// Copies what `edit` holds; the edit keeps it.
    explicit SecretText(const QLineEdit& edit);
    ~SecretText();
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;

    [[nodiscard]] std::u16string_view Text() const {
        return {reinterpret_cast<const char16_t*>(m_text.utf16()), static_cast<std::size_t>(m_text.size())};
    }

    /// Empties `edit` and wipes what it held.
    static void Wipe(QLineEdit& edit);

  private:
    QString m_text;
};

}  // namespace quillary
