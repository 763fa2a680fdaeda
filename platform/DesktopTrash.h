// The trash of the desktop's file manager.
#pragma once

#include "platform/Trash.h"

namespace quillary {

class DesktopTrash : public Trash {
  public:
    bool Put(const std::filesystem::path& file) override;
};

}  // namespace quillary
