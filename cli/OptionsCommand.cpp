#include "cli/Commands.h"
#include "cli/Session.h"

namespace quillary {

ExitStatus RunOptions(Session& session, const Arguments& arguments) {
    const auto longDates = arguments.Value("--long-dates");
    const auto editOnSelect = arguments.Value("--edit-on-select");
    const bool sets = longDates || editOnSelect;

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], sets ? OpenMode::EditExclusive : OpenMode::Read)) {
        return ExitStatus::Refused;
    }
    if (!sets) {
        const auto line = [](std::string_view name, bool on) { return std::string(name) + (on ? " on\n" : " off\n"); };
        session.Out().Append(line("long-dates", doc.Style() == DateStyle::Long) +
                             line("edit-on-select", doc.EditOnSelect()));
        return ExitStatus::Done;
    }
    if (longDates) doc.SetStyle(*longDates == "on" ? DateStyle::Long : DateStyle::Numeric);
    if (editOnSelect) doc.SetEditOnSelect(*editOnSelect == "on");
    return session.Save(doc);
}

}  // namespace quillary
