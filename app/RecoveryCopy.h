// What happens at opening to the copy that an interrupted save left, when the file is by now another one.
#pragma once

#include "db/FileAccess.h"

class QWidget;

namespace quillary {

enum class CopyChoice { Restored, Discarded, Undecided };

/// Asks, and does what was chosen. Restored: the file has changed and is to be read again. Undecided, after a failure
/// too: nothing was touched, and the database should not be opened, as its next save would replace the copy.
[[nodiscard]] CopyChoice SettleRecoveryCopy(FileAccess& files, const Path& path, QWidget* parent);

}  // namespace quillary
