// Shows what the catalogue tells about one of its results.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

class CTextEdit;

class CRemoteInfoDlg : public CQuillaryDialog {
  public:
    CRemoteInfoDlg(const QString& text, FrameWindow& frame);

  protected:
    void FocusFirst() override;

  private:
    CRemoteInfoDlg(const QString& text, FrameWindow& frame, CTextEdit* edit);

    CTextEdit* m_edit;
};

}  // namespace quillary
