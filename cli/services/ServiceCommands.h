// The commands of the helper program, by the names of their rows in qly's table.
#pragma once

#include "cli/Arguments.h"
#include "cli/ExitStatus.h"

namespace quillary {

class Session;

[[nodiscard]] ExitStatus RunCalendar(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunCatalogue(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunContacts(Session& session, const Arguments& arguments);

}  // namespace quillary
