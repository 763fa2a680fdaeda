// The name of a database that a command makes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/Session.h"

namespace quillary {

/// `name` without the blanks around it, as the header stores it; nullopt with a message when it is empty, longer than
/// the 28 characters that the window lets a person type, impossible, or not to be had in the code page.
[[nodiscard]] std::optional<std::string> StoredDatabaseName(const Session& session, std::string_view name);

/// The name for a database in the file at `path`: the file's name without its ending, cut to 28 characters.
[[nodiscard]] std::string DatabaseNameFor(const std::string& path);

}  // namespace quillary
