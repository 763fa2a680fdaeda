// Starts another program, which then goes on by itself, and hears when it soon fails.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Launcher.h"

namespace quillary {

/// `command` is the program's full path and its arguments, which no shell sees. `folder`: see LinkHandler.
void StartProgram(const std::vector<std::string>& command, const std::filesystem::path& folder,
                  Launcher::EndedBadly endedBadly);

}  // namespace quillary
