// Where a downloaded file is saved: a folder below the documents folder, or below the one of that name on a storage
// card.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "admin/StorageLocations.h"

namespace quillary {

inline constexpr std::string_view kMainMemory = "Main Memory";

struct SaveLocation {
    std::string name;  // as a person chooses it
    std::string base;  // the folder's path, ending in a separator
};

/// The documents folder, then that of each card that has one.
[[nodiscard]] std::vector<SaveLocation> SaveLocations(const StorageLocations& locations);

/// "." for the base itself, then every folder below it, depth first, by its bare name.
[[nodiscard]] std::vector<std::string> SaveFolders(const StorageLocations& locations, const std::string& base);

/// The path of the folder that was chosen, ending in a separator. One from further down is taken by its bare name, too:
/// the path then leads to a folder right below the base.
[[nodiscard]] std::string SavePath(const std::string& base, const std::vector<std::string>& folders,
                                   std::size_t chosen);

}  // namespace quillary
