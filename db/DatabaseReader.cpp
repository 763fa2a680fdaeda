#include "db/DatabaseReader.h"

#include <algorithm>

#include "db/Bytes.h"
#include "db/FieldType.h"
#include "db/FieldValue.h"

namespace quillary {

namespace {

constexpr std::size_t kAttributesInEntry = 4;  // behind the offset

}  // namespace

bool CDatabaseReader::Fail(Message message) {
    m_error = message;
    return false;
}

void CDatabaseReader::ReadHeader(std::string_view image) {
    *this = {};
    m_image = image;
    const auto header = DatabaseHeader::Read(image);
    if (!header) return;
    m_header = *header;
    if (m_header.AppInfoOffset() != 0) {
        m_appInfo = AppInfoBlock::Read(image, m_header.AppInfoOffset());
        m_firstRecord = 1;
    }
    ReadRecordList();
}

const char* CDatabaseReader::ListEntry(std::size_t i) const {
    return m_image.data() + kHeaderSize + (i - m_firstRecord) * kRecordEntrySize;
}

std::uint32_t CDatabaseReader::OffsetOf(std::size_t i) const { return LoadBig32(ListEntry(i)); }

void CDatabaseReader::ReadRecordList() {
    const std::size_t room = (m_image.size() - kHeaderSize) / kRecordEntrySize;
    m_listSize = m_firstRecord + std::min<std::size_t>(m_header.RecordCount(), room);
    m_unlistedRecords = m_header.RecordCount() - (m_listSize - m_firstRecord);
    m_dataRecords.reserve(m_listSize);
    for (std::size_t i = m_firstRecord; i < m_listSize; ++i) {
        const auto noteSchema = [this, i](std::size_t& noted, std::size_t none) {
            if (noted != none) ++m_foreignRecords;  // the earlier one gives way and does not come back
            noted = i;
        };
        switch (static_cast<unsigned char>(ListEntry(i)[kAttributesInEntry]) & ~kDirtyBit) {
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
                break;
            default:
                ++m_foreignRecords;
                break;
        }
    }
}

std::string_view CDatabaseReader::RecordBytes(std::size_t i) const {
    const std::uint64_t begin = OffsetOf(i);
    if (begin > m_image.size() || (i > m_firstRecord && begin < OffsetOf(i - 1))) return {};
    const std::uint64_t next = i + 1 < m_listSize ? OffsetOf(i + 1) : m_image.size();
    const std::uint64_t end = std::min<std::uint64_t>(next, m_image.size());
    if (end < begin + kRecordHeader.size()) return {};
    return m_image.substr(begin + kRecordHeader.size(), end - begin - kRecordHeader.size());
}

void CDatabaseReader::ReadRecord(std::size_t i) {
    std::string_view bytes = RecordBytes(i);
    // Crossing offsets make records overlap; together they may not grow far beyond the file.
    m_bytesRead += bytes.size();
    if (m_bytesRead > 2 * static_cast<std::uint64_t>(m_image.size())) bytes = {};
    const std::string_view entries = EntriesOf(bytes);
    if (!bytes.ends_with('\xFF') || bytes.size() - entries.size() > kEndMark.size()) ++m_damagedRecords;
    m_record.data = entries.data();
    m_record.size = static_cast<std::uint32_t>(entries.size());
    m_record.category = static_cast<std::uint8_t>(ListEntry(i)[kAttributesInEntry]);
}

bool CDatabaseReader::ReadSchema() {
    m_columns.clear();
    if (m_fieldLabels == kNoIndex) return Fail(Message::NoFieldLabels);
    if (m_dataType == kNoIndex) return Fail(Message::NoDataType);
    if (m_fieldLengths == 0) return Fail(Message::NoFieldLength);
    const std::string_view labels = EntriesOf(RecordBytes(m_fieldLabels));
    const std::string_view types = EntriesOf(RecordBytes(m_dataType));
    const std::string_view lengths = EntriesOf(RecordBytes(m_fieldLengths));
    for (std::uint8_t k = 0; k < kMaxFields; ++k) {
        const auto name = FindEntry(labels, k);
        if (!name || name->empty()) break;
        m_columns.push_back({*name, FindEntry(types, k).value_or(std::string_view{}), FindEntry(lengths, k)});
    }
    return true;
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
    if (m_preferences == kNoIndex) return std::nullopt;
    return FindEntry(EntriesOf(RecordBytes(m_preferences)), k);
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
