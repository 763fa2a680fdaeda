// From the name of a new database to the path of its file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "admin/Settings.h"
#include "admin/StorageLocations.h"
#include "db/Messages.h"

namespace quillary {

/// True for a name with a path separator or a control character, for "." and "..". `name` is UTF-8.
[[nodiscard]] bool IsImpossibleName(std::string_view name);

/// `name` is UTF-8. In the folder that the preference names, or in the main folder when that card is not there; ".pdb"
/// is added unless the name ends so already, in any case. Refuses an empty name and an impossible one.
[[nodiscard]] std::optional<std::string> BuildDatabasePath(std::string_view name, const StorageLocations& locations,
                                                           const Settings& settings, Failure& failure);

}  // namespace quillary
