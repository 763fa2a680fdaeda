// A disk that fails on demand and that a power failure may rob of anything not flushed.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "db/FileAccess.h"

namespace quillary {

class FaultyFiles : public FileAccess {
  public:
    enum class Fail { ThisCall, ThisCallAndLater };

    explicit FaultyFiles(std::size_t blockSize = 512) : m_blockSize(blockSize) {}

    /// Another program's write: on the disk at once, into the same inode when the file is there. `keepTime` leaves the
    /// time of modification as it was.
    void Put(const Path& path, std::string_view bytes, bool keepTime = false);
    /// Another program's new file under an old name.
    void Replace(const Path& path, std::string_view bytes);
    /// What programs read, whether or not it is on the disk.
    [[nodiscard]] std::optional<std::string> BytesOf(const Path& path) const;

    /// Calls count from 1. A write that fails has done its half; one behind the first failure does nothing, as that
    /// program has ended.
    void FailAt(int call, Fail which);
    [[nodiscard]] int Calls() const { return m_calls; }
    /// Calls that changed something.
    [[nodiscard]] int Changes() const { return m_changes; }
    /// Whether stamps say that they may hide a write.
    bool mayHideAWrite = false;

    /// The disk after a power failure, for every subset of what was not flushed, or for each single loss, each single
    /// survivor and many a random subset when there are too many.
    void ForEachCrash(const std::function<void(FaultyFiles&)>& look) const;

    std::unique_ptr<LockedFile> Open(const Path& path, LockKind lock, FileError& error) override;
    std::unique_ptr<LockedFile> Create(const Path& path, FileError& error) override;
    bool Remove(const Path& path, FileError& error) override;
    bool CanRead(const Path& path) override { return m_names.contains(path.string()); }
    bool CanWrite(const Path& path) override { return CanRead(path); }
    Path RecoveryPath(const Path& path) override { return path.string() + ".recovery"; }
    bool ReadRecovery(const Path& recoveryPath, Image& image, FileError& error) override;
    /// In pieces, into a file that takes the name when it is flushed; a power failure may still take the name back.
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;

  private:
    friend class FaultyFile;

    // One step of a file's bytes or length on their way to the disk.
    struct Step {
        std::optional<std::uint64_t> length;  // else a block
        std::uint64_t offset = 0;
        std::string bytes;
        bool missedByFlush = false;  // a flush failed: the system takes it for written and will not try again
    };
    struct Node {
        std::uint64_t inode = 0;
        std::string onDisk;
        std::string seen;
        std::vector<Step> unflushed;
        std::int64_t modified = 0;
        int sharedLocks = 0;
        bool exclusiveLock = false;
    };
    using NodePtr = std::shared_ptr<Node>;
    struct NameStep {
        std::string name;
        NodePtr node;  // null: removed
    };

    [[nodiscard]] bool Fails(FileError& error);
    [[nodiscard]] NodePtr NewNode(std::string_view bytes);
    void Name(const std::string& name, NodePtr node);
    [[nodiscard]] bool Write(Node& node, std::uint64_t offset, std::string_view bytes, FileError& error);
    void SetLength(Node& node, std::uint64_t length);
    [[nodiscard]] bool Flush(const NodePtr& node, FileError& error);
    static std::string Apply(std::string bytes, const std::vector<Step>& steps);

    std::size_t m_blockSize;
    std::map<std::string, NodePtr> m_names;
    std::map<std::string, NodePtr> m_namesOnDisk;
    std::vector<NameStep> m_unflushedNames;
    std::uint64_t m_lastInode = 100;
    std::int64_t m_time = 1000;
    int m_calls = 0;
    int m_changes = 0;
    int m_failAt = 0;
    Fail m_fail = Fail::ThisCall;
};

}  // namespace quillary
