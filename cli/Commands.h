// The commands themselves: each a thin view over an operation of the window.
#pragma once

#include "cli/Arguments.h"
#include "cli/ExitStatus.h"

namespace quillary {

class Session;

[[nodiscard]] ExitStatus RunInfo(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunList(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunFind(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunFields(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunCheck(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunHash(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunNew(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunImport(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunRecord(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunFilter(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunShowAll(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunSort(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunOptions(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunPassword(Session& session, const Arguments& arguments);
[[nodiscard]] ExitStatus RunText(Session& session, const Arguments& arguments);

}  // namespace quillary
