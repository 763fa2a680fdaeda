// A ZIP archive whose files are served one by one. What is too many, too large or packed too densely is not read.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue-server/Publication.h"
#include "db/Image.h"
#include "platform/posix/PosixFile.h"

struct zip;

namespace quillary {

inline constexpr std::size_t kMostPackageFiles = 1000;
inline constexpr std::uint64_t kMostUnpacked = 1u << 30;  // of all files of a package
/// What packs better than this, and is large, is made to fill a memory.
inline constexpr std::uint64_t kDensest = 200;
inline constexpr std::uint64_t kDensestMayBe = 1u << 20;

/// The name that a file in an archive is listed under: its path with "-" between the folders, without those that lead
/// elsewhere.
[[nodiscard]] std::string ListedName(std::string_view nameInArchive);

class Package {
  public:
    /// Reads the archive's directory. `error` is NotAFile when it is no archive, TooLarge when it passes a limit, Busy
    /// while another program writes it.
    [[nodiscard]] static std::optional<Package> Open(PosixFile file, FileError& error);

    [[nodiscard]] const std::vector<PackageFile>& Files() const { return m_files; }
    [[nodiscard]] const FileStamp& Stamp() const { return m_stamp; }
    /// The file's bytes, with their checksum found right.
    [[nodiscard]] bool Unpack(const PackageFile& file, Image& bytes, FileError& error);

  private:
    struct Close {
        void operator()(zip* archive) const;
    };

    [[nodiscard]] bool ReadDirectory(FileError& error);

    std::unique_ptr<zip, Close> m_archive;
    std::vector<PackageFile> m_files;
    FileStamp m_stamp;
};

}  // namespace quillary
