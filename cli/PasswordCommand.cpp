#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace quillary {

ExitStatus RunPassword(Session& session, const Arguments& arguments) {
    const std::string& verb = arguments.words[1];
    const bool sets = verb == "set";
    if (!sets && verb != "clear") {
        const std::string hint = NearestNameHint(verb, {"set", "clear"});
        return session.WrongUsage("Passwords have no command " + Quoted(verb) + "." +
                                  (hint.empty() ? " They have set and clear." : hint));
    }
    const auto file = arguments.Value("--new-password-file");
    if (sets != file.has_value()) {
        return session.WrongUsage(sets ? "set needs --new-password-file." : "clear takes no --new-password-file.");
    }
    if (file == "-" && arguments.Value("--password-file") == "-") {
        return session.WrongUsage("The present and the new password cannot both come from standard input.");
    }
    const auto password = sets ? session.ReadSecret(*file) : std::u16string();
    if (!password) return ExitStatus::Refused;

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
    doc.SetDatabasePassword(*password);
    return session.Save(doc);
}

}  // namespace quillary
