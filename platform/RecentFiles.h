// The desktop's list of recently used files.
#pragma once

#include <filesystem>

namespace quillary {

class RecentFiles {
  public:
    virtual ~RecentFiles() = default;
    /// Puts the file at the top. `path` is absolute. A list that cannot be kept is no reason to trouble the user.
    virtual void Add(const std::filesystem::path& path) = 0;
};

}  // namespace quillary
