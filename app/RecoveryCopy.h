// What happens at opening to the copy that an interrupted save left, when the file is by now another one, none that is
// valid, or gone.
#pragma once

#include "db/QuillaryDoc.h"

class QWidget;

namespace quillary {

enum class CopyChoice { None, Restored, Discarded, Undecided };

/// None when there is no such copy for `doc`, which was just opened, or refused, from `path`. Else asks, and does what
/// was chosen. Restored: the file is to be read again. Undecided, after a failure and for a copy of another version
/// too: nothing is lost, and the database should not be opened, as nothing could be saved.
[[nodiscard]] CopyChoice SettleRecoveryCopy(FileAccess& files, const Path& path, const CQuillaryDoc& doc,
                                            QWidget* parent);

}  // namespace quillary
