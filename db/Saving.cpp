#include "db/Saving.h"

#include <optional>
#include <utility>

#include "db/RecoveryFile.h"

namespace quillary {

namespace {

// A locked file, what is in it, and what its recovery file says about that.
struct Situation {
    std::shared_ptr<const Image> image;
    FileStamp stamp;
    std::optional<RecoveryFile> recovery;
    RecoveryFile::Match match = RecoveryFile::Match::Neither;
    bool isTorn = false;  // a recovery file that never became whole; its database was not touched
};

std::shared_ptr<const Image> CopyOf(std::string_view bytes) { return std::make_shared<const Image>(bytes); }

// The recovery file of the database at `path`, when there is one that is whole and its own.
std::optional<RecoveryFile> FindRecovery(FileAccess& files, const Path& path, bool& isTorn) {
    Image bytes;
    FileError none;
    isTorn = false;
    if (!files.ReadRecovery(files.RecoveryPath(path), bytes, none)) return std::nullopt;
    auto recovery = RecoveryFile::Parse(std::move(bytes));
    isTorn = !recovery;
    if (recovery && !recovery->IsFor(files.CanonicalPath(path))) return std::nullopt;
    return recovery;
}

bool Examine(FileAccess& files, const Path& path, LockedFile& file, Situation& found, FileError& error) {
    Image image;
    // The stamp first: what is written after it shows in the next one.
    if (!file.Stamp(found.stamp, error) || !file.Read(image, error)) return false;
    found.image = std::make_shared<const Image>(std::move(image));
    found.recovery = FindRecovery(files, path, found.isTorn);
    if (found.recovery) found.match = found.recovery->Compare(found.image->Bytes(), found.stamp.inode);
    // From here on the new image stands for a mixture; the file's own bytes make room for it.
    if (found.recovery && found.match == RecoveryFile::Match::Mixture) {
        found.image.reset();
        found.image = CopyOf(found.recovery->NewImage());
    }
    return true;
}

bool Overwrite(LockedFile& file, std::string_view bytes, FileError& error) {
    return file.WriteAt(0, bytes, error) && file.Truncate(bytes.size(), error) && file.Flush(error);
}

// Ends a rewrite that was stopped, the file being one of its two images or a mixture. Writes even bytes that read back
// as they should: a flush that failed may have left them off the disk.
bool Settle(FileAccess& files, const Path& path, LockedFile& file, Situation& found, FileError& error) {
    if (!Overwrite(file, found.image->Bytes(), error)) return false;
    if (!file.Stamp(found.stamp, error)) return false;
    found.recovery.reset();
    return files.Remove(files.RecoveryPath(path), error);
}

// The recovery file is about to be replaced, so a rewrite that still needs it is ended first.
bool EndStoppedRewrite(FileAccess& files, const Path& path, LockedFile& file, Failure& failure) {
    bool isTorn = false;
    if (!FindRecovery(files, path, isTorn)) return true;
    FileError error;
    Situation found;
    if (!Examine(files, path, file, found, error)) {
        failure.Set(Message::UnableToOpenForWriting);
        return false;
    }
    if (!found.recovery || found.match == RecoveryFile::Match::Neither) return true;
    if (Settle(files, path, file, found, error)) return true;
    failure.Set(Message::WriteFailedTorn, {error.reason});
    return false;
}

// The file must hold what was read from it: equal stamps say so at once, else its bytes do. `oldImage` becomes what it
// does hold, when that may be overwritten.
bool FindOldImage(const RewriteRequest& request, LockedFile& file, FileStamp& present,
                  std::shared_ptr<const Image>& oldImage, Failure& failure) {
    FileError error;
    if (!file.Stamp(present, error)) {
        failure.Set(Message::ChangedByAnother);  // the name leads to another file now, or to none
        return false;
    }
    if (present.SameState(request.oldStamp) && !request.oldStamp.mayHideAWrite) return true;
    Image bytes;
    if (!file.Read(bytes, error)) {
        failure.Set(Message::UnableToOpenForWriting);
        return false;
    }
    if (bytes.Bytes() == oldImage->Bytes()) return true;
    if (!request.overwriteChanges) {
        failure.Set(Message::ChangedByAnother);
        return false;
    }
    oldImage = std::make_shared<const Image>(std::move(bytes));
    return true;
}

// After a failed rewrite, which needs its recovery file no more when the old bytes are on the disk again.
void TakeBack(FileAccess& files, LockedFile& file, const Image& oldImage, const Path& recoveryPath,
              const FileError& reason, Failure& failure) {
    FileError error;
    if (Overwrite(file, oldImage.Bytes(), error)) {
        failure.Set(Message::WriteFailed, {reason.reason});
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
    if (!Examine(files, path, held ? *held : *own, found, error)) return false;

    using Match = RecoveryFile::Match;
    if (mode == LoadMode::Complete && found.recovery && found.match != Match::Neither) {
        LockedFile* file = held;
        FileError refused;  // A file that cannot be written now is completed another time.
        if (!held) {
            own.reset();
            own = files.Open(path, LockKind::Exclusive, refused);
            file = own.get();
            // Another program may have been faster.
            if (file && !Examine(files, path, *file, found, error)) return false;
        }
        if (file && found.recovery && found.match != Match::Neither) {
            (void)Settle(files, path, *file, found, refused);
        }
    }
    if (mode == LoadMode::Complete && found.isTorn) {
        FileError refused;
        (void)files.Remove(files.RecoveryPath(path), refused);
    }

    loaded.recovery = RecoveryState::None;
    if (found.recovery && found.match == Match::Mixture) loaded.recovery = RecoveryState::Pending;
    if (found.recovery && found.match == Match::Neither) loaded.recovery = RecoveryState::Unrelated;
    loaded.image = std::move(found.image);
    loaded.stamp = found.stamp;
    return true;
}

bool LoadRecoveryCopy(FileAccess& files, const Path& path, Image& image, FileError& error) {
    bool isTorn = false;
    const auto recovery = FindRecovery(files, path, isTorn);
    if (!recovery) {
        error.kind = FileError::Kind::NotFound;
        return false;
    }
    image = Image(recovery->NewImage());
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
        failure.Set(Message::RecoveryNotWritten, {recoveryPath.string(), error.reason});
        return nullptr;
    }
    // Room first, so that a full disk refuses before a byte has changed. Behind the recovery file, as it may lengthen
    // the database already.
    if (newBytes.size() > present.size && !file->Reserve(newBytes.size(), error)) {
        const bool restored = file->Truncate(present.size, ignored) && file->Flush(ignored);
        if (restored) (void)files.Remove(recoveryPath, ignored);
        failure.Set(restored ? Message::WriteFailed : Message::WriteFailedTorn, {error.reason});
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
    const std::string head = RecoveryFile::Head(files.CanonicalPath(path), {}, {}, image.Bytes());
    if (!files.WriteRecovery(recoveryPath, head, image.Bytes(), error)) {
        failure.Set(Message::RecoveryNotWritten, {recoveryPath.string(), error.reason});
        (void)files.Remove(recoveryPath, ignored);
        return false;
    }
    std::shared_ptr<LockedFile> file = files.Create(path, error);
    if (!file) {
        failure.Set(error.kind == FileError::Kind::Exists ? Message::NameExists : Message::UnableToOpenForWriting);
        (void)files.Remove(recoveryPath, ignored);
        return false;
    }
    if (!file->Reserve(image.Size(), error) || !Overwrite(*file, image.Bytes(), error)) {
        // The recovery file goes last, and stays when the disk may keep a part of the new file.
        const bool emptied = file->Truncate(0, ignored) && file->Flush(ignored);
        const bool removed = files.Remove(path, ignored);
        if (emptied && removed) (void)files.Remove(recoveryPath, ignored);
        failure.Set(removed ? Message::WriteFailed : Message::WriteFailedTorn, {error.reason});
        return false;
    }
    (void)files.Remove(recoveryPath, ignored);
    if (!file->Stamp(stamp, error)) stamp.mayHideAWrite = true;
    held = std::move(file);
    return true;
}

}  // namespace quillary
