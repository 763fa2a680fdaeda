#include "benchmarks/TimedFiles.h"

namespace quillary {

namespace {

class Timed {
  public:
    Timed(double& total, TimeSource clock) : m_total(total), m_clock(clock), m_begun(clock()) {}
    ~Timed() { m_total += m_clock() - m_begun; }
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;

  private:
    double& m_total;
    TimeSource m_clock;
    double m_begun;
};

class TimedFile : public LockedFile {
  public:
    TimedFile(std::unique_ptr<LockedFile> file, TimedFiles& times) : m_file(std::move(file)), m_times(times) {}
    bool Stamp(FileStamp& stamp, FileError& error) override { return m_file->Stamp(stamp, error); }
    bool Read(Image& image, FileError& error) override { return m_file->Read(image, error); }
    bool Holds(std::string_view bytes, bool& holds, FileError& error) override {
        return m_file->Holds(bytes, holds, error);
    }
    bool Reserve(std::uint64_t size, FileError& error) override {
        const Timed timed(m_times.rewrite, m_times.clock);
        return m_file->Reserve(size, error);
    }
    bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) override {
        const Timed timed(m_times.rewrite, m_times.clock);
        return m_file->WriteAt(offset, bytes, error);
    }
    bool Truncate(std::uint64_t size, FileError& error) override {
        const Timed timed(m_times.rewrite, m_times.clock);
        return m_file->Truncate(size, error);
    }
    bool Flush(FileError& error) override {
        const Timed timed(m_times.flush, m_times.clock);
        return m_file->Flush(error);
    }

  private:
    std::unique_ptr<LockedFile> m_file;
    TimedFiles& m_times;
};

std::unique_ptr<LockedFile> MakeTimed(std::unique_ptr<LockedFile> file, TimedFiles& times) {
    if (!file) return nullptr;
    return std::make_unique<TimedFile>(std::move(file), times);
}

}  // namespace

std::unique_ptr<LockedFile> TimedFiles::Open(const Path& path, LockKind lock, FileError& error) {
    return MakeTimed(m_files.Open(path, lock, error), *this);
}

std::unique_ptr<LockedFile> TimedFiles::Create(const Path& path, FileError& error) {
    return MakeTimed(m_files.Create(path, error), *this);
}

bool TimedFiles::Remove(const Path& path, FileError& error) {
    const Timed timed(recoveryCopy, clock);
    return m_files.Remove(path, error);
}

Path TimedFiles::CanonicalPath(const Path& path) {
    m_recoveryBegun = clock();
    return m_files.CanonicalPath(path);
}

bool TimedFiles::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                               FileError& error) {
    const bool written = m_files.WriteRecovery(recoveryPath, head, body, error);
    recoveryCopy += clock() - m_recoveryBegun;
    return written;
}

}  // namespace quillary
