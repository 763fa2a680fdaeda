#include "app/RecoveryCopy.h"

#include "db/Saving.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

bool Discard(FileAccess& files, const Path& path, Failure& failure) {
    FileError error;
    if (DropRecoveryCopy(files, path, error)) return true;
    failure.Set(Message::WriteFailed, {error.reason});
    return false;
}

}  // namespace

CopyChoice SettleRecoveryCopy(FileAccess& files, const Path& path, QWidget* parent) {
    const int answer =
        AskUser(parent,
                QStringLiteral("Saving this database was interrupted, and its file has been changed since. "
                               "A copy of what was being saved is still there. Restore it?"),
                {QStringLiteral("Restore the Copy"), QStringLiteral("Discard the Copy"), QStringLiteral("Cancel")});
    Failure failure;
    if (answer == 0 && RestoreRecoveryCopy(files, path, failure)) return CopyChoice::Restored;
    if (answer == 1 && Discard(files, path, failure)) return CopyChoice::Discarded;
    if (failure.message != Message::None) ShowMessage(parent, FromUtf8(failure.text));
    return CopyChoice::Undecided;
}

}  // namespace quillary
