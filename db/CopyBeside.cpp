#include "db/CopyBeside.h"

#include <memory>
#include <string>

#include "db/Saving.h"

namespace quillary {

bool CopyBeside(FileAccess& files, const Path& original, std::string_view image, Path& copy, Failure& failure) {
    FileError error;
    std::unique_ptr<LockedFile> file;
    for (int n = 1; !file && (n == 1 || error.kind == FileError::Kind::Exists); ++n) {
        const std::string mark = n == 1 ? " (copy)" : " (copy " + std::to_string(n) + ")";
        copy = original;
        copy.replace_filename(original.stem().native() + mark + original.extension().native());
        file = files.CreateLike(copy, original, error);
    }
    if (file && file->WriteAt(0, image, error) && file->Flush(error)) return true;
    failure.Set(Message::NotCopied, {error.reason});
    if (file) {
        FileError ignored;
        (void)files.Remove(copy, ignored);
    }
    return false;
}

bool CopyFileBeside(FileAccess& files, const Path& original, Path& copy, Failure& failure) {
    LoadedFile loaded;
    FileError error;
    if (LoadDatabaseFile(files, original, LoadMode::Read, nullptr, loaded, error)) {
        return CopyBeside(files, original, loaded.image->Bytes(), copy, failure);
    }
    failure.Set(Message::NotCopied, {error.reason});
    return false;
}

}  // namespace quillary
