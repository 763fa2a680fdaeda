// The values of one shown record as an export takes them: display texts, days and times of day.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "db/QuillaryDoc.h"
#include "db/RecordBuffer.h"
#include "db/UserLocale.h"

namespace quillary {

/// How the user writes dates in fields that are no Date fields.
struct DateHabits {
    DateOrder order;
    int century;  // of a year below 100, for example 2000
};

/// A field is named by its position; -1 is none, with an empty value. Of fields with the same name the first one gives
/// the value of all.
class RecordValues {
  public:
    RecordValues(const CQuillaryDoc& doc, std::size_t row);

    [[nodiscard]] std::u16string Text(int field) const;
    /// Whole days since 30 December 1899; a date from the stored count, another field by what it shows.
    [[nodiscard]] std::optional<double> Day(int field, const DateHabits& habits) const;
    /// A fraction of the day, in whole minutes.
    [[nodiscard]] std::optional<double> Time(int field) const;

  private:
    [[nodiscard]] std::optional<std::size_t> Find(int field) const;
    [[nodiscard]] std::string Display(std::size_t field) const;

    const CQuillaryDoc& m_doc;
    EntryTable m_entries;
};

}  // namespace quillary
