// Copies of a database under a free name in the same folder.
#pragma once

#include <string_view>

#include "db/FileAccess.h"
#include "db/Messages.h"

namespace quillary {

/// Writes `image` beside `original` as "NAME (copy).pdb", or "(copy 2)" and so on where that is taken, for
/// those who may read the original. On failure no file is left behind. `copy` receives the path.
[[nodiscard]] bool CopyBeside(FileAccess& files, const Path& original, std::string_view image, Path& copy,
                              Failure& failure);
/// The same with what the file holds by now, or would hold once a stopped save is completed. It is not changed.
[[nodiscard]] bool CopyFileBeside(FileAccess& files, const Path& original, Path& copy, Failure& failure);

}  // namespace quillary
