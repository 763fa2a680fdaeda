// The editor of a 32-bit number that is not negative: takes digits alone, and none that lead beyond the largest number.
#pragma once

#include <QLineEdit>
#include <cstdint>

namespace quillary {

class CDigitsEdit : public QLineEdit {
  public:
    explicit CDigitsEdit(QWidget* parent = nullptr);

    /// A negative number is shown as it is, and stays for as long as the user changes nothing.
    void SetValue(std::int32_t value);
    /// `blank` for an empty text.
    [[nodiscard]] std::int32_t Value(std::int32_t blank) const;
};

}  // namespace quillary
