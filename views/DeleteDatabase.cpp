#include "views/DeleteDatabase.h"

#include "db/Saving.h"
#include "platform/Trash.h"

namespace quillary {

bool DeleteDatabaseFile(FileAccess& files, Trash& trash, const Path& path, Failure& failure) {
    FileError error;
    if (!trash.Put(path) && !files.Remove(path, error)) {
        failure.Set(Message::NotDeleted, {error.reason});
        return false;
    }
    (void)DropRecoveryCopy(files, path, error);  // it belongs to a file that is gone
    return true;
}

}  // namespace quillary
