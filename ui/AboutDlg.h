// Says what the program is and which version of it runs.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

class CAboutDlg : public CQuillaryDialog {
  public:
    explicit CAboutDlg(FrameWindow& frame);
};

}  // namespace quillary
