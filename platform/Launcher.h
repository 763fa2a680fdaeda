// Hands files and links to the desktop's other programs.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace quillary {

class Launcher {
  public:
    using Failed = std::function<void()>;

    virtual ~Launcher() = default;
    /// Shows the file in its folder, in the desktop's file manager. Returns at once; `failed` is called on the
    /// interface thread, perhaps later, when there is none.
    virtual void ShowInFolder(const std::filesystem::path& file, Failed failed) = 0;
    /// Opens a link (percent-encoded, of any scheme, file: too) in the desktop's program for it. False when there is
    /// none.
    [[nodiscard]] virtual bool OpenLink(const std::string& link) = 0;
};

}  // namespace quillary
