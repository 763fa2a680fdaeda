// A new database: its name, the place of its file, and the file itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "admin/DatabasePath.h"
#include "db/FieldType.h"
#include "db/FileAccess.h"

namespace quillary {

/// What says where a database of some name would lie. All of it outlives a NewDatabase.
struct NewDatabasePlace {
    FileAccess& files;
    const StorageLocations& locations;
    const Settings& settings;
};

class NewDatabase {
  public:
    explicit NewDatabase(const NewDatabasePlace& place) : m_place(place) {}

    /// Takes the name without the blanks around it. Refuses a name that cannot be stored or is no file's, and one whose
    /// file is there already; the former name then stays.
    [[nodiscard]] bool SetName(std::u16string_view typed, Failure& failure);
    /// Makes the file, in the documents folder, which is made too, or on the card that the preference names by now.
    /// `path` receives where it is.
    [[nodiscard]] bool Write(std::vector<Field> fields, Path& path, Failure& failure) const;

    /// Where the file of a name that is being typed would lie; of an empty name, the folder. nullopt for an impossible
    /// one. UTF-8.
    [[nodiscard]] std::optional<std::string> PathFor(std::u16string_view typed, Failure& failure) const;

  private:
    NewDatabasePlace m_place;
    std::string m_name;    // UTF-8
    std::string m_stored;  // as the header keeps it
};

}  // namespace quillary
