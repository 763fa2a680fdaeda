#include <algorithm>

#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "query/Find.h"

namespace quillary {

ExitStatus RunFind(Session& session, const Arguments& arguments) {
    const std::string afterText = arguments.Value("--after").value_or("0");
    const auto after = ReadWholeNumber(afterText);
    if (!after) return session.WrongUsage(Quoted(afterText) + " is no number of a row.");
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
    std::size_t found = 0;
    for (auto row = finder.FindFrom(static_cast<std::size_t>(std::max<std::int64_t>(*after, 0))); row;
         row = finder.FindFrom(*row + 1)) {
        ++found;
        session.Out().Append(std::to_string(*row + 1) + "\n");
        if (!all || !session.Out().Drain()) break;
    }
    return found > 0 ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace quillary
