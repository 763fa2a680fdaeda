#include "admin/RenameDatabase.h"

#include <string>

#include "admin/DatabasePath.h"

namespace quillary {

namespace {

bool HasRecoveryCopy(FileAccess& files, const Path& path) {
    Image copy;
    FileError error;
    return files.ReadRecovery(files.RecoveryPath(path), copy, error) || error.kind != FileError::Kind::NotFound;
}

std::string_view Trimmed(std::string_view name) {
    while (name.starts_with(' ')) name.remove_prefix(1);
    while (name.ends_with(' ')) name.remove_suffix(1);
    return name;
}

}  // namespace

bool RenameDatabase(FileAccess& files, const Path& path, std::string_view name, Path& renamed, Failure& failure) {
    name = Trimmed(name);
    if (name.empty()) {
        failure.Set(Message::NameMissing);
        return false;
    }
    if (IsImpossibleName(name)) {
        failure.Set(Message::ImpossibleName, {name});
        return false;
    }
    std::string fileName(name);
    if (!EndsInExtension(fileName)) fileName += path.extension().native();
    renamed = path;
    renamed.replace_filename(fileName);
    if (renamed == path) return true;
    FileError error;
    // Held until the file has its name: no other program is in the midst of a save, and none begins one.
    const auto held = files.Open(path, LockKind::Shared, error);
    if (held && HasRecoveryCopy(files, path)) {
        failure.Set(Message::RecoveryCopyKeepsName);
        return false;
    }
    if (held && files.Rename(path, renamed, error)) return true;
    if (error.kind == FileError::Kind::Exists) {
        failure.Set(Message::NameExists);
    } else if (error.kind == FileError::Kind::Busy) {
        failure.Set(Message::FileBusy);
    } else {
        failure.Set(Message::NotRenamed, {error.reason});
    }
    return false;
}

}  // namespace quillary
