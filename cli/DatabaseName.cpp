#include "cli/DatabaseName.h"

#include "admin/DatabasePath.h"

namespace quillary {

std::optional<std::string> StoredDatabaseName(const Session& session, std::string_view name) {
    const auto wide = session.Wide(name);
    if (!wide) return std::nullopt;
    Failure failure;
    auto stored = StoredDatabaseName(WithoutBlanksAround(*wide), session.Page(), failure);
    if (!stored) (void)session.Refuse(failure.text);
    return stored;
}

}  // namespace quillary
