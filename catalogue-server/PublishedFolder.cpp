#include "catalogue-server/PublishedFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <string_view>

#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

constexpr int kAlways = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC;

}  // namespace

bool PublishedFolder::Open(const Path& path, PublishedFolder& folder, FileError& error) {
    PosixFile opened(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!opened || fstat(opened.Descriptor(), &status) != 0) return Fail(error);
    folder.m_location = path;
    folder.m_folder = std::move(opened);
    folder.m_stamp = MakeStamp(status);
    return true;
}

PosixFile PublishedFolder::OpenBeneath(std::string_view path, int flags) const {
    // Step by step, and no step may be a link: whatever takes a name's place meanwhile, the way stays below the folder.
    PosixFile above;
    for (;;) {
        const auto end = path.find('/');
        const std::string name(path.substr(0, end));
        if (name.empty() || name == "..") {
            errno = EINVAL;
            return {};
        }
        const int from = above ? above.Descriptor() : m_folder.Descriptor();
        if (end == path.npos) return PosixFile(openat(from, name.c_str(), flags));
        above = PosixFile(openat(from, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!above) return {};
        path.remove_prefix(end + 1);
    }
}

PosixFile PublishedFolder::OpenFile(const std::string& path, FileError& error) const {
    PosixFile file = OpenBeneath(path, kAlways);
    struct stat status {};
    if (!file || fstat(file.Descriptor(), &status) != 0) {
        Fail(error);
        return {};
    }
    if (S_ISREG(status.st_mode)) return file;
    error = SystemError(ENXIO);
    return {};
}

PosixFile PublishedFolder::OpenFolder(const std::string& path, FileError& error) const {
    PosixFile folder = OpenBeneath(path.empty() ? "." : path, kAlways | O_DIRECTORY);
    if (!folder) Fail(error);
    return folder;
}

}  // namespace quillary
