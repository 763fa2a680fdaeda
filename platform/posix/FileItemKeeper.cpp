#include "platform/posix/FileItemKeeper.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/PosixFile.h"

namespace quillary {

namespace {

constexpr unsigned kPrivateFile = 0600;

Path CalendarFolder(const Path& dataFolder) { return dataFolder / "quillary" / "calendar"; }
Path ContactsFolder(const Path& dataFolder) { return dataFolder / "quillary" / "contacts"; }

// The file gets its name when it is whole, so that whatever stops the program leaves no part of one. The disk may have
// its bytes later: many items are flushed at once. What a power cut then leaves is empty. False when it cannot be
// written; another program that was faster with the same item has made the same file.
bool WriteNew(const Path& path, const std::string& text) {
    FileError untold;
    const PosixFile file(::open(path.parent_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kPrivateFile));
    if (!file) {  // a file system without nameless files
        return PutFile(path, "." + std::to_string(::getpid()), {text}, kPrivateFile, untold);
    }
    if (!file.WriteAt(0, text, untold)) return false;
    const std::string nameless = "/proc/self/fd/" + std::to_string(file.Descriptor());
    return ::linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0 || errno == EEXIST;
}

}  // namespace

FileItemKeeper::~FileItemKeeper() {
    if (m_files.empty()) return;
    const PosixFile folder(::open(m_dataFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) (void)::syncfs(folder.Descriptor());
}

bool FileItemKeeper::LogOn() {
    for (const Path& folder : {CalendarFolder(m_dataFolder), ContactsFolder(m_dataFolder)}) {
        FileError error;
        if (MakeFolders(folder, kPrivateFolder, error) && (::access(folder.c_str(), W_OK | X_OK) == 0 || Fail(error))) {
            continue;
        }
        m_reason = "the folder " + folder.string() + " cannot be written: " + error.reason;
        return false;
    }
    return true;
}

bool FileItemKeeper::KeepEvent(const std::string& text, const std::string& uid) {
    return Keep(CalendarFolder(m_dataFolder) / (uid + ".ics"), text);
}

bool FileItemKeeper::KeepCard(const std::string& text, const std::string& uid) {
    return Keep(ContactsFolder(m_dataFolder) / (uid + ".vcf"), text);
}

bool FileItemKeeper::Keep(const Path& path, const std::string& text) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) return false;  // nothing that an export has made, and not to be replaced
        if (status.st_size == 0 && (::unlink(path.c_str()) != 0 || !WriteNew(path, text))) return false;
    } else if (errno != ENOENT || !WriteNew(path, text)) {
        return false;
    }
    m_files.push_back(path);
    return true;
}

}  // namespace quillary
