#include "platform/posix/FolderScan.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <utility>

#include "admin/DatabasePath.h"
#include "db/ListedDatabase.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

namespace {

constexpr int kMostLevels = 8;  // the names in a root are level 1

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// Which folder it is, whatever its path.
using Identity = std::pair<dev_t, ino_t>;

bool Identify(const Folder& folder, Identity& identity) {
    struct stat status {};
    if (!folder || fstat(dirfd(folder.get()), &status) != 0) return false;
    identity = {status.st_dev, status.st_ino};
    return true;
}

Folder OpenFolder(int parent, const char* name, int flags) {
    const int descriptor = openat(parent, name, flags | O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    Folder folder(descriptor < 0 ? nullptr : fdopendir(descriptor));
    if (!folder && descriptor >= 0) close(descriptor);
    return folder;
}

class Scan {
  public:
    Scan(FileAccess& files, ScanReceiver& receiver) : m_files(files), m_receiver(receiver) {}

    void LookBelow(const std::vector<Path>& roots);

  private:
    /// False when the receiver has had enough.
    [[nodiscard]] bool LookInto(const Folder& folder, const Path& path, int level);
    [[nodiscard]] bool Descend(const Folder& parent, const Path& path, const std::string& name, int level);
    void LookAtFile(int folder, const Path& path, const char* name);

    FileAccess& m_files;
    ScanReceiver& m_receiver;
    std::vector<Identity> m_roots;
    dev_t m_device = 0;
};

void Scan::LookBelow(const std::vector<Path>& roots) {
    std::vector<std::pair<Folder, Path>> open;
    for (const Path& root : roots) {
        Folder folder = OpenFolder(AT_FDCWD, root.c_str(), 0);  // here a link is the user's own choice
        if (!folder && errno == EACCES) m_receiver.Unreadable(root);
        Identity identity;
        if (!Identify(folder, identity)) continue;
        if (std::find(m_roots.begin(), m_roots.end(), identity) != m_roots.end()) continue;
        m_roots.push_back(identity);
        open.emplace_back(std::move(folder), root);
    }
    for (std::size_t i = 0; i < open.size(); ++i) {
        m_device = m_roots[i].first;
        if (!LookInto(open[i].first, open[i].second, 1)) return;
    }
}

bool Scan::LookInto(const Folder& folder, const Path& path, int level) {
    std::vector<std::string> below;  // looked into last: what lies near the root is what a user expects first
    while (const dirent* entry = readdir(folder.get())) {
        if (!m_receiver.GoOn()) return false;
        const std::string_view name = entry->d_name;
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat status {};
            if (fstatat(dirfd(folder.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
            type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
        }
        if (type == DT_DIR && !name.starts_with('.') && level < kMostLevels) {
            below.emplace_back(name);
        } else if (type == DT_REG && EndsInExtension(name)) {
            LookAtFile(dirfd(folder.get()), path, entry->d_name);
        }
    }
    return std::all_of(below.begin(), below.end(),
                       [&](const std::string& name) { return Descend(folder, path / name, name, level + 1); });
}

bool Scan::Descend(const Folder& parent, const Path& path, const std::string& name, int level) {
    const Folder folder = OpenFolder(dirfd(parent.get()), name.c_str(), O_NOFOLLOW);
    if (!folder && errno == EACCES) m_receiver.Unreadable(path);
    Identity identity;
    if (!Identify(folder, identity) || identity.first != m_device) return true;
    if (std::find(m_roots.begin(), m_roots.end(), identity) != m_roots.end()) return true;
    return LookInto(folder, path, level);
}

void Scan::LookAtFile(int folder, const Path& path, const char* name) {
    // Something else may have taken the name since: no waiting for a pipe's writer, no terminal of our own.
    const PosixFile file(openat(folder, name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file || fstat(file.Descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    const ReadPart read = [&file](std::uint64_t offset, char* to, std::size_t size) {
        ssize_t count = 0;
        do {
            count = pread(file.Descriptor(), to, size, static_cast<off_t>(offset));
        } while (count < 0 && errno == EINTR);
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    };
    const auto size = static_cast<std::uint64_t>(status.st_size);
    const Path filePath = path / name;
    if (!IsListedDatabase(read, size) && !m_files.CanRead(m_files.RecoveryPath(filePath))) return;
    m_receiver.Found({filePath, size, status.st_mtim.tv_sec});
}

}  // namespace

void ScanFolders(const std::vector<Path>& roots, FileAccess& files, ScanReceiver& receiver) {
    Scan(files, receiver).LookBelow(roots);
}

}  // namespace quillary
