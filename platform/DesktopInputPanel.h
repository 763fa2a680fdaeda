// The desktop's input panel. Where there is none, showing and hiding it does nothing.
#pragma once

#include "platform/InputPanel.h"

namespace quillary {

class DesktopInputPanel : public InputPanel {
  public:
    void Show() override;
    void Hide() override;
};

}  // namespace quillary
