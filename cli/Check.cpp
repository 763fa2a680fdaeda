#include "cli/Check.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/AppInfoCheck.h"
#include "cli/RecordCheck.h"
#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/Bytes.h"
#include "db/Container.h"
#include "db/DatabaseReader.h"
#include "db/FieldType.h"

namespace quillary {

namespace {

constexpr std::size_t kCreatorAt = 64;
constexpr std::size_t kNextListAt = 72;
constexpr std::size_t kUniqueIdAt = 5;  // in an entry of the record list
constexpr std::uint8_t kLastCategory = kCategoryFieldLengths;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The order in which the records stand: the schema, then the rows.
constexpr std::array<std::uint8_t, kSchemaRecords> kSchemaOrder = {kCategoryDataType, kCategoryFieldLabels,
                                                                   kCategoryFieldLengths, kCategoryPreferences};

std::string Number(std::uint64_t number) { return std::to_string(number); }

class Checker {
  public:
    Checker(std::string_view image, const AnsiText& page, Progress& progress, TakeDeparture take)
        : m_image(image), m_page(page), m_progress(progress), m_departures(std::move(take)) {}

    void Run() {
        if (m_image.size() < kHeaderSize) {
            Report(0, "The file is shorter than a header");
        } else {
            CheckHeader();
            ReadRecordList();
            CheckOrder();
            FindRecords();
            FindFields();
            CheckAppInfo();
        }
        // What stands ahead of the records is little and goes in one; what is in them may be more than memory holds.
        if (m_departures.HandOver()) CheckRecords();
    }

  private:
    struct ListEntry {
        std::uint32_t offset;
        std::uint8_t attributes;
        std::uint32_t uniqueId;
        std::string_view bytes = {};  // as the program reads them, with the header; empty when it reads none
    };

    void Report(std::uint64_t offset, std::string problem) { m_departures.Report(offset, std::move(problem)); }
    std::string Quoted(std::string_view text) const { return quillary::Quoted(ForMessage(text, m_page)); }
    // ---- Header

    void CheckHeader() {
        CheckPaddedText(m_image, 0, kNameSize, "The name of the database", m_departures);
        if (const auto version = LoadBig16(At(kVersionAt))) {
            Report(kVersionAt, "The version is " + Number(version) + ", not 0");
        }
        CheckFourLetters(kTypeAt, "type");
        CheckFourLetters(kCreatorAt, "creator");
        if (LoadBig32(At(kSortInfoOffsetAt)) != 0) Report(kSortInfoOffsetAt, "There is an offset of a sort-info block");
        if (LoadBig32(At(kNextListAt)) != 0) Report(kNextListAt, "There is an offset of a further record list");
        std::array<char, 4> seed{};
        StoreLittle32(seed.data(), LoadBig16(At(kRecordCountAt)));
        if (m_image.substr(kUniqueIdSeedAt, seed.size()) != std::string_view(seed.data(), seed.size())) {
            Report(kUniqueIdSeedAt, "The unique-ID seed is not the number of records");
        }
    }

    void CheckFourLetters(std::size_t at, std::string_view what) {
        const std::string_view wanted = kTypeAndCreator.substr(at - kTypeAt, 4);
        if (m_image.substr(at, 4) == wanted) return;
        Report(at, "The " + std::string(what) + " is " + Quoted(m_image.substr(at, 4)) + ", not " + Quoted(wanted));
    }

    [[nodiscard]] const char* At(std::size_t offset) const { return m_image.data() + offset; }

    // ---- Record list

    void ReadRecordList() {
        const std::size_t count = LoadBig16(At(kRecordCountAt));
        for (std::size_t i = 0; i < count; ++i) {
            const auto entry = ReadRecordListEntry(m_image, i);
            if (!entry) break;
            m_list.push_back({entry->offset, entry->attributes, entry->uniqueId});
        }
        if (m_list.size() < count) {
            Report(kRecordCountAt, "The file ends inside its record list: it counts " + Counted(count, "record") +
                                       " and lists " + Number(m_list.size()));
        }
        m_latest.fill(kNone);
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            const std::uint8_t attributes = m_list[i].attributes;
            if (IsForeign(attributes) || IsRow(attributes)) continue;
            std::size_t& latest = m_latest[CategoryOf(attributes)];
            if (latest != kNone) {
                Report(EntryAt(latest), Name(attributes) + " record comes again later, which replaces it");
            }
            latest = i;
        }
        for (const std::uint8_t category : kSchemaOrder) {
            if (m_latest[category] == kNone) Report(kHeaderSize, "There is no " + PlainName(category) + " record");
        }
        const bool first = m_latest[kCategoryFieldLengths] == 0;
        if (first && LoadBig32(At(kAppInfoOffsetAt)) == 0) {
            Report(EntryAt(0),
                   "The FieldLengths record stands first in a file without an application-info block, where "
                   "it counts as missing");
        }
    }

    [[nodiscard]] static std::uint64_t EntryAt(std::size_t i) { return kHeaderSize + i * kRecordEntrySize; }
    static std::string PlainName(std::uint8_t attributes) { return std::string(CategoryName(attributes)); }
    static std::string Name(std::uint8_t attributes) { return "The " + PlainName(attributes); }

