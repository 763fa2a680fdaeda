#include "cli/Services.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/Session.h"
#include "platform/posix/ProgramFolder.h"

namespace quillary {

ExitStatus ContinueInHelper(const Session& session, const std::vector<std::string>& arguments) {
    const Path helper = CompanionPath("quillary-services");
    if (helper.empty()) {
        return session.Refuse("The helper program quillary-services, which this command needs, is not installed.");
    }
    std::string name = "qly";
    std::vector<std::string> copies = arguments;
    std::vector<char*> words{name.data()};
    for (std::string& copy : copies) words.push_back(copy.data());
    words.push_back(nullptr);
    ::execv(helper.c_str(), words.data());
    return session.Refuse("The helper program " + helper.string() + " cannot be started (" + std::strerror(errno) +
                          ").");
}

}  // namespace quillary
