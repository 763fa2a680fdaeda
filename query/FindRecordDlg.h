// Asks what to find, and in which field.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

class CQuillaryDoc;

class CFindRecordDlg : public CQuillaryDialog {
  public:
    /// `column` is a field's position, or -1 for all; any other preselects all.
    CFindRecordDlg(const CQuillaryDoc& doc, QString text, int column, FrameWindow& frame);

    [[nodiscard]] const QString& Text() const { return m_text; }
    [[nodiscard]] int Column() const { return m_column; }

    /// Nothing that a Cancel would lose.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    void Load() override;
    bool Commit() override;

  private:
    const CQuillaryDoc& m_doc;
    QString m_text;
    int m_column;
};

}  // namespace quillary
