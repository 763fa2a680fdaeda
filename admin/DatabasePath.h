// From the name of a new database to the path of its file.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "admin/Settings.h"
#include "admin/StorageLocations.h"
#include "db/AnsiText.h"
#include "db/Messages.h"

namespace quillary {

/// As many as a person can type.
inline constexpr std::size_t kMostNameCharacters = 28;

/// The name for a database in the file at `path`: the file's name without its ending, cut to what a person could type.
/// UTF-8.
[[nodiscard]] std::string DatabaseNameFor(const std::filesystem::path& path);

/// True when a file's name ends in ".pdb", in any case.
[[nodiscard]] bool EndsInExtension(std::string_view path);

/// True for a name with a path separator or a control character, for "." and "..". `name` is UTF-8.
[[nodiscard]] bool IsImpossibleName(std::string_view name);

/// The name as a file's header keeps it, in the code page of `page`. `typed` has no blanks around it. Refuses an empty
/// or impossible name, one that is too long, and characters that cannot be stored.
[[nodiscard]] std::optional<std::string> StoredDatabaseName(std::u16string_view typed, const AnsiText& page,
                                                            Failure& failure);

/// `name` without the blanks around it.
[[nodiscard]] std::u16string_view WithoutBlanksAround(std::u16string_view name);

/// Where new databases are saved, ending in a separator: the folder that the preference names, or the main folder when
/// that card is not there.
[[nodiscard]] std::string DatabaseFolder(const StorageLocations& locations, const Settings& settings);

/// `name` is UTF-8. In the folder that the preference names, or in the main folder when that card is not there; ".pdb"
/// is added unless the name ends so already, in any case. Refuses an empty name and an impossible one.
[[nodiscard]] std::optional<std::string> BuildDatabasePath(std::string_view name, const StorageLocations& locations,
                                                           const Settings& settings, Failure& failure);

}  // namespace quillary
