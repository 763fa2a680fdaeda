// Where databases live: the main folder and the storage cards. Every path rule is written against this, so that a test
// can supply another system's strings.
#pragma once

#include <string>
#include <vector>

namespace quillary {

class StorageLocations {
  public:
    virtual ~StorageLocations() = default;
    /// The user's documents folder, ending in a separator. It need not exist yet.
    [[nodiscard]] virtual std::string MainFolder() const = 0;
    /// The root folder of each card that is present, ending in a separator, in a stable order.
    [[nodiscard]] virtual std::vector<std::string> CardFolders() const = 0;
    /// The bare names of the folders in `folder`, which ends in a separator, in the order in which the system lists
    /// them. None when it cannot be looked into.
    [[nodiscard]] virtual std::vector<std::string> FoldersIn(const std::string& folder) const = 0;
};

}  // namespace quillary
