#include "db/StoppedRewrite.h"

#include <utility>

namespace quillary {

bool FindRecovery(FileAccess& files, const Path& path, Situation& found, FileError& error) {
    found.recovery.reset();
    found.isTorn = found.isOfOtherVersion = false;
    Image bytes;
    FileError refused;
    const Path recoveryPath = files.RecoveryPath(path);
    if (!files.ReadRecovery(recoveryPath, bytes, refused)) {
        if (refused.kind == FileError::Kind::NotFound) return true;
        error = {FileError::Kind::Recovery,
                 FormatMessage(Message::RecoveryNotRead, {recoveryPath.string(), refused.reason})};
        return false;
    }
    found.isOfOtherVersion = RecoveryFile::IsOfOtherVersion(bytes.Bytes());
    if (found.isOfOtherVersion) return true;
    found.recovery = RecoveryFile::Parse(std::move(bytes));
    found.isTorn = !found.recovery;
    if (found.recovery && !found.recovery->IsFor(files.CanonicalPath(path))) found.recovery.reset();
    return true;
}

bool RefuseOtherVersion(FileAccess& files, const Path& path, Failure& failure) {
    failure.Set(Message::OtherVersionsCopy, {files.RecoveryPath(path).string()});
    return false;
}

bool ExamineFile(FileAccess& files, const Path& path, LockedFile& file, Situation& found, FileError& error) {
    Image image;
    // The stamp first: what is written after it shows in the next one.
    if (!file.Stamp(found.stamp, error) || !file.Read(image, error)) return false;
    found.image = std::make_shared<const Image>(std::move(image));
    if (!FindRecovery(files, path, found, error)) return false;
    if (found.recovery) found.match = found.recovery->Compare(found.image->Bytes(), found.stamp.inode);
    // From here on the new image stands for a mixture; the file's own bytes make room for it.
    if (found.recovery && found.match == RecoveryFile::Match::Mixture) {
        found.image.reset();
        found.image = std::make_shared<const Image>(found.recovery->NewImage());
    }
    return true;
}

bool OverwriteFile(LockedFile& file, std::string_view bytes, FileError& error) {
    return file.WriteAt(0, bytes, error) && file.Truncate(bytes.size(), error) && file.Flush(error);
}

bool FinishRewrite(FileAccess& files, const Path& path, LockedFile& file, Situation& found, FileError& error) {
    if (!OverwriteFile(file, found.image->Bytes(), error)) return false;
    if (!file.Stamp(found.stamp, error)) return false;
    found.recovery.reset();
    return files.Remove(files.RecoveryPath(path), error);
}

void SetLookFailure(const FileError& error, Failure& failure) {
    if (error.kind == FileError::Kind::Recovery) {
        failure = {Message::RecoveryNotRead, error.reason};
    } else {
        // A name that leads to another file now, or to none, is another program's doing.
        Message why = Message::UnableToOpenForWriting;
        if (error.kind == FileError::Kind::NotFound) why = Message::ChangedByAnother;
        if (error.kind == FileError::Kind::Busy) why = Message::FileBusy;
        failure.Set(why);
    }
}

bool EndStoppedRewrite(FileAccess& files, const Path& path, LockedFile& file, Failure& failure) {
    FileError error;
    Situation found;
    if (!FindRecovery(files, path, found, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    if (found.isOfOtherVersion) return RefuseOtherVersion(files, path, failure);
    if (!found.recovery) return true;
    if (!ExamineFile(files, path, file, found, error)) {
        SetLookFailure(error, failure);
        return false;
    }
    if (found.match == RecoveryFile::Match::Neither) {
        failure.Set(Message::UndecidedCopy, {files.RecoveryPath(path).string()});
        return false;
    }
    if (FinishRewrite(files, path, file, found, error)) return true;
    failure.Set(Message::WriteFailedTorn, {error.reason});
    return false;
}

}  // namespace quillary
