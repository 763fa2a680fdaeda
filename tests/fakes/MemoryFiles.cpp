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

std::unique_ptr<LockedFile> MemoryFiles::Open(const Path& path, LockKind, FileError& error) {
    const std::lock_guard lock(m_mutex);
    const auto found = contents.find(path.string());
    if (found == contents.end()) {
        error.kind = FileError::Kind::NotFound;
        return nullptr;
    }
    return std::make_unique<MemoryFile>(found->second);
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
    auto node = contents.extract(from.string());
    if (node.empty()) {
        error.kind = FileError::Kind::NotFound;
        return false;
    }
    node.key() = to.string();
    auto put = contents.insert(std::move(node));
    if (put.inserted) return true;
    put.node.key() = from.string();
    contents.insert(std::move(put.node));
    error.kind = FileError::Kind::Exists;
    return false;
}

bool MemoryFiles::ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) {
    const std::lock_guard lock(m_mutex);
    const auto found = contents.find(recoveryPath.string());
    if (found == contents.end()) {
        error.kind = FileError::Kind::NotFound;
        return false;
    }
    image = Image(found->second);
    return true;
}

bool MemoryFiles::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body, FileError&) {
    const std::lock_guard lock(m_mutex);
    contents[recoveryPath.string()] = std::string(head).append(body);
    return true;
}

}  // namespace quillary
