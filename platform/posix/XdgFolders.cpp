#include "platform/posix/XdgFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace quillary {

namespace {

Path AbsoluteFrom(const char* variable) {
    const char* value = std::getenv(variable);
    Path path = value ? value : "";
    return path.is_absolute() ? path : Path{};
}

struct Account {
    std::string name;
    Path home;
};

Account UserAccount() {
    char texts[16384];
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, texts, sizeof texts, &found) != 0 || !found) return {};
    return {entry.pw_name, entry.pw_dir};
}

Path FolderOr(const char* variable, const char* belowHome) {
    Path path = AbsoluteFrom(variable);
    if (!path.empty()) return path;
    const Path home = HomeFolder();
    return home.empty() ? home : home / belowHome;
}

}  // namespace

Path HomeFolder() {
    Path home = AbsoluteFrom("HOME");
    if (!home.empty()) return home;
    home = UserAccount().home;
    return home.is_absolute() ? home : Path{};
}

std::string UserName() { return UserAccount().name; }

Path ConfigFolder() { return FolderOr("XDG_CONFIG_HOME", ".config"); }

Path DataFolder() { return FolderOr("XDG_DATA_HOME", ".local/share"); }

Path StateFolder() { return FolderOr("XDG_STATE_HOME", ".local/state"); }

}  // namespace quillary
