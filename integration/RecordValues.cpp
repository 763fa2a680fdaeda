#include "integration/RecordValues.h"

#include "db/FieldValue.h"
#include "db/TextEntry.h"

namespace quillary {

namespace {

constexpr int kEpochDay = 1462;  // 1 January 1904, counted from 30 December 1899
constexpr double kMinutesADay = 24 * 60;
constexpr double kSecondsADay = kMinutesADay * 60;

}  // namespace

RecordValues::RecordValues(const CQuillaryDoc& doc, std::size_t row) : m_doc(doc) {
    m_entries.Fill(doc.Shown()[row].Entries(), doc.FieldCount());
}

std::optional<std::size_t> RecordValues::Find(int field) const {
    if (field < 0) return std::nullopt;
    return m_doc.FieldByName(m_doc.Fields()[static_cast<std::size_t>(field)].name);
}

std::string RecordValues::Display(std::size_t field) const {
    std::string display;
    if (m_entries.Has(field)) m_doc.AppendDisplay(m_entries.Text(field), field, display);
    return display;
}

std::u16string RecordValues::Text(int field) const {
    const auto found = Find(field);
    return found ? m_doc.Page().ToWide(Display(*found)) : std::u16string();
}

std::optional<double> RecordValues::Day(int field, const DateHabits& habits) const {
    const auto found = Find(field);
    if (!found) return std::nullopt;
    const auto day = m_doc.TypeOf(*found) == FieldType::Date ? ReadDay(m_entries.Text(*found))
                                                             : ParseDate(Display(*found), habits.order, habits.century);
    if (!day) return std::nullopt;
    return static_cast<double>(*day) + kEpochDay;
}

std::optional<double> RecordValues::Time(int field) const {
    const auto found = Find(field);
    if (!found) return std::nullopt;
    if (m_doc.TypeOf(*found) == FieldType::Time) {
        const auto minute = ReadMinute(m_entries.Text(*found));
        return minute ? std::optional(*minute / kMinutesADay) : std::nullopt;
    }
    const auto seconds = ParseTime(Display(*found));
    return seconds ? std::optional(*seconds / kSecondsADay) : std::nullopt;
}

}  // namespace quillary
