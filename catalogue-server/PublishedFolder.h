// The folder that is published. Opens what lies in it, and never leads out of it: no link, no "..", no other kind of
// file.
#pragma once

#include <string>
#include <string_view>

#include "platform/posix/PosixFile.h"

namespace quillary {

class PublishedFolder {
  public:
    /// Here a link is the publisher's own choice.
    [[nodiscard]] static bool Open(const Path& path, PublishedFolder& folder, FileError& error);

    /// A regular file for reading, by its path below the folder.
    [[nodiscard]] PosixFile OpenFile(const std::string& path, FileError& error) const;
    /// The descriptor of a folder inside it; the empty path is itself.
    [[nodiscard]] PosixFile OpenFolder(const std::string& path, FileError& error) const;

    [[nodiscard]] const Path& Location() const { return m_location; }
    [[nodiscard]] const FileStamp& Stamp() const { return m_stamp; }

  private:
    [[nodiscard]] PosixFile OpenBeneath(std::string_view path, int flags) const;

    Path m_location;
    PosixFile m_folder;
    FileStamp m_stamp;
};

}  // namespace quillary
