// qly: Quillary's databases from the command line.
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "cli/StandardStreams.h"
#include "platform/posix/LargePages.h"

int main(int argc, char** argv) {
    quillary::PrepareStandardStreams();
    quillary::UseLargePages();
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(quillary::RunCommandLine(arguments));
}
