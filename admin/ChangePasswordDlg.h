// Sets, changes or removes the password of a database.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

class CQuillaryDoc;

class CChangePasswordDlg : public CQuillaryDialog {
  public:
    /// OK changes `doc` and leaves the saving to the caller.
    CChangePasswordDlg(CQuillaryDoc& doc, FrameWindow& frame);
    /// Wipes what was typed.
    ~CChangePasswordDlg() override;

  protected:
    [[nodiscard]] bool Commit() override;

  private:
    CQuillaryDoc& m_doc;
};

}  // namespace quillary
