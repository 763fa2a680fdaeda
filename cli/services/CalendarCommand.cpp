#include <optional>
#include <string>

#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/services/Export.h"
#include "cli/services/ServiceCommands.h"
#include "integration/ExportCalendar.h"
#include "integration/PocketOutlook.h"

namespace quillary {

namespace {

// The field that `option` names, which is of `type`, in `position`; that stays when it is not given. False with a
// message when there is no such field.
bool ReadField(const Session& session, const CQuillaryDoc& doc, const std::optional<std::string>& name, FieldType type,
               int& position) {
    if (!name) return true;
    const auto field = session.FieldNamed(doc, *name);
    if (!field) return false;
    if (doc.TypeOf(*field) != type) {
        Complain("The field " + Quoted(*name) + " holds no " + (type == FieldType::Date ? "dates." : "times."));
        return false;
    }
    position = static_cast<int>(*field);
    return true;
}

}  // namespace

ExitStatus RunCalendar(Session& session, const Arguments& arguments) {
    const auto date = arguments.Value("--date");
    if (!date) return session.WrongUsage("An export to the calendar needs a --date.");

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::Read)) return ExitStatus::Refused;
    CalendarFields fields;
    if (!ReadField(session, doc, date, FieldType::Date, fields.date) ||
        !ReadField(session, doc, arguments.Value("--start"), FieldType::Time, fields.start) ||
        !ReadField(session, doc, arguments.Value("--end"), FieldType::Time, fields.end)) {
        return ExitStatus::Refused;
    }
    for (const std::string& name : arguments.Values("--field")) {
        const auto field = session.FieldNamed(doc, name);
        if (!field) return ExitStatus::Refused;
        fields.body.push_back(static_cast<int>(*field));
    }

    const DateHabits habits = UserDateHabits(session);
    const std::size_t dateless = RowsWithoutDate(doc, fields.date, habits);
    if (dateless > 0) Complain(std::to_string(dateless) + " records have no date.");
    return ExportRecords(session, doc, {"appointment", "the desktop's calendar"},
                         [&](CPocketOutlook& outlook, std::size_t row) {
                             return outlook.CreateAppointment(MakeAppointment(doc, row, fields, habits));
                         });
}

}  // namespace quillary
