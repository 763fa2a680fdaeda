#include <algorithm>

#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "query/Find.h"

namespace quillary {

namespace {

constexpr std::size_t kRowsAStep = 64;  // between two looks at the progress

}  // namespace

ExitStatus RunFind(Session& session, const Arguments& arguments) {
    const std::string afterText = arguments.Value("--after").value_or("0");
    const auto after = ReadWholeNumber(afterText);
    if (!after || *after < 0) return session.WrongUsage(Quoted(afterText) + " is no number of a row.");
    const auto text = session.Wide(arguments.words[1]);
    if (!text) return ExitStatus::Failed;

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::Read)) return ExitStatus::Failed;
    int column = RecordFinder::kAllFields;
    if (const auto name = arguments.Value("--field")) {
        const auto field = session.FieldNamed(doc, *name);
        if (!field) return ExitStatus::Failed;
        column = static_cast<int>(*field);
    }

    RecordFinder finder(doc, *text, column);
    const bool all = arguments.Has("--all");
    const std::size_t rows = doc.Shown().size();
    Progress progress("Searching", rows, session.ShowsProgress());
    bool found = false;
    for (auto next = static_cast<std::size_t>(*after); next < rows;) {
        progress.Show(next);
        const std::size_t end = std::min(next + kRowsAStep, rows);
        const auto row = finder.FindFrom(next, end);
        next = row ? *row + 1 : end;
        if (!row) continue;
        found = true;
        session.Out().Append(std::to_string(*row + 1) + "\n");
        progress.Hide();  // what is found may be about to stand on the same terminal
        if (!all || !session.Out().Drain()) break;
    }
    return found ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace quillary
