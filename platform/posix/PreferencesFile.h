// A group of the program's INI file, "Preferences" if no other is named; the toolkit's own settings class reads and
// writes the same file.
#pragma once

#include <optional>
#include <span>

#include "admin/Settings.h"
#include "platform/posix/XdgFolders.h"

namespace quillary {

class PreferencesFile : public Settings {
  public:
    /// Telvane/Quillary.conf in the user's configuration folder; an empty path keeps nothing.
    [[nodiscard]] static Path DefaultPath();

    explicit PreferencesFile(Path path = DefaultPath(), std::string_view group = "Preferences")
        : m_path(std::move(path)), m_group('[' + std::string(group) + ']') {}

    // The file is read at every call: another program may have changed it. A number that is none, or does not fit 32
    // bits, counts as absent.
    std::int32_t ReadInt(std::string_view name, std::int32_t fallback) const override;
    std::string ReadText(std::string_view name, std::string_view fallback) const override;
    // The rest of the file stays as it is, other programs' values included. A stop at any point leaves the old or the
    // new file whole.
    bool WriteInts(std::span<const Number> numbers, std::string& reason) override;
    bool WriteText(std::string_view name, std::string_view value) override;

  private:
    [[nodiscard]] std::optional<std::string> Value(std::string_view name) const;
    struct Entry {
        std::string_view name;
        std::string value;  // as it stands in the file
    };
    [[nodiscard]] bool Store(std::span<const Entry> entries, FileError& error);

    Path m_path;
    std::string m_group;  // its line
};

}  // namespace quillary
