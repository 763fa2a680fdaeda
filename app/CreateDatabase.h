// The road to a new database: its name, its fields, its file.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "admin/NewDatabase.h"

namespace quillary {

class FrameWindow;

/// Lets the user define the fields of a new database; nullopt when that was cancelled.
using DefineFields = std::function<std::optional<std::vector<Field>>()>;

/// Asks until the file is there, or the user gives up. When the file cannot be written, the fields stay and another
/// name can be chosen. The path of the new database, or nullopt when none was made.
[[nodiscard]] std::optional<Path> CreateDatabase(const NewDatabasePlace& place, FrameWindow& frame,
                                                 const DefineFields& defineFields);

}  // namespace quillary
