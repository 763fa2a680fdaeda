// Deletes a database from the disk, the same way from every list.
#pragma once

#include "db/FileAccess.h"
#include "db/Messages.h"

namespace quillary {

class Trash;

/// Moves the file to the trash, or deletes it where there is none, and forgets its recovery copy. A file that is gone
/// already is no failure.
[[nodiscard]] bool DeleteDatabaseFile(FileAccess& files, Trash& trash, const Path& path, Failure& failure);

}  // namespace quillary
