// What the exports to the calendar and to the address book have in common: the store, the run over the records, and
// what is said about it.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "cli/ExitStatus.h"
#include "db/QuillaryDoc.h"
#include "integration/RecordValues.h"

namespace quillary {

class CPocketOutlook;
class Session;

struct ExportWords {
    std::string_view item;   // one of them, "contact"
    std::string_view place;  // where the desktop keeps them
};

/// Calls `create` for each shown record of `doc`, by row. Prints how many items were kept, and where.
[[nodiscard]] ExitStatus ExportRecords(Session& session, const CQuillaryDoc& doc, const ExportWords& words,
                                       const std::function<bool(CPocketOutlook&, std::size_t)>& create);

/// How the user writes dates in fields that are no date fields.
[[nodiscard]] DateHabits UserDateHabits(const Session& session);

}  // namespace quillary
