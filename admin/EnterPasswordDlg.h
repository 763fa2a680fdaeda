// Asks for the password of a locked database until it is right or the user gives up.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

class CQuillaryDoc;

class CEnterPasswordDlg : public CQuillaryDialog {
  public:
    CEnterPasswordDlg(const CQuillaryDoc& doc, FrameWindow& frame);
    /// Wipes what was typed.
    ~CEnterPasswordDlg() override;

    /// A password that is being typed is nothing to be saved.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    [[nodiscard]] bool Commit() override;

  private:
    const CQuillaryDoc& m_doc;
};

}  // namespace quillary
