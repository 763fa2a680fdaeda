// The name of a database that a command makes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/Session.h"

namespace quillary {

/// `name` without the blanks around it, as the header stores it; nullopt with a message when it is empty, longer than
/// a person can type in the window, impossible, or not to be had in the code page.
[[nodiscard]] std::optional<std::string> StoredDatabaseName(const Session& session, std::string_view name);

}  // namespace quillary
