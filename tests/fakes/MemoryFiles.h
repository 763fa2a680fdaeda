// A disk in memory that never fails, for tests that are not about the disk.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "db/FileAccess.h"

namespace quillary {

class MemoryFiles : public FileAccess {
  public:
    std::map<std::string, std::string> contents;  // by path

    std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) override;
    std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) override;
    bool Remove(const Path& path, FileError& error) override;
    bool Rename(const Path& from, const Path& to, FileError& error) override;
    bool CanRead(const Path& path) override { return contents.contains(path.string()); }
    bool CanWrite(const Path& path) override { return contents.contains(path.string()); }
    Path RecoveryPath(const Path& path) override { return path.string() + ".recovery"; }
    bool ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) override;
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;

  private:
    [[nodiscard]] std::string* Find(const Path& path, FileError& error);

    std::mutex m_mutex;  // a save's flush on its own thread removes the recovery copy
};

}  // namespace quillary
