#include "catalogue-server/Package.h"

#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <unordered_set>

#include "catalogue-server/DatabaseFile.h"
#include "catalogue-server/Texts.h"
#include "db/RecoveryFile.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

bool Refuse(FileError::Kind kind, const char* reason, FileError& error) {
    error = {kind, reason};
    return false;
}

// Looks for the end of the directory, which tells the number of files, before the library makes room for so many.
bool CountIsBearable(const PosixFile& file, std::uint64_t size, FileError& error) {
    constexpr std::size_t kRecord = 22;
    constexpr std::size_t kLongestComment = 65535;
    constexpr std::size_t kCountAt = 10;  // little-endian
    std::string tail(static_cast<std::size_t>(std::min<std::uint64_t>(size, kRecord + kLongestComment)), '\0');
    const auto offset = static_cast<off_t>(size - tail.size());
    if (pread(file.Descriptor(), tail.data(), tail.size(), offset) != static_cast<ssize_t>(tail.size())) {
        return Refuse(FileError::Kind::Busy, "It is being written", error);
    }
    // The larger form of an archive, which holds more than is served here.
    if (tail.find("PK\x06\x07") != tail.npos) return Refuse(FileError::Kind::TooLarge, "Too large an archive", error);
    bool isArchive = false;
    const std::string_view signature = "PK\x05\x06";
    for (auto at = tail.find(signature); at != tail.npos; at = tail.find(signature, at + 1)) {
        if (at + kRecord > tail.size()) break;
        const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(tail[at + kCountAt + k]); };
        if (static_cast<std::size_t>(byte(0) | byte(1) << 8) > kMostPackageFiles) {
            return Refuse(FileError::Kind::TooLarge, "Too many files in it", error);
        }
        isArchive = true;
    }
    return isArchive || Refuse(FileError::Kind::NotAFile, "Not a ZIP archive", error);
}

bool IsServed(const zip_stat_t& status) {
    constexpr zip_uint64_t kNeeded =
        ZIP_STAT_NAME | ZIP_STAT_INDEX | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD;
    if ((status.valid & kNeeded) != kNeeded || std::string_view(status.name).ends_with('/')) return false;
    if ((status.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && status.encryption_method != ZIP_EM_NONE) return false;
    return status.comp_method == ZIP_CM_STORE || status.comp_method == ZIP_CM_DEFLATE;
}

bool IsTooDense(const zip_stat_t& status) {
    return status.size > kDensestMayBe && status.size / kDensest > status.comp_size;
}

}  // namespace

std::string ListedName(std::string_view nameInArchive) {
    std::string text = ValidText(nameInArchive);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::string name;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view part = rest.substr(0, rest.find('/'));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        if (part.empty() || part == "." || part == "..") continue;
        if (!name.empty()) name += '-';
        name += part;
    }
    // The end tells the kind of file.
    return std::string(EndOf(name, kLongestName));
}

void Package::Close::operator()(zip* archive) const { zip_discard(archive); }

std::optional<Package> Package::Open(PosixFile file, FileError& error) {
    struct stat status {};
    if (!LockOpenFile(file, LockKind::Shared, std::chrono::milliseconds::zero(), error)) return std::nullopt;
    if (fstat(file.Descriptor(), &status) != 0) {
        Fail(error);
        return std::nullopt;
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > kLargestPublished) {
        error = SystemError(EFBIG);
        return std::nullopt;
    }
    if (!CountIsBearable(file, size, error)) return std::nullopt;
    Package package;
    package.m_stamp = MakeStamp(status);
    // The library takes a descriptor for its own.
    const int own = dup(file.Descriptor());
    int reason = 0;
    package.m_archive.reset(own < 0 ? nullptr : zip_fdopen(own, 0, &reason));
    if (!package.m_archive) {
        if (own >= 0) close(own);
        error = {FileError::Kind::NotAFile, "Not a ZIP archive that can be read"};
        return std::nullopt;
    }
    if (!package.ReadDirectory(error)) return std::nullopt;
    return package;
}

bool Package::ReadDirectory(FileError& error) {
    const zip_int64_t count = zip_get_num_entries(m_archive.get(), 0);
    if (count > static_cast<zip_int64_t>(kMostPackageFiles)) {
        return Refuse(FileError::Kind::TooLarge, "Too many files in it", error);
    }
    std::uint64_t sum = 0;
    std::unordered_set<std::string> ids;
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t status;
        const auto number = static_cast<zip_uint64_t>(i);
        if (zip_stat_index(m_archive.get(), number, ZIP_FL_ENC_GUESS, &status) != 0 || !IsServed(status)) continue;
        sum += std::min<std::uint64_t>(status.size, kMostUnpacked + 1);
        if (status.size > kLargestPublished || sum > kMostUnpacked || IsTooDense(status)) {
            return Refuse(FileError::Kind::TooLarge, "It unpacks to too much", error);
        }
        PackageFile file{ListedName(status.name), HexText(Hash64(status.name)), status.size, number};
        if (!file.name.empty() && ids.insert(file.id).second) m_files.push_back(std::move(file));
    }
    return true;
}

bool Package::Unpack(const PackageFile& file, Image& bytes, FileError& error) {
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(m_archive.get(), file.number, 0));
    if (!entry) return Refuse(FileError::Kind::Other, "The file cannot be unpacked", error);
    try {
        bytes = Image(file.size);
    } catch (const std::bad_alloc&) {
        error = SystemError(ENOMEM);
        return false;
    }
    std::uint64_t done = 0;
    while (done < file.size) {
        const zip_int64_t count = zip_fread(entry.get(), bytes.Data() + done, file.size - done);
        if (count <= 0) return Refuse(FileError::Kind::Other, "The file is damaged", error);
        done += static_cast<std::uint64_t>(count);
    }
    // The checksum is compared when the end is read.
    char more = 0;
    if (zip_fread(entry.get(), &more, 1) != 0) return Refuse(FileError::Kind::Other, "The file is damaged", error);
    return true;
}

}  // namespace quillary
