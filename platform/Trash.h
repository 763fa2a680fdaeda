// The desktop's trash.
#pragma once

#include <filesystem>

namespace quillary {

class Trash {
  public:
    virtual ~Trash() = default;
    /// False when there is none for this file; the file is then where it was.
    [[nodiscard]] virtual bool Put(const std::filesystem::path& file) = 0;
};

}  // namespace quillary
