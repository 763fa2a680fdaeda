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

std::optional<std::string> StoredDatabaseName(std::u16string_view typed, const AnsiText& page, Failure& failure) {
    const std::string name = WideToUtf8(typed);
    if (typed.empty()) {
        failure.Set(Message::NameMissing);
    } else if (IsImpossibleName(name)) {
        failure.Set(Message::ImpossibleName, {name});
    } else if (typed.size() > kMostNameCharacters) {
        failure.Set(Message::NameTooLong, {name});
    } else {
        std::u16string unstorable;
        auto stored = page.FromWide(typed, &unstorable);
        if (stored) return stored;
        failure.Set(Message::UnstorableCharacters, {"the database's name", WideToUtf8(unstorable)});
    }
    return std::nullopt;
}

std::u16string_view WithoutBlanksAround(std::u16string_view name) {
    const auto first = name.find_first_not_of(u' ');
    return first == name.npos ? std::u16string_view() : name.substr(first, name.find_last_not_of(u' ') - first + 1);
}

std::string DatabaseFolder(const StorageLocations& locations, const Settings& settings) {
    const std::int32_t location = settings.ReadInt(kLocationNdx, 0);
    if (location >= 1) {
        const auto cards = locations.CardFolders();
        if (static_cast<std::size_t>(location) <= cards.size()) return cards[static_cast<std::size_t>(location) - 1];
    }
    return locations.MainFolder();
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
    std::string path = DatabaseFolder(locations, settings);
    path += name;
    if (!EndsInExtension(path)) path += ".pdb";
    return path;
}

}  // namespace quillary
