// The road to published databases: search, choose, download.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "db/FileAccess.h"

namespace quillary {

class FrameWindow;
class HttpSession;
class Settings;
struct DownloadPlace;

struct Downloaded {
    std::vector<Path> files;
    bool isOpenedNow = false;  // the one file of a download that the user has let come to its end
};

/// Asks until the user has downloaded something or gives up. `settings` name the servers.
[[nodiscard]] Downloaded DownloadDatabases(std::unique_ptr<HttpSession> session, const Settings& settings,
                                           const DownloadPlace& place, FrameWindow& frame);

}  // namespace quillary
