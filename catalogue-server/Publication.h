// One row of the catalogue: a database, or a package of files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillary {

/// A file inside a package.
struct PackageFile {
    std::string name;  // as it is listed: never a path
    std::string id;    // of the name in the archive, so it stays when the archive is packed anew
    std::uint64_t size = 0;
    std::uint64_t number = 0;  // in the archive
};

enum class PublicationKind : std::uint8_t { Database, Package };

/// Texts are UTF-8. Empty ones are not known.
struct Publication {
    std::string path;   // below the published folder; no answer shows it
    std::string docId;  // both are made from the path, and the same at every start
    std::string fileId;
    PublicationKind kind = PublicationKind::Database;
    std::string title;
    std::string category;
    std::string author;
    std::string description;
    std::string language;
    std::string updated;
    std::string notes;
    std::string rating;
    std::string downloads;
    std::uint64_t size = 0;  // of a package, the sum of its files
    std::vector<PackageFile> files;
};

/// The ids of the file at `path`: a letter and sixteen digits.
void SetIds(Publication& publication);

}  // namespace quillary
