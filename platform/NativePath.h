// Between the desktop's texts for file names and the paths that the document works with.
#pragma once

#include <QString>
#include <filesystem>

namespace quillary {

[[nodiscard]] std::filesystem::path ToPath(const QString& fileName);
/// For showing and for file choosers; a name that is no valid text may not come back the same.
[[nodiscard]] QString FromPath(const std::filesystem::path& path);

}  // namespace quillary
