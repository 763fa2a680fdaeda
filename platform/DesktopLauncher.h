// The desktop's programs, asked over its session bus and by its table of programs.
#pragma once

#include "platform/Launcher.h"

namespace quillary {

class DesktopLauncher : public Launcher {
  public:
    void ShowInFolder(const std::filesystem::path& file, Failed failed) override;
    bool OpenLink(const std::string& link) override;
};

/// "file:///home/ann/My%20Lists": also for a name that is no valid text.
[[nodiscard]] std::string FileLink(const std::filesystem::path& path);

}  // namespace quillary
