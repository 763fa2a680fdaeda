// The program's command line.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "db/FileAccess.h"

namespace quillary {

struct LaunchOptions {
    enum class Task { Window, Picture, Help, Version };
    Task task = Task::Window;
    Path database;  // empty: none was given
    Path picture;
};

/// nullopt, with the message in `error`, for wrong usage. `arguments` are those behind the program's name.
[[nodiscard]] std::optional<LaunchOptions> ReadCommandLine(std::span<char* const> arguments, std::string& error);

[[nodiscard]] std::string_view HelpText();

}  // namespace quillary
