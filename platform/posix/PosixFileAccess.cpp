#include "platform/posix/PosixFileAccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <system_error>

#include "db/Layout.h"
#include "db/RecoveryFile.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

namespace {

// A recovery file holds an image and, for each 512 bytes of another, a hash.
constexpr std::uint64_t kMaxRecoverySize = kMaxReadSize + kMaxReadSize / 32;
constexpr int kNewFile = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
constexpr mode_t kNewFileMode = 0666;  // less the user's umask
constexpr mode_t kPrivateFileMode = 0600;
constexpr const char* kUnfinished = ".new";  // behind the name of a recovery file that is being written

std::int64_t Nanoseconds(const timespec& time) { return time.tv_sec * std::int64_t{1000000000} + time.tv_nsec; }

std::int64_t Now() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return Nanoseconds(now);
}

bool RefuseUnlessRegular(const struct stat& status, FileError& error) {
    if (S_ISREG(status.st_mode)) return true;
    error = SystemError(S_ISDIR(status.st_mode) ? EISDIR : ENXIO);
    if (!S_ISDIR(status.st_mode)) error.reason = "Not a regular file";
    return false;
}

// Where the file system has no such permissions, a new file keeps those that it was made with, which are narrower.
void CopyPermissions(const PosixFile& file, const struct stat& model) {
    struct stat own {};
    if (fstat(file.Descriptor(), &own) != 0) return;
    mode_t mode = model.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    // What members of one group may do is not for those of another.
    if (own.st_gid != model.st_gid && fchown(file.Descriptor(), own.st_uid, model.st_gid) != 0) mode &= ~S_IRWXG;
    (void)fchmod(file.Descriptor(), mode);
}

class PosixLockedFile : public LockedFile {
  public:
    PosixLockedFile(PosixFile file, Path path, bool isNew)
        : m_file(std::move(file)), m_path(std::move(path)), m_isNew(isNew) {}

    bool Stamp(FileStamp& stamp, FileError& error) override;
    bool Read(Image& image, FileError& error) override { return m_file.Read(kMaxReadSize, image, error); }
    bool Holds(std::string_view bytes, bool& holds, FileError& error) override {
        return m_file.Holds(bytes, holds, error);
    }
    bool Reserve(std::uint64_t size, FileError& error) override;
    bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) override;
    bool Truncate(std::uint64_t size, FileError& error) override;
    bool Flush(FileError& error) override;

    /// Whether the name still leads to this file: another program may have put a new file in its place.
    [[nodiscard]] bool HasItsName(struct stat& own, FileError& error) const;

  private:
    PosixFile m_file;
    Path m_path;
    bool m_isNew;
    bool m_wasWritten = false;
};

bool PosixLockedFile::HasItsName(struct stat& own, FileError& error) const {
    struct stat named {};
    if (fstat(m_file.Descriptor(), &own) != 0 || stat(m_path.c_str(), &named) != 0) return Fail(error);
    if (own.st_dev == named.st_dev && own.st_ino == named.st_ino) return true;
    error = {FileError::Kind::NotFound, "Another file has taken its place"};
    return false;
}

bool PosixLockedFile::Stamp(FileStamp& stamp, FileError& error) {
    struct stat status {};
    if (!HasItsName(status, error)) return false;
    // After a write of our own the time is set to the nanosecond, which no later write will hit by chance: without it
    // every save would have to read back what the one before wrote.
    bool isExact = false;
    if (m_wasWritten) {
        m_wasWritten = false;
        std::int64_t now = Now();
        if (now % 1000 == 0) ++now;  // so that a file system that keeps less shows
        const timespec times[2] = {{0, UTIME_OMIT}, {now / 1000000000, now % 1000000000}};
        if (futimens(m_file.Descriptor(), times) == 0 && !HasItsName(status, error)) return false;
        isExact = Nanoseconds(status.st_mtim) == now;
    }
    stamp = MakeStamp(status);
    if (isExact) stamp.mayHideAWrite = false;
    return true;
}

bool PosixLockedFile::Reserve(std::uint64_t size, FileError& error) {
    int result = 0;
    do {
        result = fallocate(m_file.Descriptor(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size));
    } while (result != 0 && errno == EINTR);
    if (result == 0 || errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL) return true;
    return Fail(error);
}

bool PosixLockedFile::WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) {
    m_wasWritten = true;
    return m_file.WriteAt(offset, bytes, error);
}

bool PosixLockedFile::Truncate(std::uint64_t size, FileError& error) {
    m_wasWritten = true;
    int result = 0;
    do {
        result = ftruncate(m_file.Descriptor(), static_cast<off_t>(size));
    } while (result != 0 && errno == EINTR);
    return result == 0 || Fail(error);
}

bool PosixLockedFile::Flush(FileError& error) {
    if (!m_file.Flush(error)) return false;
    if (m_isNew && !FlushFolder(m_path.parent_path(), error)) return false;
    m_isNew = false;
    return true;
}

}  // namespace

FileStamp MakeStamp(const struct stat& status) {
    constexpr std::int64_t kMillisecond = 1000000;
    FileStamp stamp;
    stamp.device = status.st_dev;
    stamp.inode = status.st_ino;
    stamp.size = static_cast<std::uint64_t>(status.st_size);
    stamp.modifiedNs = Nanoseconds(status.st_mtim);
    stamp.changedNs = Nanoseconds(status.st_ctim);
    // The kernel's time stamps move on every few milliseconds, those of memory cards every two seconds.
    const std::int64_t grain = status.st_mtim.tv_nsec == 0 ? 2050 * kMillisecond : 50 * kMillisecond;
    stamp.mayHideAWrite = stamp.modifiedNs > Now() - grain;
    return stamp;
}

