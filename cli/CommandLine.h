// From the process's arguments to a command that runs, or to help.
#pragma once

#include <string>
#include <vector>

#include "cli/ExitStatus.h"

namespace quillary {

/// `arguments` without the program's name.
[[nodiscard]] ExitStatus RunCommandLine(const std::vector<std::string>& arguments);

}  // namespace quillary
