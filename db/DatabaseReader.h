// Reads the parts of a database image while a document loads: record list, schema, data records. Keeps the text of its
// last failure for callers that want to show it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/Container.h"
#include "db/Messages.h"
#include "db/RecordBuffer.h"
#include "db/RecordList.h"

namespace quillary {

class CDatabaseReader {
  public:
    /// Reads header, application-info block and record list. The image must outlive the reader and every record from
    /// it. Nothing in it is trusted: a count larger than the image reads what is there, a record with an impossible
    /// offset reads as one without entries.
    void ReadHeader(std::string_view image);
    /// False with the reader's error text when a schema record is missing.
    [[nodiscard]] bool ReadSchema();

    [[nodiscard]] const DatabaseHeader& Header() const { return m_header; }
    [[nodiscard]] const AppInfoBlock& AppInfo() const { return m_appInfo; }

    [[nodiscard]] std::size_t ColumnCount() const { return m_columns.size(); }
    [[nodiscard]] std::optional<std::string_view> ColumnName(std::size_t k);
    [[nodiscard]] std::optional<std::string_view> ColumnTypeText(std::size_t k);
    /// What the width was read from, if anything.
    [[nodiscard]] std::optional<std::string_view> ColumnWidthText(std::size_t k);
    /// 80 for a column that does not exist, with the error text set.
    [[nodiscard]] std::int32_t ColumnWidth(std::size_t k);

    /// The Preferences record's entry k.
    [[nodiscard]] std::optional<std::string_view> Preference(std::uint8_t k) const;

    [[nodiscard]] std::size_t DataRecordCount() const { return m_dataRecords.size(); }
    /// Records that are neither schema nor data: of other categories, or with delete, busy or secret bits. They do not
    /// come back when the file is written.
    [[nodiscard]] std::size_t ForeignRecordCount() const { return m_foreignRecords; }
    /// Of what was read by now, the records that are damaged or that the file is too short to list, the schema records
    /// of which a part would not come back, and one for an application-info block that is elsewhere.
    [[nodiscard]] std::size_t DamagedCount() const {
        return m_records.UnlistedCount() + m_damagedBlocks + m_damagedSettings + m_damagedRecords;
    }

    /// Make a data record the one last read. False at the end, with the error text set.
    [[nodiscard]] bool FirstDataRecord();
    [[nodiscard]] bool NextDataRecord();
    [[nodiscard]] const RecordRef& DataRecord() const { return m_record; }
    /// Entry k of the record last read.
    [[nodiscard]] std::optional<std::string_view> Field(std::uint8_t k);

    [[nodiscard]] Message LastError() const { return m_error; }

  private:
    struct Column {
        std::string_view name;
        std::string_view type;
        std::optional<std::string_view> width;
    };
    static constexpr std::size_t kNoIndex = static_cast<std::size_t>(-1);

    void NoteRecords();
    void CountDamagedSettings();
    void ReadRecord(std::size_t listIndex);
    [[nodiscard]] bool Fail(Message message);

    DatabaseHeader m_header;
    AppInfoBlock m_appInfo;
    RecordList m_records;
    std::vector<std::uint16_t> m_dataRecords;  // list indices, in file order
    std::size_t m_fieldLabels = kNoIndex;
    std::size_t m_dataType = kNoIndex;
    std::size_t m_preferences = kNoIndex;
    // Index 0 means none, so that a FieldLengths record that is the file's very first record counts as missing. Other
    // programs' files rely on that reading.
    std::size_t m_fieldLengths = 0;
    std::size_t m_foreignRecords = 0;
    std::size_t m_damagedBlocks = 0;    // the application-info block
    std::size_t m_damagedSettings = 0;  // schema records
    std::size_t m_damagedRecords = 0;   // data records
    std::uint64_t m_bytesRead = 0;      // since the first data record
    std::vector<Column> m_columns;
    std::string_view m_preferenceEntries;
    std::size_t m_position = 0;  // in m_dataRecords
    bool m_loaded = false;
    RecordRef m_record;
    Message m_error = Message::None;
};

}  // namespace quillary
