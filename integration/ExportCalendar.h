// From records to appointments: which fields can give dates and times, and the item that a record becomes.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "db/FieldType.h"
#include "db/QuillaryDoc.h"
#include "integration/Appointment.h"
#include "integration/RecordValues.h"

namespace quillary {

/// Positions of fields; -1 is none.
struct CalendarFields {
    int date = -1;
    int start = -1;
    int end = -1;
    std::vector<int> body = {};  // in the order of the lines
};

/// The fields of `type`, Date or Time; for the export of one record, `row`, only those that hold one there.
[[nodiscard]] std::vector<int> OfferedFields(const CQuillaryDoc& doc, FieldType type, std::optional<std::size_t> row);

/// Rows count from 0 among the shown records.
[[nodiscard]] Appointment MakeAppointment(const CQuillaryDoc& doc, std::size_t row, const CalendarFields& fields,
                                          const DateHabits& habits);

[[nodiscard]] bool HasDate(const CQuillaryDoc& doc, std::size_t row, int dateField, const DateHabits& habits);
/// How many of the shown records would become appointments without a date.
[[nodiscard]] std::size_t RowsWithoutDate(const CQuillaryDoc& doc, int dateField, const DateHabits& habits);

}  // namespace quillary
