#include "tests/fakes/FaultyFiles.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace quillary {

class FaultyFile : public LockedFile {
  public:
    FaultyFile(FaultyFiles& files, FaultyFiles::NodePtr node, LockKind lock)
        : m_files(files), m_node(std::move(node)), m_lock(lock) {
        if (m_lock == LockKind::Shared) ++m_node->sharedLocks;
        if (m_lock == LockKind::Exclusive) m_node->exclusiveLock = true;
    }
    ~FaultyFile() override {
        if (m_lock == LockKind::Shared) --m_node->sharedLocks;
        if (m_lock == LockKind::Exclusive) m_node->exclusiveLock = false;
    }
    bool Stamp(FileStamp& stamp, FileError& error) override {
        if (m_files.Fails(error)) return false;
        stamp = {1, m_node->inode, m_node->seen.size(), m_node->modified, 0, m_files.mayHideAWrite};
        return true;
    }
    bool Read(Image& image, FileError& error) override {
        if (m_files.Fails(error)) return false;
        image = Image(m_node->seen);
        return true;
    }
    bool Holds(std::string_view bytes, bool& holds, FileError& error) override {
        if (m_files.Fails(error)) return false;
        holds = m_node->seen == bytes;
        return true;
    }
    bool Reserve(std::uint64_t size, FileError& error) override {
        const bool fails = m_files.Fails(error);
        if (!fails || m_files.m_calls == m_files.m_failAt) {
            m_files.SetLength(*m_node, std::max<std::uint64_t>(m_node->seen.size(), fails ? size / 2 : size));
        }
        return !fails;
    }
    bool WriteAt(std::uint64_t offset, std::string_view bytes, FileError& error) override {
        return m_files.Write(*m_node, offset, bytes, error);
    }
    bool Truncate(std::uint64_t size, FileError& error) override {
        if (m_files.Fails(error)) return false;
        m_files.SetLength(*m_node, size);
        return true;
    }
    bool Flush(FileError& error) override { return m_files.Flush(m_node, error); }

  private:
    FaultyFiles& m_files;
    FaultyFiles::NodePtr m_node;
    LockKind m_lock;
};

FaultyFiles::NodePtr FaultyFiles::NewNode(std::string_view bytes) {
    auto node = std::make_shared<Node>();
    node->inode = ++m_lastInode;
    node->modified = ++m_time;
    node->onDisk = node->seen = bytes;
    return node;
}

void FaultyFiles::Put(const Path& path, std::string_view bytes, bool keepTime) {
    NodePtr& node = m_names[path.string()];
    if (!node) node = NewNode(bytes);
    node->onDisk = node->seen = bytes;
    node->unflushed.clear();
    if (!keepTime) node->modified = ++m_time;
    m_namesOnDisk[path.string()] = node;
}

void FaultyFiles::Replace(const Path& path, std::string_view bytes) {
    m_names.erase(path.string());
    Put(path, bytes);
}

std::optional<std::string> FaultyFiles::BytesOf(const Path& path) const {
    const auto found = m_names.find(path.string());
    if (found == m_names.end()) return std::nullopt;
    return found->second->seen;
}

void FaultyFiles::FailAt(int call, Fail which) {
    m_calls = 0;
    m_failAt = call;
    m_fail = which;
}

bool FaultyFiles::Fails(FileError& error) {
    ++m_calls;
    const bool fails = m_calls == m_failAt || (m_failAt > 0 && m_calls > m_failAt && m_fail == Fail::ThisCallAndLater);
    if (fails) error = {FileError::Kind::Full, "No space left on device"};
    return fails;
}

std::unique_ptr<LockedFile> FaultyFiles::Open(const Path& path, LockKind lock, FileError& error) {
    if (Fails(error)) return nullptr;
    const auto found = m_names.find(path.string());
    if (found == m_names.end()) {
        error = {FileError::Kind::NotFound, "No such file or directory"};
        return nullptr;
    }
    const Node& node = *found->second;
    if (node.exclusiveLock || (lock == LockKind::Exclusive && node.sharedLocks > 0)) {
        error = {FileError::Kind::Busy, "Locked"};
        return nullptr;
    }
    return std::make_unique<FaultyFile>(*this, found->second, lock);
}

std::unique_ptr<LockedFile> FaultyFiles::Create(const Path& path, FileError& error) {
    if (Fails(error)) return nullptr;
    if (m_names.contains(path.string())) {
        error = {FileError::Kind::Exists, "File exists"};
        return nullptr;
    }
    const NodePtr node = NewNode({});
    Name(path.string(), node);
    return std::make_unique<FaultyFile>(*this, node, LockKind::Exclusive);
}

bool FaultyFiles::Remove(const Path& path, FileError& error) {
    if (Fails(error)) return false;
    if (m_names.contains(path.string())) Name(path.string(), nullptr);
    return true;
}

void FaultyFiles::Name(const std::string& name, NodePtr node) {
    ++m_changes;
    if (node) {
        m_names[name] = node;
    } else {
        m_names.erase(name);
    }
    m_unflushedNames.push_back({name, std::move(node)});
}

bool FaultyFiles::ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) {
    if (Fails(error)) return false;
    const auto bytes = BytesOf(recoveryPath);
    if (!bytes) {
        error = {FileError::Kind::NotFound, "No such file or directory"};
        return false;
    }
    image = Image(*bytes);
    return true;
}

