// An open file descriptor with the loops that system calls need, and errors in the terms of FileAccess.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>
#include <utility>

#include "db/FileAccess.h"
#include "platform/posix/TransferObserver.h"

namespace quillary {

/// `number` is an errno value.
[[nodiscard]] FileError SystemError(int number);
/// Sets `error` from errno; returns false for the caller to return.
bool Fail(FileError& error);

class PosixFile {
  public:
    PosixFile() = default;
    explicit PosixFile(int descriptor) : m_descriptor(descriptor) {}
    PosixFile(PosixFile&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)), m_observer(other.m_observer) {}
    PosixFile& operator=(PosixFile&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        std::swap(m_observer, other.m_observer);
        return *this;
    }
    ~PosixFile();

    [[nodiscard]] explicit operator bool() const { return m_descriptor >= 0; }
    [[nodiscard]] int Descriptor() const { return m_descriptor; }
    /// The descriptor, for somebody else to close.
    [[nodiscard]] int Release() { return std::exchange(m_descriptor, -1); }

    /// Tells `observer`, which may be null and must outlive the file, of what follows.
    void Observe(TransferObserver* observer) { m_observer = observer; }

    /// The whole file in one piece, or TooLarge before anything is allocated.
    [[nodiscard]] bool Read(std::uint64_t maxSize, Image& image, FileError& error) const;
    [[nodiscard]] bool Holds(std::string_view bytes, bool& holds, FileError& error) const;
    [[nodiscard]] bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) const;
    [[nodiscard]] bool Flush(FileError& error) const;

  private:
    int m_descriptor = -1;
    TransferObserver* m_observer = nullptr;
};

/// How long a program waits for another one's lock before it says so.
inline constexpr std::chrono::milliseconds kLockWait{5000};
/// Takes the advisory lock of an open file or folder, which goes with its descriptor. Busy after `wait`; true where the
/// file system has no locks.
[[nodiscard]] bool LockOpenFile(const PosixFile& file, LockKind kind, std::chrono::milliseconds wait, FileError& error);

/// Flushes the names in a folder to the disk.
[[nodiscard]] bool FlushFolder(const Path& folder, FileError& error);
inline constexpr unsigned kPrivateFolder = 0700;
inline constexpr unsigned kSharedFolder = 0777;  // less the user's umask
/// Makes the folder and those above it, known to the disk.
[[nodiscard]] bool MakeFolders(const Path& folder, unsigned mode, FileError& error);
/// Makes the pieces, one after the other, the file at `path`, through a second file that takes its name when its bytes
/// are on the disk; the name itself is there for good when the folder is flushed. Follows no link. The second file is
/// called `path` + `suffix`: no other writer may use that name meanwhile, and one that a stopped program left under it
/// is removed.
[[nodiscard]] bool PutFile(const Path& path, std::string_view suffix, std::initializer_list<std::string_view> pieces,
                           unsigned mode, FileError& error, TransferObserver* observer = nullptr);
/// PutFile, then flushes the folder.
[[nodiscard]] bool ReplaceFile(const Path& path, std::string_view suffix,
                               std::initializer_list<std::string_view> pieces, unsigned mode, FileError& error,
                               TransferObserver* observer = nullptr);

}  // namespace quillary
