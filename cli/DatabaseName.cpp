#include "cli/DatabaseName.h"

#include <algorithm>
#include <filesystem>

#include "admin/DatabasePath.h"
#include "cli/Text.h"
#include "db/Utf.h"

namespace quillary {

namespace {

constexpr std::size_t kMostCharacters = 28;

}  // namespace

std::optional<std::string> StoredDatabaseName(const Session& session, std::string_view name) {
    const auto first = name.find_first_not_of(' ');
    if (first == name.npos) {
        (void)session.Refuse(MessageText(Message::NameMissing));
        return std::nullopt;
    }
    name = name.substr(first, name.find_last_not_of(' ') - first + 1);
    if (IsImpossibleName(name)) {
        (void)session.Refuse(FormatMessage(Message::ImpossibleName, {name}));
        return std::nullopt;
    }
    const auto wide = session.Wide(name);
    if (!wide) return std::nullopt;
    if (wide->size() > kMostCharacters) {
        (void)session.Refuse("The database's name " + Quoted(name) + " is longer than " +
                             std::to_string(kMostCharacters) + " characters.");
        return std::nullopt;
    }
    return session.Stored(name, "the database's name");
}

std::string DatabaseNameFor(const std::string& path) {
    std::string stem = std::filesystem::path(path).stem().string();
    auto wide = Utf8ToWide(stem);
    if (!wide || wide->size() <= kMostCharacters) return stem;
    wide->resize(kMostCharacters);
    return WideToUtf8(*wide);
}

}  // namespace quillary
