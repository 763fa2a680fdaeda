// Turns what was entered for a record into stored texts and commits them: one road for the record form, the check boxes
// of the list and qly.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/Clock.h"
#include "db/QuillaryDoc.h"

namespace quillary {

/// What a person entered for one field, already in the stored form of its type (StoredText, StoredCheckBox, a day count
/// ...).
struct EnteredValue {
    std::size_t field;
    std::string stored;  // in the file's code page
};

/// The stored form of typed text; a text with U+00FF, U+0000 or a character that the page lacks is refused by name.
[[nodiscard]] std::optional<std::string> StoredText(const CQuillaryDoc& doc, std::size_t field,
                                                    std::u16string_view typed, Failure& failure);
[[nodiscard]] std::string StoredCheckBox(bool checked);

/// The stored values that a new record starts with, one for each field: sequence values, defaults, "false" for a check
/// box.
[[nodiscard]] std::vector<std::string> NewRecordValues(const CQuillaryDoc& doc, const Clock& clock);

/// Says that `byte` in the field `name` would hide the field `hidden` (HidesField). Both in UTF-8.
void SetHidesField(char byte, std::string_view name, std::string_view hidden, Failure& failure);

/// Refuses a text that would hide a later field (HidesField).
[[nodiscard]] bool CheckHidesNothing(const CQuillaryDoc& doc, std::size_t field, std::string_view stored,
                                     Failure& failure);

/// True when `stored` shows as what the record's present text shows as: committing it would change nothing for the
/// user.
[[nodiscard]] bool ReadsTheSame(const CQuillaryDoc& doc, std::size_t field, std::optional<std::string_view> present,
                                std::string_view stored);

/// Changes the given fields of the record at `row`; every other entry stays byte for byte. Nothing happens (true, with
/// `changed` false) when every value is what the record already reads as.
[[nodiscard]] bool CommitRecord(CQuillaryDoc& doc, std::size_t row, std::span<const EnteredValue> values, bool& changed,
                                Failure& failure);

/// Appends a record with one value for each field and advances every Sequence.
[[nodiscard]] bool CommitNewRecord(CQuillaryDoc& doc, std::span<const std::string> values, Failure& failure);

}  // namespace quillary
