// What is to be known of one file before it is published, read from the file itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue-server/CatalogueJson.h"
#include "catalogue-server/Publication.h"
#include "db/AnsiText.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

struct FileFacts {
    PublicationKind kind = PublicationKind::Database;
    std::string name;      // UTF-8, empty when the file has none of its own
    std::string infoText;  // UTF-8
    std::uint64_t size = 0;
    std::vector<PackageFile> files;
};

/// Whether a file of this name can be a database or a package.
[[nodiscard]] bool IsPublishedName(std::string_view name);

/// Never waits: Busy while the file is written. `path` leads to it and ends in its name.
[[nodiscard]] bool ReadFacts(PosixFile file, const Path& path, const AnsiText& page, FileFacts& facts, FileStamp& stamp,
                             FileError& error);

/// `path` is below the published folder; `texts`, which may be null, win over the file's own.
[[nodiscard]] Publication MakePublication(const std::string& path, const FileFacts& facts, const FileStamp& stamp,
                                          const PublishedTexts* texts);

}  // namespace quillary
