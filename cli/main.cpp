// qly: Quillary's databases from the command line.
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "cli/Services.h"
#include "cli/StandardStreams.h"
#include "platform/posix/LargePages.h"

int main(int argc, char** argv) {
    using namespace quillary;
    PrepareStandardStreams();
    UseLargePages();
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const auto runService = [&arguments](const Command&, const Session& session, const Arguments&) {
        return ContinueInHelper(session, arguments);
    };
    return static_cast<int>(RunCommandLine(arguments, runService));
}
