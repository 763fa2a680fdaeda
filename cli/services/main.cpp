// quillary-services: qly with the commands that need more of the system than qly itself links. qly becomes this program
// when one of them is given.
#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/Session.h"
#include "cli/StandardStreams.h"
#include "cli/services/ServiceCommands.h"
#include "platform/posix/LargePages.h"

namespace quillary {

namespace {

struct Service {
    std::string_view name;
    ExitStatus (*run)(Session&, const Arguments&);
};
constexpr Service kServices[] = {
    {"calendar", RunCalendar},
    {"contacts", RunContacts},
    {"catalogue", RunCatalogue},
};

ExitStatus Run(const Command& command, Session& session, const Arguments& arguments) {
    const auto* service = std::find_if(std::begin(kServices), std::end(kServices),
                                       [&command](const Service& row) { return row.name == command.name; });
    if (service != std::end(kServices)) return service->run(session, arguments);
    return session.Refuse("The helper program is not of the same version as qly.");
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) {
    quillary::PrepareStandardStreams();
    quillary::UseLargePages();
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(quillary::RunCommandLine(arguments, quillary::Run));
}
