#include "admin/NewDatabase.h"

#include <utility>

#include "db/QuillaryDoc.h"
#include "db/Utf.h"

namespace quillary {

bool NewDatabase::SetName(std::u16string_view typed, Failure& failure) {
    const std::u16string_view wide = WithoutBlanksAround(typed);
    auto stored = StoredDatabaseName(wide, AnsiText::Windows1252(), failure);
    if (!stored) return false;
    std::string name = WideToUtf8(wide);
    const auto path = BuildDatabasePath(name, m_place.locations, m_place.settings, failure);
    if (!path || CQuillaryDoc::DatabaseExists(m_place.files, *path, failure)) return false;
    m_name = std::move(name);
    m_stored = std::move(*stored);
    return true;
}

bool NewDatabase::Write(std::vector<Field> fields, Path& path, Failure& failure) const {
    // Anew: a card may have gone since the name was typed.
    const auto built = BuildDatabasePath(m_name, m_place.locations, m_place.settings, failure);
    if (!built) return false;
    const std::string folder = DatabaseFolder(m_place.locations, m_place.settings);
    FileError error;
    // Not a card's: one that is taken out just now is not to come back as a folder on the disk.
    if (folder == m_place.locations.MainFolder() && !m_place.files.MakeFolder(folder, error)) {
        failure.Set(Message::FolderNotMade, {folder, error.reason});
        return false;
    }
    CQuillaryDoc doc(m_place.files);
    doc.NewDatabase(m_stored, std::move(fields));
    path = *built;
    return doc.SaveDatabaseAs(path, m_stored, failure);
}

std::optional<std::string> NewDatabase::PathFor(std::u16string_view typed, Failure& failure) const {
    const std::u16string_view name = WithoutBlanksAround(typed);
    if (name.empty()) return DatabaseFolder(m_place.locations, m_place.settings);
    return BuildDatabasePath(WideToUtf8(name), m_place.locations, m_place.settings, failure);
}

}  // namespace quillary
