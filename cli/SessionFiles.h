// The disk as a command uses it: remembers why it last refused to open or make a file, which the messages of a document
// leave out, and shows how far reading and writing have come.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/Progress.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

class SessionFiles : public PosixFileAccess, private TransferObserver {
  public:
    explicit SessionFiles(bool showsProgress) : m_showsProgress(showsProgress) { Observe(*this); }

    std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) override {
        return Remember(PosixFileAccess::Open(path, lock, error), error);
    }
    std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) override {
        return Remember(PosixFileAccess::Create(path, error), error);
    }

    /// The system's text; empty when the last file was opened or made.
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

  private:
    std::unique_ptr<LockedFile> Remember(std::unique_ptr<LockedFile> file, const FileError& error) {
        m_reason = file ? std::string() : error.reason;
        return file;
    }

    void Moved(Transfer transfer, std::uint64_t done, std::uint64_t total) override {
        if (!m_progress)
            m_progress.emplace(transfer == Transfer::Reading ? "Reading" : "Writing", total, m_showsProgress);
        m_progress->Show(done);
    }
    void Ended() override { m_progress.reset(); }

    std::string m_reason;
    bool m_showsProgress;
    std::optional<Progress> m_progress;
};

}  // namespace quillary
