#include "cli/DatabaseName.h"

#include "admin/DatabasePath.h"
#include "cli/Text.h"

namespace quillary {

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
    if (wide->size() > kMostNameCharacters) {
        (void)session.Refuse("The database's name " + Quoted(name) + " is longer than " +
                             std::to_string(kMostNameCharacters) + " characters.");
        return std::nullopt;
    }
    return session.Stored(name, "the database's name");
}

}  // namespace quillary
