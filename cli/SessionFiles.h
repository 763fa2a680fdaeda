// The disk as a command uses it: remembers why it last refused to open or make a file, which the messages of a document
// leave out.
#pragma once

#include <memory>
#include <string>

#include "platform/posix/PosixFileAccess.h"

namespace quillary {

class SessionFiles : public PosixFileAccess {
  public:
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

    std::string m_reason;
};

}  // namespace quillary
