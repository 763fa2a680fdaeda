#include "cli/services/Export.h"

#include <memory>
#include <string>

#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "db/Clock.h"
#include "integration/PocketOutlook.h"
#include "platform/posix/DesktopPersonalStore.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PreferencesFile.h"

namespace quillary {

namespace {

class Complaints : public Questions {
  public:
    void Tell(const Failure& failure) override { Complain(failure.WithReason()); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

}  // namespace

ExitStatus ExportRecords(Session& session, const CQuillaryDoc& doc, const ExportWords& words,
                         const std::function<bool(CPocketOutlook&, std::size_t)>& create) {
    const std::size_t rows = doc.Shown().size();
    if (rows == 0) {
        session.Out().Append("No records are shown, so nothing was exported.\n");
        return ExitStatus::Done;
    }
    Complaints complaints;
    CPocketOutlook outlook(std::make_unique<DesktopPersonalStore>(PreferencesFile()), complaints);
    if (!outlook.IsUsable()) return ExitStatus::Refused;

    std::size_t kept = 0;
    {
        Progress progress("Exporting", rows, session.ShowsProgress());
        for (std::size_t row = 0; row < rows; ++row) {
            progress.Show(row);
            if (create(outlook, row)) ++kept;
        }
    }
    const auto files = outlook.Files();
    const std::string place = files.empty() ? std::string(words.place) : files.front().parent_path().string();
    session.Out().Append(Counted(kept, words.item) + " in " + OneLine(place) + "\n");
    if (kept == rows) return ExitStatus::Done;
    return session.Refuse(Counted(rows - kept, "record") + " could not be exported.");
}

DateHabits UserDateHabits(const Session& session) { return {session.UserDateOrder(), CenturyOf(PosixClock())}; }

}  // namespace quillary