    // The schema stands before the rows, the shown rows before the hidden ones; the records are numbered in this order.
    void CheckOrder() {
        const auto place = [](std::uint8_t attributes) -> std::size_t {
            const auto* schema = std::find(kSchemaOrder.begin(), kSchemaOrder.end(), CategoryOf(attributes));
            const auto inSchema = static_cast<std::size_t>(schema - kSchemaOrder.begin());
            return CategoryOf(attributes) == kCategoryHidden ? kSchemaRecords + 1 : inSchema;
        };
        bool inOrder = true;
        std::size_t last = 0;
        for (std::size_t i = 0; i < m_list.size() && inOrder; ++i) {
            if (IsForeign(m_list[i].attributes)) continue;
            inOrder = place(m_list[i].attributes) >= last;
            last = place(m_list[i].attributes);
            if (!inOrder) {
                Report(EntryAt(i),
                       "From here on the records do not stand in the order DataType, FieldLabels, "
                       "FieldLengths, Preferences, shown rows, hidden rows");
            }
        }
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            if (m_list[i].uniqueId == i + 1) continue;
            Report(EntryAt(i) + kUniqueIdAt,
                   "From here on the unique IDs are not the numbers of the records in the list: " +
                       Number(m_list[i].uniqueId) + " instead of " + Number(i + 1));
            return;
        }
    }

    // ---- Where a record lies

    [[nodiscard]] std::uint64_t EndOf(std::size_t i) const {
        return i + 1 < m_list.size() ? std::min<std::uint64_t>(m_list[i + 1].offset, m_image.size()) : m_image.size();
    }

    // The bytes of a record as the program reads them; none, with a report, when its offset makes no sense.
    std::string_view RecordBytes(std::size_t i) {
        const std::uint64_t begin = m_list[i].offset;
        const std::string where =
            Name(m_list[i].attributes) + " record " + Number(i + 1) + " begins at " + Number(begin);
        if (begin >= m_image.size()) {
            Report(EntryAt(i), where + ", outside the file");
            return {};
        }
        if (i > 0 && begin < m_list[i - 1].offset) {
            Report(EntryAt(i), where + ", before the record ahead of it");
            return {};
        }
        const std::uint64_t end = EndOf(i);
        if (end < begin + kRecordHeader.size()) {
            Report(EntryAt(i), where + " and is shorter than a record header");
            return {};
        }
        if (begin < EntryAt(m_list.size())) {
            Report(EntryAt(i), where + ", inside the record list");
        } else if (m_appInfoAt != 0 && begin < m_appInfoAt + kAppInfoFixedSize && end > m_appInfoAt) {
            Report(EntryAt(i), where + ", across the application-info block");
        }
        m_bytesRead += end - begin;
        if (m_bytesRead > 2 * static_cast<std::uint64_t>(m_image.size())) {
            if (!m_tooLong) Report(EntryAt(i), "The records from here on overlap so much that they are not read");
            m_tooLong = true;
            return {};
        }
        return m_image.substr(begin, end - begin);
    }

    // ---- Fields, which everything else refers to

    // None when a record that tells of them is missing or lies nowhere: then nothing is said against them.
    void FindFields() {
        CDatabaseReader reader;
        reader.ReadHeader(m_image);
        const auto isMissing = [this](std::uint8_t category) {
            return m_latest[category] == kNone || m_list[m_latest[category]].bytes.empty();
        };
        if (!reader.ReadSchema() || isMissing(kCategoryFieldLabels) || isMissing(kCategoryDataType)) return;
        m_knowsFields = true;
        for (std::size_t k = 0; k < reader.ColumnCount(); ++k) {
            Field field;
            field.name = reader.ColumnName(k).value_or(std::string_view{});
            DecodeFieldType(reader.ColumnTypeText(k).value_or(std::string_view{}), field.type, field.options);
            m_fields.push_back(std::move(field));
        }
    }

    // ---- Application-info block

    void CheckAppInfo() {
        const std::uint64_t listEnd = EntryAt(m_list.size());
        const std::uint64_t records = m_list.empty() ? m_image.size() : m_list[0].offset;
        AppInfoCheck(m_image, m_knowsFields, m_fields, m_departures).Check(m_appInfoAt, listEnd, records);
    }

    // ---- Records

    void FindRecords() {
        m_appInfoAt = LoadBig32(At(kAppInfoOffsetAt));
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            const std::uint8_t attributes = m_list[i].attributes;
            if (IsForeign(attributes)) {
                Report(EntryAt(i), "Record " + Number(i + 1) + " is of another program or kind (attributes " +
                                       Number(attributes) + ") and is not kept when the file is written");
            } else {
                m_list[i].bytes = RecordBytes(i);
            }
        }
    }

    void CheckRecords() {
        RecordCheck check(m_image, m_page, m_knowsFields, m_fields, m_departures);
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            const ListEntry& entry = m_list[i];
            m_progress.At(i);
            if (entry.bytes.empty()) continue;
            check.Check(entry.bytes, entry.attributes, m_latest[CategoryOf(entry.attributes)] == i);
            if (!m_departures.HandOver()) return;
        }
    }

    std::string_view m_image;
    const AnsiText& m_page;
    Progress& m_progress;
    Departures m_departures;
    std::vector<ListEntry> m_list;
    std::array<std::size_t, kLastCategory + 1> m_latest{};  // of each schema category; the one that counts
    bool m_knowsFields = false;
    std::vector<Field> m_fields;
    std::uint64_t m_appInfoAt = 0;
    std::uint64_t m_bytesRead = 0;
    bool m_tooLong = false;
};

}  // namespace

void CheckImage(std::string_view image, const AnsiText& page, Progress& progress, TakeDeparture take) {
    Checker(image, page, progress, std::move(take)).Run();
}

}  // namespace quillary
