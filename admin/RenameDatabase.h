// Gives a database's file another name in its folder.
#pragma once

#include <string_view>

#include "db/FileAccess.h"
#include "db/Messages.h"

namespace quillary {

/// `name` (UTF-8) is what a person typed, with or without the ending; the file keeps its own. Never takes the place of
/// another file. A database that a recovery copy waits for keeps its name, by which the copy is found. `renamed`
/// receives the new path. The name inside the file stays.
[[nodiscard]] bool RenameDatabase(FileAccess& files, const Path& path, std::string_view name, Path& renamed,
                                  Failure& failure);

}  // namespace quillary
