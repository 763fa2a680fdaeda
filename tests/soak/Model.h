// What a database must hold: a record is a row of stored texts, and every order and filter is worked out anew. What one
// record shows, whether it passes and which of two comes first are rules that have tests of their own.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

namespace quillary::soak {

[[nodiscard]] inline std::size_t At(int k) { return static_cast<std::size_t>(k); }

using Row = std::vector<std::string>;

/// A field that is being defined: its place among the old ones (-1: new), and how dates in its texts are read.
struct Definition {
    Field field;
    int from = -1;
    DateOrder order = DateOrder::MonthDayYear;
};

struct Database {
    std::string name;
    std::vector<Field> fields;
    std::vector<Row> shown, hidden;
    SortSettings sort;
    FilterSettings filter;
    bool longDates = false;
    bool editOnSelect = false;
    std::string info;
    std::int32_t infoLock = 0;
    std::uint32_t password = 0;

    [[nodiscard]] const Field* FieldNamed(std::string_view wanted) const;  // the first one, or none
    [[nodiscard]] std::string Display(const std::string& stored, int field) const;
    /// What the list shows.
    [[nodiscard]] std::string Cell(int row, int field) const;
    [[nodiscard]] Row NewRecord() const;
    void Append(Row row);
    void Sort();
    void ApplyFilter();
    void ShowAll();
    /// Without what the file does not keep.
    [[nodiscard]] Database InFile() const;
    void ChangeFields(const std::vector<Definition>& definitions);
    /// The first difference to what was found in a file; nothing when there is none.
    [[nodiscard]] std::string Difference(const Database& found) const;
};

/// Bytes as Western databases hold them.
[[nodiscard]] inline std::string Stored(const QString& shown) { return shown.toLatin1().toStdString(); }

[[nodiscard]] Database ContentOf(const CQuillaryDoc& doc);
/// What a reader that knows nothing of the window finds in the file; nullopt when it does not open.
[[nodiscard]] std::optional<Database> ReadFile(FileAccess& files, const Path& path);
/// Another program adds `row`. Whether it could.
[[nodiscard]] bool AppendByAnother(FileAccess& files, const Path& path, const Row& row);
/// The first departure of the file from the format, or nothing.
[[nodiscard]] std::string CheckFile(const Path& path);

}  // namespace quillary::soak
