// The order of steps in which a database file is read and rewritten, so that a stop at any point leaves the old or the
// new database whole.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "db/FileAccess.h"
#include "db/Image.h"
#include "db/Messages.h"

namespace quillary {

/// What a recovery file beside the database means for it.
enum class RecoveryState : std::uint8_t {
    None,           // none, or one that can be dropped: the file equals its old or its new image
    Pending,        // the file is a mixture of the two: a stopped rewrite. The loaded image is the new one
    Unrelated,      // the file is neither, or gone: it stays as it is, and the user decides about the copy
    OtherVersions,  // the copy is another version's and cannot be read here: the file stays as it is
};

enum class LoadMode : std::uint8_t {
    Read,      // writes nothing, not even the completion of a stopped rewrite
    Complete,  // completes a stopped rewrite, drops a recovery file that is no longer needed
};

struct LoadedFile {
    std::shared_ptr<const Image> image;
    FileStamp stamp;
    RecoveryState recovery = RecoveryState::None;
};

/// Reads the file at `path`, through `held` when the caller already has it open and locked. A recovery image is never
/// read when it does not belong to this very file.
[[nodiscard]] bool LoadDatabaseFile(FileAccess& files, const Path& path, LoadMode mode, LockedFile* held,
                                    LoadedFile& loaded, FileError& error);

/// What there is for a database that has gone from `path`: None, Unrelated or OtherVersions.
[[nodiscard]] RecoveryState RecoveryOfMissing(FileAccess& files, const Path& path);

/// Puts the copy that an Unrelated recovery file holds in the file's place, or makes the file anew from it. On failure,
/// or when the program is stopped, file and copy are as they were, or the next opening completes it (WriteFailedTorn).
[[nodiscard]] bool RestoreRecoveryCopy(FileAccess& files, const Path& path, Failure& failure);
/// Forgets the copy.
[[nodiscard]] bool DropRecoveryCopy(FileAccess& files, const Path& path, FileError& error);

/// A rewrite whose bytes are in place but not yet known to be on the disk. Holds the file's lock. Destroyed unfinished,
/// it leaves the recovery file, which the next opening drops.
class UnfinishedSave {
  public:
    UnfinishedSave(FileAccess& files, std::shared_ptr<LockedFile> file, Path recoveryPath,
                   std::shared_ptr<const Image> oldImage)
        : m_files(files),
          m_file(std::move(file)),
          m_recoveryPath(std::move(recoveryPath)),
          m_oldImage(std::move(oldImage)) {}
    /// Flushes and removes the recovery file; may run on another thread. When the disk refuses, the file becomes again
    /// what it was before the rewrite; `failure` says whether that worked (WriteFailed) or not (WriteFailedTorn).
    [[nodiscard]] bool Finish(Failure& failure);

  private:
    FileAccess& m_files;
    std::shared_ptr<LockedFile> m_file;
    Path m_recoveryPath;
    std::shared_ptr<const Image> m_oldImage;
};

struct RewriteRequest {
    Path path;
    std::shared_ptr<LockedFile> held;       // null: the file is opened and locked for this rewrite
    std::shared_ptr<const Image> oldImage;  // what the file held when it was read
    FileStamp oldStamp;
    const Image* newImage = nullptr;
    std::shared_ptr<const Image> tornImage;  // what an earlier rewrite of the caller's left half written, if one did
    bool overwriteChanges = false;           // also when another program wrote the file since
};

/// Rewrites an existing file in place. On failure the file is as it was, or, when the disk refuses that too, the
/// recovery file completes it at the next opening; `failure` says which. `stamp` receives the new state.
[[nodiscard]] std::unique_ptr<UnfinishedSave> RewriteDatabaseFile(FileAccess& files, const RewriteRequest& request,
                                                                  FileStamp& stamp, Failure& failure);

/// Makes a new file; refuses a name that is taken (NameExists). On failure no file is left behind.
/// `held` receives the file, still locked exclusively.
[[nodiscard]] bool CreateDatabaseFile(FileAccess& files, const Path& path, const Image& image,
                                      std::shared_ptr<LockedFile>& held, FileStamp& stamp, Failure& failure);

}  // namespace quillary
