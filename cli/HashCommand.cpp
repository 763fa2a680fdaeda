#include "cli/Commands.h"
#include "cli/Session.h"
#include "db/Password.h"

namespace quillary {

ExitStatus RunHash(Session& session, const Arguments& arguments) {
    const bool lock = arguments.Has("--lock");
    if (lock == arguments.Has("--database")) return session.WrongUsage("One of --database and --lock is needed.");
    const auto password = session.ReadSecret("-");
    if (!password) return ExitStatus::Refused;
    const std::uint32_t hash = HashPassword(lock ? kInfoLock : kDatabasePassword, *password, session.Page());
    session.Out().Append(std::to_string(hash) + "\n");
    return ExitStatus::Done;
}

}  // namespace quillary
