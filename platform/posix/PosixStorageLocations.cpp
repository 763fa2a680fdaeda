#include "platform/posix/PosixStorageLocations.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <sstream>

namespace quillary {

namespace {

// The value of XDG_DOCUMENTS_DIR in the desktop's user-dirs.dirs: "$HOME/Folder" or "/folder", quoted for a shell.
Path DocumentsSetting() {
    constexpr std::string_view kName = "XDG_DOCUMENTS_DIR=\"";
    constexpr std::string_view kHome = "$HOME";
    std::ifstream file(ConfigFolder() / "user-dirs.dirs");
    Path folder;
    for (std::string line; std::getline(file, line);) {
        const auto start = std::min(line.find_first_not_of(" \t"), line.size());
        if (line.compare(start, kName.size(), kName) != 0) continue;
        std::string value;
        for (std::size_t i = start + kName.size(); i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size()) ++i;
            value += line[i];
        }
        const bool inHome = value.starts_with(kHome);
        if (inHome) value.replace(0, kHome.size(), HomeFolder().native());
        if (Path(value).is_absolute()) folder = value;
    }
    return folder;
}

// The list writes blanks, tabs, line feeds and backslashes as three octal digits.
std::string Unescaped(std::string_view field) {
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string out;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) && isOctal(field[i + 2]) &&
            isOctal(field[i + 3])) {
            out += static_cast<char>((field[i + 1] - '0') << 6 | (field[i + 2] - '0') << 3 | (field[i + 3] - '0'));
            i += 3;
        } else {
            out += field[i];
        }
    }
    return out;
}

std::string WithSeparator(std::string folder) {
    if (!folder.ends_with('/')) folder += '/';
    return folder;
}

}  // namespace

std::string PosixStorageLocations::MainFolder() const {
    const Path setting = DocumentsSetting();
    return WithSeparator((setting.empty() ? HomeFolder() / "Documents" : setting).string());
}

std::vector<std::string> PosixStorageLocations::CardFolders() const {
    const std::string ownMedia = "/run/media/" + UserName() + '/';
    std::vector<std::string> folders;
    std::ifstream mounts(m_mounts);
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream fields(line);
        std::string device;
        std::string mountPoint;
        fields >> device >> mountPoint;
        mountPoint = WithSeparator(Unescaped(mountPoint));
        constexpr std::string_view kMedia = "/media/";
        const bool isCard = (mountPoint.starts_with(kMedia) && mountPoint.size() > kMedia.size()) ||
                            (mountPoint.starts_with(ownMedia) && mountPoint.size() > ownMedia.size());
        if (isCard) folders.push_back(std::move(mountPoint));
    }
    std::sort(folders.begin(), folders.end());
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
    return folders;
}

std::vector<std::string> PosixStorageLocations::FoldersIn(const std::string& folder) const {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
    struct stat own {};
    if (!entries || fstat(dirfd(entries.get()), &own) != 0) return names;
    while (const dirent* entry = readdir(entries.get())) {
        struct stat status {};
        if (entry->d_name[0] == '.' || (entry->d_type != DT_DIR && entry->d_type != DT_UNKNOWN)) continue;
        if (fstatat(dirfd(entries.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (S_ISDIR(status.st_mode) && status.st_dev == own.st_dev) names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace quillary
