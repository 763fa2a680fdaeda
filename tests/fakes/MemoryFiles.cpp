#include "tests/fakes/MemoryFiles.h"

namespace quillary {

namespace {

class MemoryFile : public LockedFile {
  public:
    explicit MemoryFile(std::string& bytes) : m_bytes(bytes) {}
    bool Stamp(FileStamp& stamp, FileError&) override {
        stamp = {1, 1, m_bytes.size(), 0, true};  // no clock: the bytes decide whether the file changed
        return true;
    }
    bool Read(Image& image, FileError&) override {
        image = Image(m_bytes);
        return true;
    }
    bool Holds(std::string_view bytes, bool& holds, FileError&) override {
        holds = m_bytes == bytes;
        return true;
    }
    bool Reserve(std::uint64_t, FileError&) override { return true; }
    bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError&) override {
        if (m_bytes.size() < offset + bytes.size()) m_bytes.resize(offset + bytes.size());
        m_bytes.replace(offset, bytes.size(), bytes);
        return true;
    }
    bool Truncate(std::uint64_t size, FileError&) override {
        m_bytes.resize(size);
        return true;
    }
    bool Flush(FileError&) override { return true; }

  private:
    std::string& m_bytes;
};

}  // namespace

std::string* MemoryFiles::Find(const Path& path, FileError& error) {
    const auto found = contents.find(path.string());
    if (found != contents.end()) return &found->second;
    error.kind = FileError::Kind::NotFound;
    return nullptr;
}

std::unique_ptr<LockedFile> MemoryFiles::Open(const Path& path, LockKind, FileError& error) {
    const std::lock_guard lock(m_mutex);
    std::string* found = Find(path, error);
    return found ? std::make_unique<MemoryFile>(*found) : nullptr;
}

std::unique_ptr<LockedFile> MemoryFiles::Create(const Path& path, FileError& error) {
    const std::lock_guard lock(m_mutex);
    const auto [at, isNew] = contents.try_emplace(path.string());
    if (!isNew) {
        error.kind = FileError::Kind::Exists;
        return nullptr;
    }
    return std::make_unique<MemoryFile>(at->second);
}

bool MemoryFiles::Remove(const Path& path, FileError&) {
    const std::lock_guard lock(m_mutex);
    contents.erase(path.string());
    return true;
}

bool MemoryFiles::Rename(const Path& from, const Path& to, FileError& error) {
    const std::lock_guard lock(m_mutex);
    if (!Find(from, error)) return false;
    if (contents.contains(to.string())) {
        error.kind = FileError::Kind::Exists;
        return false;
    }
    auto node = contents.extract(from.string());
    node.key() = to.string();
    contents.insert(std::move(node));
    return true;
}

bool MemoryFiles::ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) {
    const std::lock_guard lock(m_mutex);
    const std::string* found = Find(recoveryPath, error);
    if (found) image = Image(*found);
    return found != nullptr;
}

bool MemoryFiles::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body, FileError&) {
    const std::lock_guard lock(m_mutex);
    contents[recoveryPath.string()] = std::string(head).append(body);
    return true;
}

}  // namespace quillary
