// The program that the desktop names for links of a scheme: its associations and desktop entries, as the desktop's own
// rules have them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Launcher.h"

namespace quillary {

struct LinkHandler {
    Launcher::Program state = Launcher::Program::None;
    // When it is there:
    std::vector<std::string> command;  // the program's full path, then its arguments
    std::filesystem::path folder;      // to start it in; empty: the home folder
};

/// With `link`, which begins with its scheme, put into the arguments as one of them, or as a part of one. A program
/// that is not installed counts only when no other is named for the scheme.
[[nodiscard]] LinkHandler FindLinkHandler(const std::string& link);

/// The full path of a program; empty when it is not installed.
[[nodiscard]] std::string FindProgram(const std::string& name);

}  // namespace quillary
