// Folders and cards in memory, of this system or another one.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "admin/StorageLocations.h"

namespace quillary {

class TestLocations : public StorageLocations {
  public:
    explicit TestLocations(std::string main = "/nowhere/") : mainFolder(std::move(main)) {}

    std::string mainFolder;
    std::vector<std::string> cards;
    std::map<std::string, std::vector<std::string>> folders;  // by the path of the folder that they are in

    std::string MainFolder() const override { return mainFolder; }
    std::vector<std::string> CardFolders() const override { return cards; }
    std::vector<std::string> FoldersIn(const std::string& folder) const override {
        const auto found = folders.find(folder);
        return found == folders.end() ? std::vector<std::string>() : found->second;
    }
};

/// The handheld for which the rules were first written.
inline TestLocations Handheld(int cards) {
    TestLocations locations("\\My Documents\\");
    for (int k = 1; k <= cards; ++k) locations.cards.push_back("\\Card " + std::to_string(k) + "\\");
    return locations;
}

}  // namespace quillary
