// The catalogue's answers: 8-bit texts of fields that end with "^!", and of a page's numbers that end with ":".
#pragma once

#include <string>

#include "catalogue-server/CatalogueIndex.h"
#include "db/AnsiText.h"

namespace quillary {

/// The kinds of a result: what marks a package, and what stands for everything else.
inline constexpr const char* kPackageKind = "zip";
inline constexpr const char* kDatabaseKind = "pdb";
inline constexpr const char* kPackageFileKind = "file";

/// "first:last:total:" and five fields a result. Without a match "0:-1:0:"; a page behind the last result holds none
/// and goes on where they end.
[[nodiscard]] std::string SearchAnswer(const SearchPage& page, const AnsiText& codePage);

/// Eight fields, the empty ones too.
[[nodiscard]] std::string DetailsAnswer(const Publication& publication, const AnsiText& codePage);

/// As a search that found the package's files. A file's doc id is the path under which the server has it.
[[nodiscard]] std::string PackageAnswer(const Publication& publication, const AnsiText& codePage);

/// The path of a file inside a package on this server. It is made of ids alone.
[[nodiscard]] std::string PackageFilePath(const Publication& publication, const PackageFile& file);
inline constexpr const char* kPackagePath = "/package/";

}  // namespace quillary
