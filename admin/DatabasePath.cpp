#include "admin/DatabasePath.h"

#include <algorithm>
#include <cctype>

#include "db/Utf.h"

namespace quillary {

bool EndsInExtension(std::string_view path) {
    constexpr std::string_view kExtension = ".PDB";
    if (path.size() < kExtension.size()) return false;
    return std::equal(kExtension.begin(), kExtension.end(), path.end() - kExtension.size(),
                      [](char wanted, unsigned char c) { return wanted == std::toupper(c); });
}

std::string DatabaseNameFor(const std::filesystem::path& path) {
    std::string stem = path.stem().string();
    auto wide = Utf8ToWide(stem);
    if (!wide || wide->size() <= kMostNameCharacters) return stem;
    wide->resize(kMostNameCharacters);
    return WideToUtf8(*wide);
}

bool IsImpossibleName(std::string_view name) {
    if (name == "." || name == "..") return true;
    return name.find_first_of("/\\") != name.npos || HasControlCharacter(name);
}

std::optional<std::string> BuildDatabasePath(std::string_view name, const StorageLocations& locations,
                                             const Settings& settings, Failure& failure) {
    if (name.empty()) {
        failure.Set(Message::NameMissing);
        return std::nullopt;
    }
    if (IsImpossibleName(name)) {
        failure.Set(Message::ImpossibleName, {name});
        return std::nullopt;
    }
    std::string path = locations.MainFolder();
    const std::int32_t location = settings.ReadInt(kLocationNdx, 0);
    if (location >= 1) {
        const auto cards = locations.CardFolders();
        if (static_cast<std::size_t>(location) <= cards.size()) path = cards[static_cast<std::size_t>(location) - 1];
    }
    path += name;
    if (!EndsInExtension(path)) path += ".pdb";
    return path;
}

}  // namespace quillary
