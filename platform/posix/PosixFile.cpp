#include "platform/posix/PosixFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace quillary {

namespace {

// Repeats a call that a signal interrupted.
template <class Call>
auto Retry(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

// A transfer is told of after each of these, which take some milliseconds; so nothing is told of a small file.
constexpr std::size_t kPiece = 4 << 20;

// Tells an observer of one transfer until it is over.
class ToldTransfer {
  public:
    ToldTransfer(TransferObserver* observer, TransferObserver::Transfer transfer, std::uint64_t total)
        : m_observer(observer), m_transfer(transfer), m_total(total) {}
    ~ToldTransfer() {
        if (m_wasTold) m_observer->Ended();
    }
    ToldTransfer(const ToldTransfer&) = delete;
    ToldTransfer& operator=(const ToldTransfer&) = delete;

    void Tell(std::uint64_t done) {
        if (!m_observer || done == 0) return;
        m_observer->Moved(m_transfer, done, m_total);
        m_wasTold = true;
    }

  private:
    TransferObserver* m_observer;
    TransferObserver::Transfer m_transfer;
    std::uint64_t m_total;
    bool m_wasTold = false;
};

// Some file systems have no locks, or none for what can only be read; their files are used all the same.
bool HasNoLocks(int number) {
    return number == ENOLCK || number == ENOTSUP || number == ENOSYS || number == EINVAL || number == EBADF;
}

}  // namespace

FileError SystemError(int number) {
    using Kind = FileError::Kind;
    FileError error;
    error.reason = std::generic_category().message(number);
    switch (number) {
        case ENOENT:
        case ENOTDIR:
            error.kind = Kind::NotFound;
            break;
        case EEXIST:
            error.kind = Kind::Exists;
            break;
        case EACCES:
        case EPERM:
        case EROFS:
        case ETXTBSY:
            error.kind = Kind::Denied;
            break;
        case EISDIR:
        case ENXIO:
        case ELOOP:
            error.kind = Kind::NotAFile;
            break;
        case EFBIG:
            error.kind = Kind::TooLarge;
            break;
        case ENOSPC:
        case EDQUOT:
            error.kind = Kind::Full;
            break;
        default:
            error.kind = Kind::Other;
    }
    return error;
}

bool Fail(FileError& error) {
    error = SystemError(errno);
    return false;
}

PosixFile::~PosixFile() {
    if (m_descriptor >= 0) close(m_descriptor);
}

bool PosixFile::Read(std::uint64_t maxSize, Image& image, FileError& error) const {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0) return Fail(error);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > maxSize) {
        error = SystemError(EFBIG);
        return false;
    }
    try {
        image = Image(size);
    } catch (const std::bad_alloc&) {
        error = SystemError(ENOMEM);
        return false;
    }
    ToldTransfer transfer(m_observer, TransferObserver::Transfer::Reading, size);
    std::size_t done = 0;
    while (done < size) {
        transfer.Tell(done);
        const std::size_t piece = std::min<std::size_t>(size - done, kPiece);
        const ssize_t count =
            Retry([&] { return pread(m_descriptor, image.Data() + done, piece, static_cast<off_t>(done)); });
        if (count < 0) return Fail(error);
        if (count == 0) break;  // another program has just shortened it
        done += static_cast<std::size_t>(count);
    }
    image.Shrink(done);
    return true;
}

bool PosixFile::Holds(std::string_view bytes, bool& holds, FileError& error) const {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0) return Fail(error);
    holds = static_cast<std::uint64_t>(status.st_size) == bytes.size();
    ToldTransfer transfer(m_observer, TransferObserver::Transfer::Reading, bytes.size());
    std::vector<char> chunk(256 * 1024);
    for (std::size_t done = 0; holds && done < bytes.size();) {
        transfer.Tell(done);
        const std::string_view expected = bytes.substr(done, chunk.size());
        const ssize_t count =
            Retry([&] { return pread(m_descriptor, chunk.data(), expected.size(), static_cast<off_t>(done)); });
        if (count < 0) return Fail(error);
        const auto size = static_cast<std::size_t>(count);
        holds = size > 0 && std::string_view(chunk.data(), size) == expected.substr(0, size);
        done += size;
    }
    return true;
}

bool PosixFile::WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) const {
    ToldTransfer transfer(m_observer, TransferObserver::Transfer::Writing, bytes.size());
    std::uint64_t done = 0;
    while (!bytes.empty()) {
        transfer.Tell(done);
        const std::size_t piece = std::min(bytes.size(), kPiece);
        const ssize_t count =
            Retry([&] { return pwrite(m_descriptor, bytes.data(), piece, static_cast<off_t>(offset)); });
        if (count < 0) return Fail(error);
        if (count == 0) {
            error = SystemError(EIO);
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
        done += static_cast<std::uint64_t>(count);
    }
    return true;
}

bool PosixFile::Flush(FileError& error) const {
    ToldTransfer transfer(m_observer, TransferObserver::Transfer::Writing, 1);
    transfer.Tell(1);
    return Retry([&] { return fsync(m_descriptor); }) == 0 || Fail(error);
}

bool LockOpenFile(const PosixFile& file, LockKind kind, std::chrono::milliseconds wait, FileError& error) {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + wait;
    const int operation = (kind == LockKind::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
    while (flock(file.Descriptor(), operation) != 0) {
        if (HasNoLocks(errno)) return true;
        if (errno != EWOULDBLOCK && errno != EINTR) return Fail(error);
        if (steady_clock::now() >= deadline) {
            error = {FileError::Kind::Busy, "Another program holds its lock"};
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool FlushFolder(const Path& folder, FileError& error) {
    const PosixFile file(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file) return errno == EACCES || Fail(error);  // one that may be written but not read
    if (file.Flush(error)) return true;
    return errno == EINVAL || errno == EROFS;  // file systems that cannot flush a folder on its own
}

bool MakeFolders(const Path& folder, unsigned mode, FileError& error) {
    const auto isThere = [&folder] {
        struct stat status {};
        return stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    };
    if (isThere()) return true;
    if (folder.has_relative_path() && !MakeFolders(folder.parent_path(), mode, error)) return false;
    if (mkdir(folder.c_str(), mode) != 0) {
        if (errno != EEXIST) return Fail(error);
        if (!isThere()) {  // else another program was faster, or this is the name with a separator behind it
            error = SystemError(ENOTDIR);
            return false;
        }
    }
    return FlushFolder(folder.parent_path(), error);
}

bool PutFile(const Path& path, std::string_view suffix, std::initializer_list<std::string_view> pieces, unsigned mode,
             FileError& error, TransferObserver* observer) {
    Path second = path;
    second += suffix;
    unlink(second.c_str());  // left by a program that was stopped
    PosixFile file(open(second.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file) return Fail(error);
    file.Observe(observer);
    std::uint64_t offset = 0;
    bool written = true;
    for (const std::string_view piece : pieces) {
        written = written && file.WriteAt(offset, piece, error);
        offset += piece.size();
    }
    if (!written || !file.Flush(error) || (rename(second.c_str(), path.c_str()) != 0 && !Fail(error))) {
        unlink(second.c_str());
        return false;
    }
    return true;
}

bool ReplaceFile(const Path& path, std::string_view suffix, std::initializer_list<std::string_view> pieces,
                 unsigned mode, FileError& error, TransferObserver* observer) {
    return PutFile(path, suffix, pieces, mode, error, observer) && FlushFolder(path.parent_path(), error);
}

}  // namespace quillary
