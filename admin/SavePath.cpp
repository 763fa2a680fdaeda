#include "admin/SavePath.h"

#include <algorithm>

namespace quillary {

namespace {

/// The last name of a path that ends in a separator; the path may be one of another system's.
std::string FolderName(std::string_view path) {
    const char separator = path.back();
    path.remove_suffix(1);
    return std::string(path.substr(path.find_last_of(separator) + 1));
}

}  // namespace

std::vector<SaveLocation> SaveLocations(const StorageLocations& locations) {
    const std::string main = locations.MainFolder();
    const std::string documents = FolderName(main);
    std::vector<SaveLocation> found = {{std::string(kMainMemory), main}};
    for (const std::string& card : locations.CardFolders()) {
        const auto folders = locations.FoldersIn(card);
        if (std::find(folders.begin(), folders.end(), documents) == folders.end()) continue;
        found.push_back({FolderName(card), card + documents + card.back()});
    }
    return found;
}

std::vector<std::string> SaveFolders(const StorageLocations& locations, const std::string& base) {
    std::vector<std::string> folders = {"."};
    struct Folder {
        std::string path;
        std::string name;
    };
    std::vector<Folder> open;  // the next one last
    const auto openAllOf = [&](const std::string& path) {
        const auto names = locations.FoldersIn(path);
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            if (*name != "." && *name != "..") open.push_back({path + *name + base.back(), *name});
        }
    };
    for (openAllOf(base); !open.empty();) {
        const Folder next = std::move(open.back());
        open.pop_back();
        folders.push_back(next.name);
        openAllOf(next.path);
    }
    return folders;
}

std::string SavePath(const std::string& base, const std::vector<std::string>& folders, std::size_t chosen) {
    return chosen == 0 ? base : base + folders[chosen] + base.back();
}

}  // namespace quillary
