// Makes copies of published files on a thread of its own, as that may wait for another program's lock, and keeps those
// that were asked for last.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "catalogue-server/Catalogue.h"
#include "catalogue-server/FileCopy.h"

namespace quillary {

/// A database or whole package, or with `file` one file inside a package.
struct WantedFile {
    std::shared_ptr<const Catalogue> catalogue;
    std::shared_ptr<const Publication> publication;
    const PackageFile* file = nullptr;

    [[nodiscard]] std::string Key() const;
};

enum class CopyOutcome : std::uint8_t { Done, Gone, Busy };
struct CopyResult {
    CopyOutcome outcome = CopyOutcome::Busy;
    std::shared_ptr<const FileCopy> copy;
};

class FileCopies {
  public:
    using Receiver = std::function<void(const CopyResult&)>;

    FileCopies();
    ~FileCopies() { Stop(); }
    FileCopies(const FileCopies&) = delete;
    FileCopies& operator=(const FileCopies&) = delete;

    /// The copy that is kept, when the file is still as it was copied. Never waits.
    [[nodiscard]] std::shared_ptr<const FileCopy> Kept(const WantedFile& wanted);
    /// Calls `receiver` once, on the other thread. False, and no call, when too many wait already or all is stopping.
    [[nodiscard]] bool Make(WantedFile wanted, Receiver receiver);
    /// Who waits is told Busy. No call of a receiver comes after this.
    void Stop();

  private:
    struct KeptCopy {
        std::string key;
        FileStamp stamp;
        std::shared_ptr<const FileCopy> copy;
    };
    struct Job {
        WantedFile wanted;
        std::vector<Receiver> receivers;
        std::int64_t deadlineMs = 0;
    };
    struct Made {
        CopyResult result;
        FileStamp stamp;
        std::shared_ptr<const Image> image;  // until it is the copy
        bool lacksRoom = false;
    };

    void Work();
    [[nodiscard]] Made TryToMake(const WantedFile& wanted);
    [[nodiscard]] Made MakePackageFile(PosixFile source, const PackageFile& file);
    [[nodiscard]] Made MakePackage(PosixFile source);
    /// Lets go of the copies that are kept when that makes room.
    [[nodiscard]] bool HasRoomFor(std::uint64_t size);
    [[nodiscard]] std::shared_ptr<const FileCopy> Counted(std::shared_ptr<const Image> image);
    void Keep(const std::string& key, const Made& made);
    void DropUntil(std::uint64_t mostBytes);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    bool m_isAskedAnew = false;
    std::unordered_map<std::string, Job> m_jobs;
    std::list<KeptCopy> m_kept;  // the one asked for last is the first
    std::unordered_map<std::string, std::list<KeptCopy>::iterator> m_keptByKey;
    std::uint64_t m_keptBytes = 0;
    // Of all copies, also those that are only being sent any more.
    std::shared_ptr<std::atomic<std::uint64_t>> m_bytes;
    std::thread m_thread;
};

}  // namespace quillary
