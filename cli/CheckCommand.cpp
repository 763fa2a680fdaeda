#include "cli/Check.h"
#include "cli/Commands.h"
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
    LoadedFile loaded;
    FileError error;
    if (!LoadDatabaseFile(session.Files(), arguments.words[0], LoadMode::Read, nullptr, loaded, error)) {
        (void)session.Refuse(OpeningError(error));
        if (error.kind == FileError::Kind::NotFound) {
            session.TellOfRefusedFilesCopy(arguments.words[0], RecoveryOfMissing(session.Files(), arguments.words[0]));
        }
        return ExitStatus::Failed;
    }
    const std::string_view image = loaded.image->Bytes();
    if (!IsDatabaseImage(image)) {
        (void)session.Refuse(MessageText(Message::InvalidDatabaseFile));
        session.TellOfRefusedFilesCopy(arguments.words[0], loaded.recovery);
        return ExitStatus::Failed;
    }
    if (loaded.recovery == RecoveryState::Pending) {
        Complain("A save of this file did not end. What is checked is what its recovery copy makes of it.");
    }
    session.TellOfUnusedCopy(arguments.words[0], loaded.recovery);

    const std::vector<Departure> departures = CheckImage(image, session.Page());
    const bool json = arguments.Has("--json");
    std::string out;
    if (json) {
        session.Out().HoldsJson();
        out += "[";
    }
    for (const Departure& departure : departures) {
        const bool isFirst = &departure == departures.data();
        if (json) {
            out += std::string(isFirst ? "\n" : ",\n") + "  {\"offset\": " + std::to_string(departure.offset) +
                   ", \"problem\": ";
            AppendJsonString(departure.problem, out);
            out += "}";
        } else {
            out += std::to_string(departure.offset) + ": " + departure.problem + "\n";
        }
    }
    if (json) out += departures.empty() ? "]\n" : "\n]\n";
    session.Out().Append(out);
    return departures.empty() ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace quillary
