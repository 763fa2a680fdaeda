// Database files on a POSIX system: advisory locks by flock, recovery files in the user's state folder.
#pragma once

#include <chrono>

#include "db/FileAccess.h"
#include "platform/posix/PosixFile.h"
#include "platform/posix/XdgFolders.h"

struct stat;

namespace quillary {

/// Taken now, of a file whose status was just asked for.
[[nodiscard]] FileStamp MakeStamp(const struct stat& status);

class PosixFileAccess : public FileAccess {
  public:
    /// Recovery files live in `stateFolder`/quillary/recovery. `lockWait` is how long Open waits for another program.
    explicit PosixFileAccess(Path stateFolder = StateFolder(), std::chrono::milliseconds lockWait = kLockWait)
        : m_stateFolder(std::move(stateFolder)), m_lockWait(lockWait) {}

    std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) override;
    std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) override;
    std::unique_ptr<LockedFile> CreateLike(const Path& path, const Path& original, FileError& error) override;
    bool Remove(const Path& path, FileError& error) override;
    bool RemoveUnlocked(const Path& path, FileError& error) override;
    bool Rename(const Path& from, const Path& to, FileError& error) override;
    bool MakeFolder(const Path& folder, FileError& error) override;
    bool CanRead(const Path& path) override;
    bool CanWrite(const Path& path) override;
    bool StampOf(const Path& path, FileStamp& stamp) override;
    Path CanonicalPath(const Path& path) override;
    Path RecoveryPath(const Path& path) override;
    bool ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) override;
    /// Through a second file that takes the name when its bytes are on the disk, so that an earlier recovery file stays
    /// until this one is whole. Follows no link.
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;
    void DropUnfinishedRecovery(const Path& recoveryPath) override;

  protected:
    /// Tells `observer`, which must outlive every file, of what is read and written from now on.
    void Observe(TransferObserver& observer) { m_observer = &observer; }

  private:
    [[nodiscard]] std::unique_ptr<LockedFile> LockNew(PosixFile file, const Path& path, FileError& error) const;

    [[nodiscard]] std::unique_ptr<LockedFile> OpenWithin(std::chrono::milliseconds wait, const Path& path,
                                                         LockKind lock, FileError& error) const;

    Path m_stateFolder;  // empty when the user has no home
    std::chrono::milliseconds m_lockWait;
    TransferObserver* m_observer = nullptr;
};

}  // namespace quillary
