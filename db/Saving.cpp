#include "db/Saving.h"

#include <utility>

#include "db/RecoveryFile.h"
#include "db/StoppedRewrite.h"

namespace quillary {

namespace {

constexpr std::string_view kAsItWas = "The file is as it was.";
constexpr std::string_view kNotTouched = "The database was not touched.";
constexpr std::string_view kNotMade = "No file was made.";

// The file must hold what was read from it: equal stamps say so at once, else its bytes do. `oldImage` becomes what it
// does hold, when that may be overwritten.
bool FindOldImage(const RewriteRequest& request, LockedFile& file, FileStamp& present,
                  std::shared_ptr<const Image>& oldImage, Failure& failure) {
    FileError error;
    const auto holds = [&](const std::shared_ptr<const Image>& image, bool& answer) {
        answer = false;
        return !image || file.Holds(image->Bytes(), answer, error);
    };
    bool unchanged = false;
    bool torn = false;
    if (!file.Stamp(present, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    if (present.SameState(request.oldStamp) && !request.oldStamp.mayHideAWrite) return true;
    if (!holds(oldImage, unchanged) || (!unchanged && !holds(request.tornImage, torn))) {
        SetLookFailure(error, failure);
        return false;
    }
    if (unchanged) return true;
    if (torn) {
        oldImage = request.tornImage;
        return true;
    }
    if (!request.overwriteChanges) {
        failure.Set(Message::ChangedByAnother);
        return false;
    }
    Image bytes;
    if (!file.Read(bytes, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    oldImage = std::make_shared<const Image>(std::move(bytes));
    return true;
}

// After a failed rewrite, which needs its recovery file no more when the old bytes are on the disk again.
void TakeBack(FileAccess& files, LockedFile& file, const Image& oldImage, const Path& recoveryPath,
              const FileError& reason, Failure& failure) {
    FileError error;
    if (OverwriteFile(file, oldImage.Bytes(), error)) {
        failure.Set(Message::WriteFailed, {reason.reason, kAsItWas});
        (void)files.Remove(recoveryPath, error);  // one that stays equals the file
    } else {
        failure.Set(Message::WriteFailedTorn, {reason.reason});
    }
}

}  // namespace

bool LoadDatabaseFile(FileAccess& files, const Path& path, LoadMode mode, LockedFile* held, LoadedFile& loaded,
                      FileError& error) {
    std::unique_ptr<LockedFile> own;
    if (!held) {
        own = files.Open(path, LockKind::Shared, error);
        if (!own) return false;
    }
    Situation found;
    if (!ExamineFile(files, path, held ? *held : *own, found, error)) return false;

    using Match = RecoveryFile::Match;
    if (mode == LoadMode::Complete && found.recovery && found.match != Match::Neither) {
        LockedFile* file = held;
        FileError refused;  // A file that cannot be written now is completed another time.
        if (!held) {
            own.reset();
            own = files.Open(path, LockKind::Exclusive, refused);
            file = own.get();
            // Another program may have been faster.
            if (file && !ExamineFile(files, path, *file, found, error)) return false;
        }
        if (file && found.recovery && found.match != Match::Neither) {
            (void)FinishRewrite(files, path, *file, found, refused);
        }
    }
    if (mode == LoadMode::Complete && found.isTorn) {
        FileError refused;
        (void)files.Remove(files.RecoveryPath(path), refused);
    }
    // Who writes a recovery file has the database locked: while this program has, a beginning of one is left over.
    if (mode == LoadMode::Complete && (held || own)) files.DropUnfinishedRecovery(files.RecoveryPath(path));

    loaded.recovery = RecoveryState::None;
    if (found.recovery && found.match == Match::Mixture) loaded.recovery = RecoveryState::Pending;
    if (found.recovery && found.match == Match::Neither) loaded.recovery = RecoveryState::Unrelated;
    if (found.isOfOtherVersion) loaded.recovery = RecoveryState::OtherVersions;
    loaded.image = std::move(found.image);
    loaded.stamp = found.stamp;
    return true;
}

RecoveryState RecoveryOfMissing(FileAccess& files, const Path& path) {
    FileError error;
    Situation found;
    if (!FindRecovery(files, path, found, error)) return RecoveryState::None;
    if (found.isOfOtherVersion) return RecoveryState::OtherVersions;
    // A creation that was stopped before there was a file is nothing that anybody had.
    return found.recovery && !found.recovery->IsOfNewFile() ? RecoveryState::Unrelated : RecoveryState::None;
}

bool RestoreRecoveryCopy(FileAccess& files, const Path& path, Failure& failure) {
    FileError error;
    Situation found;
    auto file = files.Open(path, LockKind::Exclusive, error);
    const bool isMissing = !file && error.kind == FileError::Kind::NotFound;
    if ((!file && !isMissing) || !FindRecovery(files, path, found, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    if (found.isOfOtherVersion) return RefuseOtherVersion(files, path, failure);
    if (!found.recovery) {
        failure.Set(Message::ChangedByAnother);  // decided or completed elsewhere meanwhile
        return false;
    }
    // Its own permissions are not known any more, so for the user alone.
    if (isMissing) file = files.CreateLike(path, path, error);
    if (!file) {
        failure.Set(Message::UnableToOpenForWriting);
        return false;
    }
    const auto undone = [&] {
        FileError ignored;
        if (isMissing) (void)files.Remove(path, ignored);
        return false;
    };
    Image present;
    if (!file->Stamp(found.stamp, error) || !file->Read(present, error)) {
        SetLookFailure(error, failure);
        return undone();
    }
    const std::string_view copy = found.recovery->NewImage();
    const Path recoveryPath = files.RecoveryPath(path);
    const std::string head = RecoveryFile::Head(files.CanonicalPath(path), found.stamp, present.Bytes(), copy,
                                                RecoveryFile::Purpose::Restore);
    if (!files.WriteRecovery(recoveryPath, head, copy, error)) {
        failure.Set(Message::RecoveryNotWritten, {recoveryPath.string(), error.reason, kNotTouched});
        return undone();
    }
    // From here on it is decided: what is stopped or refused now is completed by the next opening.
    if (!file->Reserve(copy.size(), error) || !OverwriteFile(*file, copy, error)) {
        failure.Set(Message::WriteFailedTorn, {error.reason});
        return false;
    }
    (void)files.Remove(recoveryPath, error);  // one that stays equals the file
    return true;
}

bool DropRecoveryCopy(FileAccess& files, const Path& path, FileError& error) {
    return files.Remove(files.RecoveryPath(path), error);
}

bool UnfinishedSave::Finish(Failure& failure) {
    FileError error;
    if (!m_file->Flush(error)) {
        TakeBack(m_files, *m_file, *m_oldImage, m_recoveryPath, error, failure);
        return false;
    }
    (void)m_files.Remove(m_recoveryPath, error);  // one that stays equals the database and goes at the next opening
    return true;
}

std::unique_ptr<UnfinishedSave> RewriteDatabaseFile(FileAccess& files, const RewriteRequest& request, FileStamp& stamp,
                                                    Failure& failure) {
    FileError error;
    FileError ignored;
    std::shared_ptr<LockedFile> file = request.held;
    if (!file) file = files.Open(request.path, LockKind::Exclusive, error);
    if (!file) {
        failure.Set(error.kind == FileError::Kind::Busy ? Message::FileBusy : Message::UnableToOpenForWriting);
        return nullptr;
    }
    std::shared_ptr<const Image> oldImage = request.oldImage;
    FileStamp present;
    if (!EndStoppedRewrite(files, request.path, *file, failure) ||
        !FindOldImage(request, *file, present, oldImage, failure)) {
        return nullptr;
    }

    const std::string_view newBytes = request.newImage->Bytes();
    const Path recoveryPath = files.RecoveryPath(request.path);
    const std::string head =
        RecoveryFile::Head(files.CanonicalPath(request.path), present, oldImage->Bytes(), newBytes);
    if (!files.WriteRecovery(recoveryPath, head, newBytes, error)) {
        failure.Set(Message::RecoveryNotWritten, {recoveryPath.string(), error.reason, kNotTouched});
        return nullptr;
    }
    // Room first, so that a full disk refuses before a byte has changed. Behind the recovery file, as it may lengthen
    // the database already.
    if (newBytes.size() > present.size && !file->Reserve(newBytes.size(), error)) {
        const bool restored = file->Truncate(present.size, ignored) && file->Flush(ignored);
        if (restored) (void)files.Remove(recoveryPath, ignored);
        failure.Set(restored ? Message::WriteFailed : Message::WriteFailedTorn, {error.reason, kAsItWas});
        return nullptr;
    }
    if (!file->WriteAt(0, newBytes, error) ||
        (newBytes.size() < present.size && !file->Truncate(newBytes.size(), error))) {
        TakeBack(files, *file, *oldImage, recoveryPath, error, failure);
        return nullptr;
    }
    if (!file->Stamp(stamp, error)) stamp.mayHideAWrite = true;
    return std::make_unique<UnfinishedSave>(files, std::move(file), recoveryPath, std::move(oldImage));
}

bool CreateDatabaseFile(FileAccess& files, const Path& path, const Image& image, std::shared_ptr<LockedFile>& held,
                        FileStamp& stamp, Failure& failure) {
    // Before the recovery file, which an existing database may still need.
    if (files.CanRead(path)) {
        failure.Set(Message::NameExists);
        return false;
    }
    FileError error;
    FileError ignored;
    const Path recoveryPath = files.RecoveryPath(path);
    Situation found;
    if (!FindRecovery(files, path, found, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    if (found.isOfOtherVersion) return RefuseOtherVersion(files, path, failure);
    if (found.recovery && !found.recovery->IsOfNewFile()) {
        failure.Set(Message::CopyOfMissing, {recoveryPath.string()});
        return false;
    }
    found.recovery.reset();
    const std::string head = RecoveryFile::Head(files.CanonicalPath(path), {}, {}, image.Bytes());
    if (!files.WriteRecovery(recoveryPath, head, image.Bytes(), error)) {
        failure.Set(Message::RecoveryNotWritten, {recoveryPath.string(), error.reason, kNotMade});
        (void)files.Remove(recoveryPath, ignored);
        return false;
    }
    std::shared_ptr<LockedFile> file = files.Create(path, error);
    if (!file) {
        if (error.kind == FileError::Kind::Exists) {
            failure.Set(Message::NameExists);
        } else {
            failure.Set(Message::UnableToOpenForWriting);
            failure.reason = error.reason;
        }
        (void)files.Remove(recoveryPath, ignored);
        return false;
    }
    if (!file->Reserve(image.Size(), error) || !OverwriteFile(*file, image.Bytes(), error)) {
        // The recovery file goes last, and stays when the disk may keep a part of the new file.
        const bool emptied = file->Truncate(0, ignored) && file->Flush(ignored);
        const bool removed = files.Remove(path, ignored);
        if (emptied && removed) (void)files.Remove(recoveryPath, ignored);
        failure.Set(removed ? Message::WriteFailed : Message::WriteFailedTorn, {error.reason, kNotMade});
        return false;
    }
    (void)files.Remove(recoveryPath, ignored);
    if (!file->Stamp(stamp, error)) stamp.mayHideAWrite = true;
    held = std::move(file);
    return true;
}

}  // namespace quillary
