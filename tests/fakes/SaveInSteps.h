// A save as a document makes it, for tests that look between its steps.
#pragma once

#include "db/Saving.h"

namespace quillary {

/// Rewrites what `read` was read from by `bytes`, up to the flush; `read` then has the new stamp. `held` is the file
/// when it is open already.
[[nodiscard]] inline std::unique_ptr<UnfinishedSave> SaveUpToFlush(FileAccess& files, const Path& path,
                                                                   LoadedFile& read, std::string_view bytes,
                                                                   Failure& failure, bool overwriteChanges = false,
                                                                   std::shared_ptr<LockedFile> held = nullptr) {
    const Image image(bytes);
    RewriteRequest request;
    request.path = path;
    request.held = std::move(held);
    request.oldImage = read.image;
    request.oldStamp = read.stamp;
    request.newImage = &image;
    request.overwriteChanges = overwriteChanges;
    return RewriteDatabaseFile(files, request, read.stamp, failure);
}

}  // namespace quillary
