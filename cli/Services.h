// The commands that need more of the system than qly links: a helper program, installed beside it, has them.
#pragma once

#include <string>
#include <vector>

#include "cli/ExitStatus.h"

namespace quillary {

class Session;

/// Goes on as the helper program with the same arguments; returns only when that cannot be started.
ExitStatus ContinueInHelper(const Session& session, const std::vector<std::string>& arguments);

}  // namespace quillary
