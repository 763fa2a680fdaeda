// The one door to the disk. db/ and everything above it touch files through this interface alone; the desktop's form is
// platform/posix/PosixFileAccess, the tests' a disk that fails on demand.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "db/Image.h"

namespace quillary {

using Path = std::filesystem::path;

/// Why the disk refused. `reason` is the system's text, UTF-8, for example "No space left on device".
struct FileError {
    enum class Kind : std::uint8_t {
        None,
        NotFound,
        Exists,    // where a new file was asked for
        Denied,    // permissions, or a read-only file system
        NotAFile,  // a directory, pipe, socket or device
        TooLarge,  // over kMaxReadSize
        Busy,      // another program kept its lock for longer than a user waits
        Full,      // no space, or the quota is used up
        Recovery,  // a recovery copy that cannot be read; `reason` is the whole message
        Other
    };
    Kind kind = Kind::None;
    std::string reason;
};

/// What tells a file from the one that was read: another program's write changes at least one of these.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modifiedNs = 0;  // since the epoch
    std::int64_t changedNs = 0;   // of bytes, names or permissions; no program can set it back
    /// The file was modified so shortly before the stamp was taken that a later write may carry the same time.
    bool mayHideAWrite = false;

    [[nodiscard]] bool SameFile(const FileStamp& other) const { return device == other.device && inode == other.inode; }
    [[nodiscard]] bool SameState(const FileStamp& other) const {
        return SameFile(other) && size == other.size && modifiedNs == other.modifiedNs && changedNs == other.changedNs;
    }
};

enum class LockKind : std::uint8_t { Shared, Exclusive };

/// An open regular file whose advisory lock is held until it is destroyed.
class LockedFile {
  public:
    virtual ~LockedFile() = default;

    [[nodiscard]] virtual bool Stamp(FileStamp& stamp, FileError& error) = 0;
    /// Replaces `image` by the whole file. A file over kMaxReadSize is refused before anything is allocated.
    [[nodiscard]] virtual bool Read(Image& image, FileError& error) = 0;
    /// Whether the file holds just these bytes. Needs no memory for them.
    [[nodiscard]] virtual bool Holds(std::string_view bytes, bool& holds, FileError& error) = 0;
    /// Makes room for `size` bytes, so that writing them cannot run out of space where the file system can promise
    /// that. The file's length may already grow; its bytes do not change.
    [[nodiscard]] virtual bool Reserve(std::uint64_t size, FileError& error) = 0;
    [[nodiscard]] virtual bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) = 0;
    [[nodiscard]] virtual bool Truncate(std::uint64_t size, FileError& error) = 0;
    /// Bytes and length are on the disk when this returns, and the name too of a file that was created.
    [[nodiscard]] virtual bool Flush(FileError& error) = 0;
};

class FileAccess {
  public:
    virtual ~FileAccess() = default;

    /// Opens an existing regular file, waiting for its lock as long as a user would (Busy after that). Exclusive also
    /// asks for the right to write. Never hangs on a pipe.
    [[nodiscard]] virtual std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) = 0;
    /// Makes a new file, locked exclusively; its folder must exist. `Exists` when the name is taken.
    [[nodiscard]] virtual std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) = 0;
    /// The same, with the permissions of `original`, or for the user alone when there is no such file. A disk without
    /// permissions has but the one way.
    [[nodiscard]] virtual std::unique_ptr<LockedFile> CreateLike(const Path& path, const Path& /*original*/,
                                                                 FileError& error) {
        return Create(path, error);
    }
    /// A file that is not there is no error.
    [[nodiscard]] virtual bool Remove(const Path& path, FileError& error) = 0;
    /// Removes a file unless a program holds its lock; does not wait for it. A disk without locks just removes it.
    [[nodiscard]] virtual bool RemoveUnlocked(const Path& path, FileError& error) { return Remove(path, error); }
    /// Gives the file another name in its folder; `Exists` when that is taken.
    [[nodiscard]] virtual bool Rename(const Path& /*from*/, const Path& /*to*/, FileError& error) {
        error = {FileError::Kind::Other, "Operation not supported"};
        return false;
    }
    /// Makes the folder and those above it; one that is there is no error. A disk without folders has nothing to make.
    [[nodiscard]] virtual bool MakeFolder(const Path& /*folder*/, FileError& /*error*/) { return true; }
    /// True when the path names something that can be opened for reading.
    [[nodiscard]] virtual bool CanRead(const Path& path) = 0;
    /// True when both the file and its folder can be written.
    [[nodiscard]] virtual bool CanWrite(const Path& path) = 0;

    /// The state of the file at `path`, without waiting for its lock. False when it cannot be told.
    [[nodiscard]] virtual bool StampOf(const Path& path, FileStamp& stamp) {
        FileError error;
        const auto file = Open(path, LockKind::Shared, error);
        return file && file->Stamp(stamp, error);
    }
    /// The one spelling of `path` that all others lead to.
    [[nodiscard]] virtual Path CanonicalPath(const Path& path) { return path; }
    /// Where the recovery file of the database at `path` lives: in the user's state folder, named after the canonical
    /// path, so that every spelling of a path finds it.
    [[nodiscard]] virtual Path RecoveryPath(const Path& path) = 0;
    /// The recovery file's bytes; false with NotFound when there is none.
    [[nodiscard]] virtual bool ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) = 0;
    /// Replaces the recovery file (mode 0600, its folder is made) by the two pieces one after the other, and flushes
    /// file and name to the disk. Whenever it is stopped, the earlier one is there or the new one, whole.
    [[nodiscard]] virtual bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                                             FileError& error) = 0;
    /// Removes what a WriteRecovery that was stopped has left beside the recovery file.
    virtual void DropUnfinishedRecovery(const Path& /*recoveryPath*/) {}
};

}  // namespace quillary
