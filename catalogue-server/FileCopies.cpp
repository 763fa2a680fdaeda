#include "catalogue-server/FileCopies.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <utility>

#include "catalogue-server/DatabaseFile.h"
#include "catalogue-server/Package.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

constexpr std::uint64_t kMostBytes = 512u << 20;
constexpr std::uint64_t kMostKeptBytes = 128u << 20;
constexpr std::size_t kMostKept = 8192;
constexpr std::size_t kMostJobs = 1024;
constexpr std::chrono::milliseconds kBetweenTries{5};
// Room comes when a client has read to the end, which takes longer than another program holds a lock.
constexpr std::chrono::milliseconds kBetweenTriesForRoom{100};

std::int64_t NowMs() {
    using std::chrono::steady_clock;
    return std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool StampOf(const PosixFile& file, FileStamp& stamp) {
    struct stat status {};
    if (fstat(file.Descriptor(), &status) != 0) return false;
    stamp = MakeStamp(status);
    return true;
}

CopyResult Failed(const FileError& error) {
    const bool mayPass = error.kind == FileError::Kind::Busy || error.kind == FileError::Kind::Recovery;
    return {mayPass ? CopyOutcome::Busy : CopyOutcome::Gone, nullptr};
}

// What was an archive when it was listed and is none now is being written by a program that knows of no locks.
CopyResult FailedArchive(const FileError& error) {
    if (error.kind == FileError::Kind::NotAFile) return {CopyOutcome::Busy, nullptr};
    return Failed(error);
}

}  // namespace

std::string WantedFile::Key() const { return file ? publication->fileId + "/" + file->id : publication->fileId; }

FileCopies::FileCopies() : m_bytes(std::make_shared<std::atomic<std::uint64_t>>(0)), m_thread([this] { Work(); }) {}

std::shared_ptr<const FileCopy> FileCopies::Kept(const WantedFile& wanted) {
    FileError error;
    FileStamp stamp;
    const PosixFile file = wanted.catalogue->folder->OpenFile(wanted.publication->path, error);
    if (!file || !StampOf(file, stamp)) return nullptr;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto kept = m_keptByKey.find(wanted.Key());
    if (kept == m_keptByKey.end() || !kept->second->stamp.SameState(stamp)) return nullptr;
    m_kept.splice(m_kept.begin(), m_kept, kept->second);
    return kept->second->copy;
}

bool FileCopies::Make(WantedFile wanted, Receiver receiver) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stopping) return false;
    std::string key = wanted.Key();
    auto job = m_jobs.find(key);
    if (job == m_jobs.end()) {
        if (m_jobs.size() >= kMostJobs) return false;
        job = m_jobs.emplace(std::move(key), Job{std::move(wanted), {}, NowMs() + kLockWait.count()}).first;
    }
    job->second.receivers.push_back(std::move(receiver));
    m_isAskedAnew = true;
    m_changed.notify_one();
    return true;
}

void FileCopies::Stop() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
    if (m_thread.joinable()) m_thread.join();
}

void FileCopies::Work() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        std::vector<std::pair<std::string, WantedFile>> round;
        for (const auto& [key, job] : m_jobs) round.emplace_back(key, job.wanted);
        if (round.empty()) return;
        m_isAskedAnew = false;
        bool isAnyBusy = false;
        auto pause = kBetweenTriesForRoom;
        for (const auto& [key, wanted] : round) {
            Made made;
            if (!m_stopping) {
                lock.unlock();
                made = TryToMake(wanted);
                lock.lock();
            }
            const auto job = m_jobs.find(key);
            if (made.result.outcome == CopyOutcome::Busy && !m_stopping && NowMs() < job->second.deadlineMs) {
                isAnyBusy = true;
                if (!made.lacksRoom) pause = kBetweenTries;
                continue;
            }
            if (made.result.copy) Keep(key, made);
            const std::vector<Receiver> receivers = std::move(job->second.receivers);
            m_jobs.erase(job);
            lock.unlock();
            for (const Receiver& receiver : receivers) receiver(made.result);
            lock.lock();
        }
        if (isAnyBusy) m_changed.wait_for(lock, pause, [this] { return m_stopping || m_isAskedAnew; });
    }
}

