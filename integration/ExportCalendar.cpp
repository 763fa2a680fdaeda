#include "integration/ExportCalendar.h"

#include "db/FieldValue.h"

namespace quillary {

namespace {

bool HoldsOne(const CQuillaryDoc& doc, std::size_t field, std::size_t row) {
    const auto stored = FindEntry(doc.Shown()[row].Entries(), static_cast<std::uint8_t>(field));
    if (!stored) return false;
    return doc.TypeOf(field) == FieldType::Date ? ReadDay(*stored).has_value() : ReadMinute(*stored).has_value();
}

}  // namespace

std::vector<int> OfferedFields(const CQuillaryDoc& doc, FieldType type, std::optional<std::size_t> row) {
    std::vector<int> offered;
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        if (doc.TypeOf(k) == type && (!row || HoldsOne(doc, k, *row))) offered.push_back(static_cast<int>(k));
    }
    return offered;
}

Appointment MakeAppointment(const CQuillaryDoc& doc, std::size_t row, const CalendarFields& fields,
                            const DateHabits& habits) {
    const RecordValues values(doc, row);
    const auto day = values.Day(fields.date, habits);
    Appointment appointment;
    appointment.date = day.value_or(0);
    appointment.isDateRead = day.has_value();
    appointment.startTime = values.Time(fields.start).value_or(0);
    appointment.endTime = values.Time(fields.end).value_or(0);
    appointment.subject = doc.Name();
    for (const int field : fields.body) {
        // The line feed stands first, as in every appointment that was ever made so.
        if (!appointment.body.empty()) appointment.body += u"\n\r";
        appointment.body += doc.FieldName(static_cast<std::size_t>(field)) + u": " + values.Text(field);
    }
    return appointment;
}

bool HasDate(const CQuillaryDoc& doc, std::size_t row, int dateField, const DateHabits& habits) {
    return RecordValues(doc, row).Day(dateField, habits).has_value();
}

std::size_t RowsWithoutDate(const CQuillaryDoc& doc, int dateField, const DateHabits& habits) {
    std::size_t count = 0;
    for (std::size_t row = 0; row < doc.Shown().size(); ++row) {
        if (!HasDate(doc, row, dateField, habits)) ++count;
    }
    return count;
}

}  // namespace quillary
