// Where a downloaded file goes: a name that any server may have chosen, made safe, in the folder that the user chose.
#pragma once

#include <string>
#include <string_view>

#include "db/FileAccess.h"

namespace quillary {

/// The name (UTF-8) that a file called `name` (UTF-8) gets. A single file gets the databases' ending.
[[nodiscard]] std::string SafeFileName(std::string_view name, bool isInPackage);

/// A file that becomes visible under its name once it is whole. Whatever else happens it leaves nothing.
class DownloadTarget {
  public:
    /// In the folder of `path`. A name that is taken gets " (2)", " (3)" before its ending when the file is kept.
    DownloadTarget(FileAccess& files, Path path);
    ~DownloadTarget();
    DownloadTarget(const DownloadTarget&) = delete;
    DownloadTarget& operator=(const DownloadTarget&) = delete;

    /// `reason` says why in the system's words when either fails.
    [[nodiscard]] bool Append(std::string_view bytes, std::string& reason);
    [[nodiscard]] bool Keep(std::string& reason);

    /// After Keep: where it is.
    [[nodiscard]] const Path& KeptAs() const { return m_path; }

  private:
    [[nodiscard]] bool Make(FileError& error);

    FileAccess& m_files;
    Path m_path;
    Path m_temporary;
    std::unique_ptr<LockedFile> m_file;
    std::uint64_t m_size = 0;
};

}  // namespace quillary
