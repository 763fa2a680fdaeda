// Gives every record of a database a new layout: fields added, removed, moved, renamed and retyped.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "db/QuillaryDoc.h"
#include "db/RecordArena.h"
#include "db/UserLocale.h"

namespace quillary {

/// One field of the layout to come.
struct FieldDefinition {
    Field field;                      // as it will be
    std::optional<std::size_t> from;  // its position in the database; none for a new field
    /// How a Text or List value is read when the field becomes a Date.
    DateOrder convertFrom = DateOrder::MonthDayYear;
};

/// The fields of `doc` as they are.
[[nodiscard]] std::vector<FieldDefinition> DefinitionsOf(const CQuillaryDoc& doc);

/// Every record in its new layout, while the database still has the old one.
struct PreparedSchema {
    std::vector<Field> fields;
    bool rewritesRecords = false;  // else the present records stay as they are
    std::vector<RecordRef> shown;  // in `arena`
    std::vector<RecordRef> hidden;
    RecordArena arena;
    /// Values that cannot be converted and are empty now.
    std::size_t emptied = 0;
    /// Values that are neither yes nor no, of fields that become or were check boxes.
    std::size_t unchecked = 0;
};

/// Converts all records, shown and hidden; `doc` is not changed. `century` is where a year below 100 goes (2000 for
/// 2026). `definitions` name each old field once at most; those that none names are dropped. Refuses no fields and more
/// than kMaxFields, and texts that would hide a later field where they do not yet (with their number, in `failure`).
[[nodiscard]] std::optional<PreparedSchema> PrepareSchema(const CQuillaryDoc& doc,
                                                          std::vector<FieldDefinition> definitions, int century,
                                                          Failure& failure);

/// Puts the prepared layout in place; the caller saves. False, with nothing changed, when it is the present one.
bool ApplySchema(CQuillaryDoc& doc, PreparedSchema prepared);

}  // namespace quillary
