// The user's documents folder and the storage cards: the volumes mounted below /media and /run/media/USER.
#pragma once

#include "admin/StorageLocations.h"
#include "platform/posix/XdgFolders.h"

namespace quillary {

class PosixStorageLocations : public StorageLocations {
  public:
    /// `mounts` is the system's list of mounted file systems.
    explicit PosixStorageLocations(Path mounts = "/proc/self/mounts") : m_mounts(std::move(mounts)) {}

    std::string MainFolder() const override;
    /// Asked anew at every call; sorted by path.
    std::vector<std::string> CardFolders() const override;
    /// Sorted by name. Neither links nor hidden folders, nor those that another file system is mounted on.
    std::vector<std::string> FoldersIn(const std::string& folder) const override;

  private:
    Path m_mounts;
};

}  // namespace quillary
