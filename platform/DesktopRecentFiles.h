// The list that file choosers and file managers show, recently-used.xbel in the user's data folder.
#pragma once

#include "platform/RecentFiles.h"

namespace quillary {

class DesktopRecentFiles : public RecentFiles {
  public:
    /// Other programs' entries stay. A list that cannot be read is left alone.
    void Add(const std::filesystem::path& path) override;
};

}  // namespace quillary
