// The on-screen keyboard of tablets and handhelds.
#pragma once

namespace quillary {

class InputPanel {
  public:
    virtual ~InputPanel() = default;
    virtual void Show() = 0;
    virtual void Hide() = 0;
};

}  // namespace quillary
