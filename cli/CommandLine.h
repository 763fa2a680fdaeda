// From the process's arguments to a command that runs, or to help.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/Arguments.h"
#include "cli/ExitStatus.h"

namespace quillary {

struct Command;
class Session;

/// Runs a command that has no function of its own in the table, its arguments read and checked.
using RunService = std::function<ExitStatus(const Command&, Session&, const Arguments&)>;

/// `arguments` without the program's name.
[[nodiscard]] ExitStatus RunCommandLine(const std::vector<std::string>& arguments, const RunService& runService);

}  // namespace quillary
