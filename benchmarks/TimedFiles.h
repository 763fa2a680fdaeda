// A door to the disk that passes everything on and measures what a save spends on being safe: the recovery copy and the
// flushes.
#pragma once

#include "benchmarks/Figures.h"
#include "db/FileAccess.h"

namespace quillary {

class TimedFiles : public FileAccess {
  public:
    TimedFiles(FileAccess& files, TimeSource clock) : clock(clock), m_files(files) {}

    const TimeSource clock;
    // Seconds since the last Reset.
    double recoveryCopy = 0;  // made, written, flushed and removed
    double flush = 0;         // of the database file
    double rewrite = 0;       // of the database file, without its flush
    void Reset() { recoveryCopy = flush = rewrite = 0; }

    std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) override;
    std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) override;
    bool Remove(const Path& path, FileError& error) override;
    bool CanRead(const Path& path) override { return m_files.CanRead(path); }
    bool CanWrite(const Path& path) override { return m_files.CanWrite(path); }
    /// A save asks for it right before it makes the head of the recovery copy.
    Path CanonicalPath(const Path& path) override;
    Path RecoveryPath(const Path& path) override { return m_files.RecoveryPath(path); }
    bool ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) override {
        return m_files.ReadRecovery(recoveryPath, image, error);
    }
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;

  private:
    FileAccess& m_files;
    double m_recoveryBegun = 0;
};

}  // namespace quillary
