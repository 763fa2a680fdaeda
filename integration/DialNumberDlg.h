// Asks which of a record's phone numbers to dial.
#pragma once

#include <QStringList>

#include "ui/QuillaryDialog.h"

namespace quillary {

class CDialNumberDlg : public CQuillaryDialog {
  public:
    /// `columns` are the names of the Phone fields, in their order.
    CDialNumberDlg(QStringList columns, FrameWindow& frame);

    /// The position of the chosen one.
    [[nodiscard]] int Column() const { return m_column; }

    /// Nothing that a Cancel would lose.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;

  private:
    const QStringList m_columns;
    int m_column = 0;
};

}  // namespace quillary
