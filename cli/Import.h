// Makes records of a CSV table: the fields of a new database, and the rows appended to an open one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Progress.h"
#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

namespace quillary {

struct ImportRules {
    const AnsiText& page;
    std::optional<DateOrder> givenOrder;  // --date-order
    DateOrder userOrder;
    int century;           // of years of two digits
    bool lenient = false;  // a value that cannot be read as its type is stored empty
    bool fit = false;      // set the widths of the fields from their texts
};

struct ImportResult {
    std::size_t records = 0;
    std::size_t emptied = 0;  // values that could not be read
};

/// The fields of a new database for `table`: those of `definitions` in the order of the header, or guessed from the
/// values when there are none. nullopt with a message.
[[nodiscard]] std::optional<std::vector<Field>> FieldsForTable(std::string_view table,
                                                               const std::vector<Field>& definitions,
                                                               const ImportRules& rules, Progress& progress,
                                                               std::string& error);

/// Appends every row of `table` to the shown records of `doc`, whose fields and room decide what can be taken, moves
/// the sequences on and sorts by the stored keys. False with a message that names row and column; `doc` then holds a
/// part of the rows and is to be given up.
[[nodiscard]] bool ImportTable(CQuillaryDoc& doc, std::string_view table, const ImportRules& rules, Progress& progress,
                               ImportResult& result, std::string& error);

}  // namespace quillary
