#include "db/DatabaseReader.h"

#include <algorithm>
#include <string>

#include "db/Damage.h"
#include "db/FieldType.h"
#include "db/FieldValue.h"

namespace quillary {

bool CDatabaseReader::Fail(Message message) {
    m_error = message;
    return false;
}

void CDatabaseReader::ReadHeader(std::string_view image) {
    *this = {};
    const auto header = DatabaseHeader::Read(image);
    if (!header) return;
    m_header = *header;
    if (m_header.AppInfoOffset() != 0) m_appInfo = AppInfoBlock::Read(image, m_header.AppInfoOffset());
    m_records = RecordList(image, m_header);
    NoteRecords();
    if (IsAppInfoElsewhere(m_records, m_header, m_appInfo)) m_damagedBlocks = 1;
}

void CDatabaseReader::NoteRecords() {
    m_dataRecords.reserve(m_records.End());
    for (std::size_t i = m_records.First(); i < m_records.End(); ++i) {
        const auto noteSchema = [this, i](std::size_t& noted, std::size_t none) {
            if (noted != none) ++m_foreignRecords;  // the earlier one gives way and does not come back
            noted = i;
        };
        switch (m_records.AttributesOf(i) & ~kDirtyBit) {
            case kCategoryFieldLabels:
                noteSchema(m_fieldLabels, kNoIndex);
                break;
            case kCategoryShown:
            case kCategoryHidden:
                m_dataRecords.push_back(static_cast<std::uint16_t>(i));
                break;
            case kCategoryPreferences:
                noteSchema(m_preferences, kNoIndex);
                break;
            case kCategoryDataType:
                noteSchema(m_dataType, kNoIndex);
                break;
            case kCategoryFieldLengths:
                noteSchema(m_fieldLengths, 0);
                if (i == 0) ++m_foreignRecords;  // which reads as none
                break;
            default:
                ++m_foreignRecords;
                break;
        }
    }
}

void CDatabaseReader::ReadRecord(std::size_t i) {
    std::string_view bytes = m_records.BytesOf(i);
    // Crossing offsets make records overlap; together they may not grow far beyond the file.
    m_bytesRead += bytes.size();
    if (m_bytesRead > 2 * static_cast<std::uint64_t>(m_records.Image().size())) bytes = {};
    const std::string_view entries = EntriesOf(bytes);
    if (bytes.empty() || IsRecordDamaged(m_records, i, entries)) ++m_damagedRecords;
    m_record.data = entries.data();
    m_record.size = static_cast<std::uint32_t>(entries.size());
    m_record.category = m_records.AttributesOf(i);
}

bool CDatabaseReader::ReadSchema() {
    m_columns.clear();
    if (m_fieldLabels == kNoIndex) return Fail(Message::NoFieldLabels);
    if (m_dataType == kNoIndex) return Fail(Message::NoDataType);
    if (m_fieldLengths == 0) return Fail(Message::NoFieldLength);
    const std::string_view labels = EntriesOf(m_records.BytesOf(m_fieldLabels));
    const std::string_view types = EntriesOf(m_records.BytesOf(m_dataType));
    const std::string_view lengths = EntriesOf(m_records.BytesOf(m_fieldLengths));
    for (std::uint8_t k = 0; k < kMaxFields; ++k) {
        const auto name = FindEntry(labels, k);
        if (!name || name->empty()) break;
        m_columns.push_back({*name, FindEntry(types, k).value_or(std::string_view{}), FindEntry(lengths, k)});
    }
    if (m_preferences != kNoIndex) m_preferenceEntries = EntriesOf(m_records.BytesOf(m_preferences));
    if (!m_columns.empty()) CountDamagedSettings();
    return true;
}

void CDatabaseReader::CountDamagedSettings() {
    const std::size_t count = m_columns.size();
    // A field behind one without a name, which ends the table, gets lost.
    const std::size_t endOfNames = std::min(count, kMaxFields - 1);
    m_damagedSettings = ComesBack(m_records, m_fieldLabels, endOfNames, count, {}) ? 0 : 1;
    m_damagedSettings += ComesBack(m_records, m_dataType, count - 1, count, kTypeFiller) ? 0 : 1;
    m_damagedSettings += ComesBack(m_records, m_fieldLengths, count - 1, count, kWidthFiller) ? 0 : 1;
    if (m_preferences == kNoIndex) return;
    const std::string_view lock = Preference(kInfoLockEntry).value_or(std::string_view{});
    const bool isLockANumber = lock.empty() || lock == std::to_string(ReadDecimal(lock));
    m_damagedSettings +=
        isLockANumber && ComesBack(m_records, m_preferences, kInfoLockEntry, kInfoLockEntry + 1, {}) ? 0 : 1;
}

std::optional<std::string_view> CDatabaseReader::ColumnName(std::size_t k) {
    if (k < m_columns.size()) return m_columns[k].name;
    m_error = Message::InvalidColumn;
    return std::nullopt;
}

std::optional<std::string_view> CDatabaseReader::ColumnTypeText(std::size_t k) {
    if (k < m_columns.size()) return m_columns[k].type;
    m_error = Message::InvalidColumn;
    return std::nullopt;
}

std::optional<std::string_view> CDatabaseReader::ColumnWidthText(std::size_t k) {
    if (k < m_columns.size()) return m_columns[k].width;
    m_error = Message::InvalidColumn;
    return std::nullopt;
}

std::int32_t CDatabaseReader::ColumnWidth(std::size_t k) {
    const auto width = ColumnWidthText(k);
    return width ? ReadDecimal(*width) : kDefaultWidth;
}

std::optional<std::string_view> CDatabaseReader::Preference(std::uint8_t k) const {
    return FindEntry(m_preferenceEntries, k);
}

bool CDatabaseReader::FirstDataRecord() {
    m_position = 0;
    m_bytesRead = 0;
    m_damagedRecords = 0;
    m_loaded = false;
    if (m_dataRecords.empty()) return Fail(Message::NoRecordsExist);
    ReadRecord(m_dataRecords[0]);
    m_loaded = true;
    return true;
}

bool CDatabaseReader::NextDataRecord() {
    if (m_position + 1 >= m_dataRecords.size()) return Fail(Message::EofReached);
    ReadRecord(m_dataRecords[++m_position]);
    return true;
}

std::optional<std::string_view> CDatabaseReader::Field(std::uint8_t k) {
    if (!m_loaded) {
        m_error = Message::NoRecordsInFile;
        return std::nullopt;
    }
    const auto text = FindEntry(m_record.Entries(), k);
    if (!text) m_error = Message::ColumnDoesNotExist;
    return text;
}

}  // namespace quillary