std::unique_ptr<LockedFile> PosixFileAccess::Open(const Path& path, LockKind lock, FileError& error) {
    return OpenWithin(m_lockWait, path, lock, error);
}

std::unique_ptr<LockedFile> PosixFileAccess::OpenWithin(std::chrono::milliseconds wait, const Path& path, LockKind lock,
                                                        FileError& error) const {
    const int access = lock == LockKind::Exclusive ? O_RDWR : O_RDONLY;
    for (;;) {
        // Looked at before it is opened: opening some devices does something.
        struct stat status {};
        if (stat(path.c_str(), &status) != 0) {
            Fail(error);
            return nullptr;
        }
        if (!RefuseUnlessRegular(status, error)) return nullptr;
        PosixFile file(open(path.c_str(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!file || fstat(file.Descriptor(), &status) != 0) {
            Fail(error);
            return nullptr;
        }
        if (!RefuseUnlessRegular(status, error) || !LockOpenFile(file, lock, wait, error)) return nullptr;
        file.Observe(m_observer);
        auto locked = std::make_unique<PosixLockedFile>(std::move(file), path, false);
        // A file that was replaced while we waited for its lock is the wrong one.
        if (locked->HasItsName(status, error)) return locked;
        if (error.kind != FileError::Kind::NotFound) return nullptr;
    }
}

std::unique_ptr<LockedFile> PosixFileAccess::Create(const Path& path, FileError& error) {
    return LockNew(PosixFile(open(path.c_str(), kNewFile, kNewFileMode)), path, error);
}

std::unique_ptr<LockedFile> PosixFileAccess::CreateLike(const Path& path, const Path& original, FileError& error) {
    struct stat model {};
    const bool hasModel = stat(original.c_str(), &model) == 0;
    PosixFile file(open(path.c_str(), kNewFile, kPrivateFileMode));
    if (file && hasModel) CopyPermissions(file, model);
    return LockNew(std::move(file), path, error);
}

std::unique_ptr<LockedFile> PosixFileAccess::LockNew(PosixFile file, const Path& path, FileError& error) const {
    if (!file) {
        Fail(error);
        return nullptr;
    }
    if (!LockOpenFile(file, LockKind::Exclusive, m_lockWait, error)) {
        unlink(path.c_str());
        return nullptr;
    }
    file.Observe(m_observer);
    return std::make_unique<PosixLockedFile>(std::move(file), path, true);
}

bool PosixFileAccess::Remove(const Path& path, FileError& error) {
    return unlink(path.c_str()) == 0 || errno == ENOENT || Fail(error);
}

bool PosixFileAccess::RemoveUnlocked(const Path& path, FileError& error) {
    const auto file = OpenWithin({}, path, LockKind::Exclusive, error);
    return file && Remove(path, error);
}

bool PosixFileAccess::Rename(const Path& from, const Path& to, FileError& error) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0) {
        // File systems that cannot rename so have a second name for a file, which takes no other's place either.
        if (errno != EINVAL && errno != ENOSYS) return Fail(error);
        if (link(from.c_str(), to.c_str()) != 0 || unlink(from.c_str()) != 0) return Fail(error);
    }
    return FlushFolder(to.parent_path(), error);
}

bool PosixFileAccess::MakeFolder(const Path& folder, FileError& error) {
    return MakeFolders(folder, kSharedFolder, error);
}

bool PosixFileAccess::CanRead(const Path& path) { return faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0; }

bool PosixFileAccess::CanWrite(const Path& path) {
    const Path folder = path.has_parent_path() ? path.parent_path() : ".";
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 &&
           faccessat(AT_FDCWD, folder.c_str(), W_OK, AT_EACCESS) == 0;
}

bool PosixFileAccess::StampOf(const Path& path, FileStamp& stamp) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    stamp = MakeStamp(status);
    return true;
}

Path PosixFileAccess::CanonicalPath(const Path& path) {
    std::error_code failed;
    Path canonical = std::filesystem::weakly_canonical(std::filesystem::absolute(path, failed), failed);
    return failed ? path.lexically_normal() : canonical;
}

Path PosixFileAccess::RecoveryPath(const Path& path) {
    if (m_stateFolder.empty()) return {};
    char name[17];
    std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(Hash64(CanonicalPath(path).native())));
    return m_stateFolder / "quillary" / "recovery" / name;
}

bool PosixFileAccess::ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) {
    PosixFile file(open(recoveryPath.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!file || fstat(file.Descriptor(), &status) != 0) {
        Fail(error);
        // In a folder that is closed to this user none of its own can be.
        const bool isClosed = faccessat(AT_FDCWD, recoveryPath.parent_path().c_str(), X_OK, AT_EACCESS) != 0;
        if (error.kind == FileError::Kind::Denied && isClosed) error.kind = FileError::Kind::NotFound;
        return false;
    }
    file.Observe(m_observer);
    return RefuseUnlessRegular(status, error) && file.Read(kMaxRecoverySize, image, error);
}

bool PosixFileAccess::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                                    FileError& error) {
    if (recoveryPath.empty()) {
        error = {FileError::Kind::NotFound, "You have no home folder"};
        return false;
    }
    return MakeFolders(recoveryPath.parent_path(), kPrivateFolder, error) &&
           ReplaceFile(recoveryPath, kUnfinished, {head, body}, kPrivateFileMode, error, m_observer);
}

void PosixFileAccess::DropUnfinishedRecovery(const Path& recoveryPath) {
    if (!recoveryPath.empty()) unlink((recoveryPath.string() + kUnfinished).c_str());
}

}  // namespace quillary
