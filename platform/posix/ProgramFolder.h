// Where this program lies, and what was installed with it. Neither the working directory nor the environment has a say
// in that.
#pragma once

#include <string_view>

#include "db/FileAccess.h"

namespace quillary {

/// The file `name` beside the running program, or in ../lib/quillary as seen from there, which is how the programs are
/// installed and built. Empty when there is none.
[[nodiscard]] Path CompanionPath(std::string_view name);

}  // namespace quillary
