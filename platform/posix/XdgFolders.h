// The user's folders by the desktop's base directory rules: an environment variable that holds an absolute path, else a
// place below the home folder. Empty when there is no home folder either.
#pragma once

#include <string>

#include "db/FileAccess.h"

namespace quillary {

/// $HOME, else the one that the user's account names.
[[nodiscard]] Path HomeFolder();
/// The account's name, empty when there is none.
[[nodiscard]] std::string UserName();
/// $XDG_CONFIG_HOME or ~/.config
[[nodiscard]] Path ConfigFolder();
/// $XDG_DATA_HOME or ~/.local/share
[[nodiscard]] Path DataFolder();
/// $XDG_STATE_HOME or ~/.local/state
[[nodiscard]] Path StateFolder();

}  // namespace quillary