bool FaultyFiles::WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                                FileError& error) {
    if (Fails(error)) return false;
    const NodePtr node = NewNode({});
    if (!Write(*node, 0, head, error) || !Write(*node, head.size(), body, error) || !Flush(node, error)) return false;
    Name(recoveryPath.string(), node);
    return Flush(node, error);
}

bool FaultyFiles::Write(Node& node, std::uint64_t offset, std::string_view bytes, FileError& error) {
    const bool fails = Fails(error);
    if (fails) bytes = bytes.substr(0, m_calls == m_failAt ? bytes.size() / 2 / m_blockSize * m_blockSize : 0);
    while (!bytes.empty()) {
        const std::size_t count = std::min<std::size_t>(bytes.size(), m_blockSize - offset % m_blockSize);
        Step step;
        step.offset = offset;
        step.bytes = bytes.substr(0, count);
        if (offset + count > node.seen.size()) SetLength(node, offset + count);
        node.seen.replace(offset, count, step.bytes);
        node.unflushed.push_back(std::move(step));
        node.modified = ++m_time;
        ++m_changes;
        offset += count;
        bytes.remove_prefix(count);
    }
    return !fails;
}

void FaultyFiles::SetLength(Node& node, std::uint64_t length) {
    Step step;
    step.length = length;
    node.unflushed.push_back(std::move(step));
    node.seen.resize(length);
    node.modified = ++m_time;
    ++m_changes;
}

bool FaultyFiles::Flush(const NodePtr& node, FileError& error) {
    auto& steps = node->unflushed;
    if (Fails(error)) {
        if (m_calls == m_failAt) std::for_each(steps.begin(), steps.end(), [](Step& s) { s.missedByFlush = true; });
        return false;
    }
    // A step that an earlier flush missed may still be on the disk or not, unless a later one stands in its place.
    std::vector<Step> missed;
    std::vector<Step> flushed;
    for (Step& step : steps) {
        if (!step.missedByFlush) {
            std::erase_if(missed, [&step](const Step& m) {
                return m.length.has_value() == step.length.has_value() && m.offset == step.offset;
            });
        }
        (step.missedByFlush ? missed : flushed).push_back(std::move(step));
    }
    node->onDisk = Apply(std::move(node->onDisk), flushed);
    steps = std::move(missed);
    for (const auto& [name, named] : m_names) {
        if (named != node) continue;
        m_namesOnDisk[name] = node;
        std::erase_if(m_unflushedNames, [&name = name](const NameStep& step) { return step.name == name; });
    }
    return true;
}

std::string FaultyFiles::Apply(std::string bytes, const std::vector<Step>& steps) {
    std::uint64_t length = bytes.size();
    for (const Step& step : steps) {
        if (step.length) {
            if (*step.length < length) bytes.resize(std::min<std::size_t>(bytes.size(), *step.length));
            length = *step.length;
        } else {
            bytes.resize(std::max<std::size_t>(bytes.size(), step.offset + step.bytes.size()));
            bytes.replace(step.offset, step.bytes.size(), step.bytes);
        }
    }
    bytes.resize(length);
    return bytes;
}

void FaultyFiles::ForEachCrash(const std::function<void(FaultyFiles&)>& look) const {
    std::vector<NodePtr> nodes;
    const auto note = [&nodes](const NodePtr& node) {
        if (node && std::find(nodes.begin(), nodes.end(), node) == nodes.end()) nodes.push_back(node);
    };
    for (const auto& [name, node] : m_namesOnDisk) note(node);
    for (const NameStep& step : m_unflushedNames) note(step.node);
    std::size_t count = m_unflushedNames.size();
    for (const NodePtr& node : nodes) count += node->unflushed.size();

    std::vector<std::vector<bool>> survivors;
    const auto add = [&](auto survives) {
        std::vector<bool>& subset = survivors.emplace_back(count);
        for (std::size_t k = 0; k < count; ++k) subset[k] = survives(k);
    };
    constexpr std::size_t kFewEnough = 8;
    if (count <= kFewEnough) {
        for (std::size_t mask = 0; mask < std::size_t{1} << count; ++mask) {
            add([mask](std::size_t k) { return (mask >> k & 1) != 0; });
        }
    } else {
        for (std::size_t one = 0; one <= count; ++one) {  // `count` itself: none and all
            add([one](std::size_t k) { return k == one; });
            add([one](std::size_t k) { return k != one; });
        }
        std::mt19937 random(static_cast<unsigned>(count));
        for (int i = 0; i < 100; ++i) add([&random](std::size_t) { return (random() & 1) != 0; });
    }
    for (const std::vector<bool>& survives : survivors) {
        FaultyFiles disk(m_blockSize);
        disk.m_lastInode = m_lastInode;
        disk.m_time = m_time;
        auto names = m_namesOnDisk;
        std::size_t k = 0;
        for (const NameStep& step : m_unflushedNames) {
            if (!survives[k++]) continue;
            if (step.node) {
                names[step.name] = step.node;
            } else {
                names.erase(step.name);
            }
        }
        std::map<NodePtr, NodePtr> after;
        for (const NodePtr& node : nodes) {
            std::vector<Step> steps;
            std::copy_if(node->unflushed.begin(), node->unflushed.end(), std::back_inserter(steps),
                         [&](const Step&) { return survives[k++]; });
            const NodePtr copy = after[node] = std::make_shared<Node>();
            copy->inode = node->inode;
            copy->modified = node->modified;
            copy->onDisk = copy->seen = Apply(node->onDisk, steps);
        }
        for (const auto& [name, node] : names) disk.m_names[name] = disk.m_namesOnDisk[name] = after[node];
        look(disk);
    }
}

}  // namespace quillary
