#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Session.h"
#include "db/Password.h"

namespace quillary {

ExitStatus RunHash(Session& session, const Arguments& arguments) {
    const bool lock = arguments.Has("--lock");
    if (lock == arguments.Has("--database")) return session.WrongUsage("One of --database and --lock is needed.");
    std::string password;
    std::string reason;
    if (!ReadFirstLine("-", password, reason)) {
        return session.Refuse("The password cannot be read from standard input (" + reason + ").");
    }
    const auto wide = session.Wide(password);
    if (!wide) return ExitStatus::Refused;
    const std::uint32_t hash = HashPassword(lock ? kInfoLock : kDatabasePassword, *wide, session.Page());
    session.Out().Append(std::to_string(hash) + "\n");
    return ExitStatus::Done;
}

}  // namespace quillary
