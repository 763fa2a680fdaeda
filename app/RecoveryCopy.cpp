#include "app/RecoveryCopy.h"

#include "db/Saving.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

bool Discard(FileAccess& files, const Path& path, Failure& failure) {
    FileError error;
    if (DropRecoveryCopy(files, path, error)) return true;
    failure.Set(Message::WriteFailed, {error.reason, "The copy is still there."});
    return false;
}

}  // namespace

CopyChoice SettleRecoveryCopy(FileAccess& files, const Path& path, const CQuillaryDoc& doc, QWidget* parent) {
    Failure failure;
    if (doc.Recovery() == RecoveryState::OtherVersions) {
        failure.Set(Message::OtherVersionsCopy, {files.RecoveryPath(path).string()});
        ShowMessage(parent, FromUtf8(failure.text));
        return CopyChoice::Undecided;
    }
    if (doc.Recovery() != RecoveryState::Unrelated) return CopyChoice::None;
    FileStamp stamp;
    QString fate = QStringLiteral("has been changed since");
    if (!doc.IsOpen()) fate = QStringLiteral("is no database now");
    if (!files.StampOf(path, stamp)) fate = QStringLiteral("is no longer there");
    const int answer =
        AskUser(parent,
                QStringLiteral("Saving this database was interrupted, and its file %1. "
                               "A copy of what was being saved is still there. Restore it?")
                    .arg(fate),
                {QStringLiteral("Restore the Copy"), QStringLiteral("Discard the Copy"), QStringLiteral("Cancel")});
    if (answer == 0 && RestoreRecoveryCopy(files, path, failure)) return CopyChoice::Restored;
    if (answer == 1 && Discard(files, path, failure)) return CopyChoice::Discarded;
    if (failure.message != Message::None) ShowMessage(parent, FromUtf8(failure.text));
    return CopyChoice::Undecided;
}

}  // namespace quillary