FileCopies::Made FileCopies::TryToMake(const WantedFile& wanted) {
    const auto& [catalogue, publication, file] = wanted;
    FileError error;
    Made made;
    PosixFile source = catalogue->folder->OpenFile(publication->path, error);
    if (!source) {
        made.result = Failed(error);
        return made;
    }
    // Before anything is read: who waits for room would read a large file again and again.
    struct stat status {};
    const bool isThere = fstat(source.Descriptor(), &status) == 0;
    if (!isThere || !HasRoomFor(file ? file->size : static_cast<std::uint64_t>(status.st_size))) {
        made.lacksRoom = isThere;
        return made;
    }
    if (file) {
        made = MakePackageFile(std::move(source), *file);
    } else if (publication->kind == PublicationKind::Package) {
        made = MakePackage(std::move(source));
    } else {
        WholeDatabase database;
        const Path path = catalogue->folder->Location() / publication->path;
        if (ReadWholeDatabase(std::move(source), path, database, error)) {
            made.stamp = database.stamp;
            made.image = std::move(database.image);
        } else {
            made.result = Failed(error);
        }
    }
    if (!made.image) return made;
    made.result.copy = Counted(std::move(made.image));
    made.result.outcome = made.result.copy ? CopyOutcome::Done : CopyOutcome::Busy;
    made.lacksRoom = !made.result.copy;
    return made;
}

FileCopies::Made FileCopies::MakePackageFile(PosixFile source, const PackageFile& file) {
    FileError error;
    Made made;
    auto package = Package::Open(std::move(source), error);
    if (!package) {
        made.result = FailedArchive(error);
        return made;
    }
    made.stamp = package->Stamp();
    made.result.outcome = CopyOutcome::Gone;
    auto bytes = std::make_shared<Image>();
    // By its id: the archive may have been packed anew since it was listed.
    for (const PackageFile& now : package->Files()) {
        if (now.id != file.id) continue;
        if (!HasRoomFor(now.size)) {
            made.result.outcome = CopyOutcome::Busy;
            made.lacksRoom = true;
        } else if (package->Unpack(now, *bytes, error)) {
            made.image = std::move(bytes);
        }
        break;
    }
    return made;
}

FileCopies::Made FileCopies::MakePackage(PosixFile source) {
    FileError error;
    Made made;
    // Looks whether it is whole, and takes its lock, which is held for as long as one of the two descriptors is open.
    const auto package = Package::Open(PosixFile(fcntl(source.Descriptor(), F_DUPFD_CLOEXEC, 0)), error);
    if (!package) {
        made.result = FailedArchive(error);
        return made;
    }
    FileStamp after;
    auto bytes = std::make_shared<Image>();
    if (!source.Read(kLargestPublished, *bytes, error) || !StampOf(source, after) ||
        !after.SameState(package->Stamp())) {
        return made;
    }
    made.stamp = package->Stamp();
    made.image = std::move(bytes);
    return made;
}

bool FileCopies::HasRoomFor(std::uint64_t size) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::uint64_t with = m_bytes->load() + size;
    if (with <= kMostBytes) return true;
    // What is being sent stays; when that is too much, this file waits.
    if (with > kMostBytes + m_keptBytes) return false;
    DropUntil(0);
    return m_bytes->load() + size <= kMostBytes;
}

std::shared_ptr<const FileCopy> FileCopies::Counted(std::shared_ptr<const Image> image) {
    const std::uint64_t size = image->Size();
    if (!HasRoomFor(size)) return nullptr;
    auto copy = FileCopy::Make(std::move(image));
    if (!copy) return nullptr;
    *m_bytes += size;
    const FileCopy* plain = copy.get();
    return {plain, [copy, bytes = m_bytes, size](const FileCopy*) mutable {
                copy.reset();
                *bytes -= size;
            }};
}

void FileCopies::Keep(const std::string& key, const Made& made) {
    if (const auto old = m_keptByKey.find(key); old != m_keptByKey.end()) {
        m_keptBytes -= old->second->copy->Size();
        m_kept.erase(old->second);
        m_keptByKey.erase(old);
    }
    // A write right after it may not show in the stamp.
    const std::uint64_t size = made.result.copy->Size();
    if (made.stamp.mayHideAWrite || size > kMostKeptBytes) return;
    DropUntil(kMostKeptBytes - size);
    m_kept.push_front({key, made.stamp, made.result.copy});
    m_keptByKey[key] = m_kept.begin();
    m_keptBytes += size;
}

void FileCopies::DropUntil(std::uint64_t mostBytes) {
    while (!m_kept.empty() && (m_keptBytes > mostBytes || m_kept.size() >= kMostKept || mostBytes == 0)) {
        m_keptBytes -= m_kept.back().copy->Size();
        m_keptByKey.erase(m_kept.back().key);
        m_kept.pop_back();
    }
}

}  // namespace quillary
