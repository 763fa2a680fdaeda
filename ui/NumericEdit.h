// The editor of a number: keeps its text a valid number at every change, and cleans it when the focus leaves.
#pragma once

#include <QLineEdit>

namespace quillary {

/// A stored text that is no number is shown as it is, and stays so for as long as the user changes nothing.
class CNumericEdit : public QLineEdit {
  public:
    explicit CNumericEdit(QWidget* parent = nullptr);

    void SetReadOnly(bool readOnly) { setReadOnly(readOnly); }
    /// What leaving it does: a changed text becomes the number in it, or empty.
    void CleanUp();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    QString m_given;  // the text that was set
};

}  // namespace quillary
