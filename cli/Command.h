// What a command of qly takes and does: a row of one table, from which the command line is read and the help is
// printed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "cli/Arguments.h"
#include "cli/ExitStatus.h"

namespace quillary {

class Session;

struct CommandOption {
    std::string_view name;  // with its dashes
    std::string_view
        value;  // what the value is, in capitals; or the values that there are, with "|" between; a flag: empty
    std::string_view help;
    bool repeats = false;

    /// How many words follow the name: those of `value`.
    [[nodiscard]] constexpr std::size_t ValueCount() const {
        return value.empty() ? 0 : 1 + static_cast<std::size_t>(std::count(value.begin(), value.end(), ' '));
    }
};

struct Command {
    static constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

    std::string_view name;
    std::string_view synopsis;  // behind the name
    std::string_view summary;   // one line
    std::string_view details;   // paragraphs of the command's own help
    std::size_t fewestWords;
    std::size_t mostWords;
    std::span<const CommandOption> options;
    ExitStatus failure;                             // the answer when it cannot do what it was asked
    ExitStatus (*run)(Session&, const Arguments&);  // null: it needs more than qly links; see cli/CommandLine.h
};

/// In the order of the help.
[[nodiscard]] std::span<const Command> AllCommands();
/// What every command takes.
[[nodiscard]] std::span<const CommandOption> CommonOptions();
/// The command's own options, then those.
[[nodiscard]] std::vector<const CommandOption*> OptionsOf(const Command& command);
/// nullptr when there is none.
[[nodiscard]] const Command* CommandNamed(std::string_view name);

}  // namespace quillary
