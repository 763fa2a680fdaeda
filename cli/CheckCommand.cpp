#include "cli/Check.h"
#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "db/Container.h"
#include "db/Saving.h"

namespace quillary {

namespace {

// As the document says it when it opens a file.
std::string OpeningError(const FileError& error) {
    switch (error.kind) {
        case FileError::Kind::TooLarge:
            return FormatMessage(Message::FileTooLarge);
        case FileError::Kind::Busy:
            return FormatMessage(Message::FileBusy);
        case FileError::Kind::Recovery:
            return error.reason;
        default:
            return FormatMessage(Message::InvalidDatabaseFile) + " " + FormatMessage(Message::ErrorOpeningFile) + " (" +
                   error.reason + ")";
    }
}

}  // namespace

ExitStatus RunCheck(Session& session, const Arguments& arguments) {
    const std::string& path = arguments.words[0];
    if (path.empty()) {
        return session.Refuse(FormatMessage(Message::InvalidDatabaseFile) + " " + FormatMessage(Message::NoFilename));
    }
    LoadedFile loaded;
    FileError error;
    if (!LoadDatabaseFile(session.Files(), path, LoadMode::Read, nullptr, loaded, error)) {
        (void)session.Refuse(OpeningError(error));
        if (error.kind == FileError::Kind::NotFound) {
            session.TellOfRefusedFilesCopy(path, RecoveryOfMissing(session.Files(), path));
        }
        return ExitStatus::Failed;
    }
    const std::string_view image = loaded.image->Bytes();
    if (!IsDatabaseImage(image)) {
        (void)session.Refuse(MessageText(Message::InvalidDatabaseFile));
        session.TellOfRefusedFilesCopy(path, loaded.recovery);
        return ExitStatus::Failed;
    }
    if (loaded.recovery == RecoveryState::Pending) {
        Complain("A save of this file did not end. What is checked is what its recovery copy makes of it.");
    }
    session.TellOfUnusedCopy(path, loaded.recovery);

    Output& out = session.Out();
    const bool json = arguments.Has("--json");
    if (json) {
        out.HoldsJson();
        out.Append('[');
    }
    bool isClean = true;
    Progress progress("Checking", DatabaseHeader::Read(image)->RecordCount(), session.ShowsProgress());
    CheckImage(image, session.Page(), progress, [&](const Departure& departure) {
        std::string line;
        if (json) {
            line = std::string(isClean ? "\n" : ",\n") + "  {\"offset\": " + std::to_string(departure.offset) +
                   ", \"problem\": ";
            AppendJsonString(departure.problem, line);
            line += "}";
        } else {
            line = std::to_string(departure.offset) + ": " + departure.problem + "\n";
        }
        isClean = false;
        out.Append(line);
        progress.Hide();  // what is found may be about to stand on the same terminal
        return out.Drain();
    });
    if (json) out.Append(isClean ? "]\n" : "\n]\n");
    return isClean ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace quillary
