// Saves a picture of the window with a database in it, for machines without a display.
#pragma once

#include "db/FileAccess.h"

namespace quillary {

class CQuillaryApp;

/// The program's exit status; failures are told on standard error.
[[nodiscard]] int SavePicture(CQuillaryApp& app, const Path& database, const Path& picture);

}  // namespace quillary
