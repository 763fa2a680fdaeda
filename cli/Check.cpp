#include "cli/Check.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/Bytes.h"
#include "db/Container.h"
#include "db/DatabaseReader.h"
#include "db/FieldType.h"
#include "db/FieldValue.h"
#include "db/RecordBuffer.h"

namespace quillary {

namespace {

constexpr std::size_t kMostDepartures = 10'000;
constexpr std::size_t kSortInfoAt = 56;
constexpr std::size_t kCreatorAt = 64;
constexpr std::size_t kNextListAt = 72;
constexpr std::size_t kUniqueIdAt = 5;   // in an entry of the record list
constexpr std::size_t kSelectorAt = 40;  // in a condition
constexpr std::size_t kCodesAt = 41;
constexpr std::uint8_t kLastCategory = kCategoryFieldLengths;
// In entries of different numbers: one before each of them, and a number 0. A list of those in a hostile file, which
// may be nothing but NULs, would need many times its memory.
constexpr std::ptrdiff_t kMostNuls = 256 + 1;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The order in which the records stand: the schema, then the rows.
constexpr std::array<std::uint8_t, kSchemaRecords> kSchemaOrder = {kCategoryDataType, kCategoryFieldLabels,
                                                                   kCategoryFieldLengths, kCategoryPreferences};
constexpr std::string_view kCategoryNames[] = {"",         "FieldLabels", "data", "hidden data", "Preferences",
                                               "DataType", "FieldLengths"};

std::uint8_t CategoryOf(std::uint8_t attributes) { return attributes & ~kDirtyBit; }
bool IsForeign(std::uint8_t attributes) {
    return CategoryOf(attributes) == 0 || CategoryOf(attributes) > kLastCategory;
}
bool IsRow(std::uint8_t attributes) {
    return CategoryOf(attributes) == kCategoryShown || CategoryOf(attributes) == kCategoryHidden;
}

std::string Number(std::uint64_t number) { return std::to_string(number); }

class Checker {
  public:
    Checker(std::string_view image, const AnsiText& page) : m_image(image), m_page(page) {}

    std::vector<Departure> Run() {
        if (m_image.size() < kHeaderSize) {
            Report(0, "The file is shorter than a header");
            return Result();
        }
        CheckHeader();
        ReadRecordList();
        CheckOrder();
        FindFields();
        CheckAppInfo();
        CheckRecords();
        return Result();
    }

  private:
    struct ListEntry {
        std::uint32_t offset;
        std::uint8_t attributes;
        std::uint32_t uniqueId;
    };

    // ---- What was found

    void Report(std::uint64_t offset, const std::string& problem) {
        if (m_found.size() < kMostDepartures) {
            m_found.push_back({offset, OneLine(problem)});
        } else {
            ++m_untold;
        }
    }

    std::vector<Departure> Result() {
        std::stable_sort(m_found.begin(), m_found.end(),
                         [](const Departure& a, const Departure& b) { return a.offset < b.offset; });
        if (m_untold > 0) {
            m_found.push_back({m_image.size(), "The check lists no more than " + Number(kMostDepartures) +
                                                   " departures, and found " + Number(m_untold) + " more"});
        }
        return std::move(m_found);
    }

    std::string Quoted(std::string_view text) const { return quillary::Quoted(ForMessage(text, m_page)); }
    std::uint64_t OffsetOf(std::string_view text) const {
        return static_cast<std::uint64_t>(text.data() - m_image.data());
    }

    // ---- Header

    void CheckHeader() {
        if (m_image.substr(0, kNameSize).find('\0') == std::string_view::npos) {
            Report(0, "The name of the database has no end");
        }
        if (const auto version = LoadBig16(At(kVersionAt))) {
            Report(kVersionAt, "The version is " + Number(version) + ", not 0");
        }
        CheckFourLetters(kTypeAt, "type");
        CheckFourLetters(kCreatorAt, "creator");
        if (LoadBig32(At(kSortInfoAt)) != 0) Report(kSortInfoAt, "There is an offset of a sort-info block");
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
    static std::string PlainName(std::uint8_t attributes) {
        return std::string(kCategoryNames[CategoryOf(attributes)]);
    }
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

    // The bytes of a record as the program reads them; nullopt, with a report, when its offset makes no sense.
    std::optional<std::string_view> RecordBytes(std::size_t i) {
        const std::uint64_t begin = m_list[i].offset;
        const std::string where =
            Name(m_list[i].attributes) + " record " + Number(i + 1) + " begins at " + Number(begin);
        if (begin >= m_image.size()) {
            Report(EntryAt(i), where + ", outside the file");
            return std::nullopt;
        }
        if (i > 0 && begin < m_list[i - 1].offset) {
            Report(EntryAt(i), where + ", before the record ahead of it");
            return std::nullopt;
        }
        const std::uint64_t end = EndOf(i);
        if (end < begin + kRecordHeader.size()) {
            Report(EntryAt(i), where + " and is shorter than a record header");
            return std::nullopt;
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
            return std::nullopt;
        }
        return m_image.substr(begin, end - begin);
    }

    // ---- Fields, which everything else refers to

    void FindFields() {
        CDatabaseReader reader;
        reader.ReadHeader(m_image);
        if (!reader.ReadSchema()) return;
        for (std::size_t k = 0; k < reader.ColumnCount(); ++k) {
            Field field;
            field.name = reader.ColumnName(k).value_or(std::string_view{});
            DecodeFieldType(reader.ColumnTypeText(k).value_or(std::string_view{}), field.type, field.options);
            m_fields.push_back(std::move(field));
        }
    }

    // ---- Application-info block

    void CheckAppInfo() {
        m_appInfoAt = LoadBig32(At(kAppInfoOffsetAt));
        const std::uint64_t listEnd = EntryAt(m_list.size());
        if (m_appInfoAt == 0) {
            const std::uint64_t records = m_list.empty() ? m_image.size() : m_list[0].offset;
            if (records > listEnd + kGapSize && records <= m_image.size()) {
                Report(listEnd, "Behind the record list are bytes that belong to nothing");
            }
            return;
        }
        if (m_appInfoAt >= m_image.size() || m_appInfoAt < listEnd) {
            Report(kAppInfoOffsetAt, "The application-info block begins at " + Number(m_appInfoAt) +
                                         (m_appInfoAt < listEnd ? ", inside the record list" : ", outside the file"));
            return;
        }
        if (m_appInfoAt != listEnd + kGapSize) {
            Report(kAppInfoOffsetAt, "The application-info block does not begin two bytes behind the record list");
        }
        const std::uint64_t end = m_list.empty() ? m_image.size() : m_list[0].offset;
        const std::uint64_t size = end > m_appInfoAt ? end - m_appInfoAt : m_image.size() - m_appInfoAt;
        if (size < kAppInfoWrittenSize || m_image.size() - m_appInfoAt < kAppInfoWrittenSize) {
            Report(m_appInfoAt, "The application-info block is shorter than " + Number(kAppInfoWrittenSize) + " bytes");
            return;
        }
        constexpr std::size_t kWideSize = kAppInfoFixedSize + kMaxSortKeys * kWideSortKeySize;
        if (size != kAppInfoWrittenSize && size != kWideSize) {
            Report(m_appInfoAt, "Behind the application-info block are bytes that belong to nothing");
        }
        const std::uint16_t formatVersion = LoadBig16(At(m_appInfoAt + kFormatVersionAt));
        if (formatVersion > kFormatVersion) {
            Report(m_appInfoAt + kFormatVersionAt,
                   "The format version is " + Number(formatVersion) + ", above " + Number(kFormatVersion));
        }
        if (formatVersion < kFormatVersion) return;  // neither conditions nor sort keys
        CheckConditions();
        // The program reads wide keys by the lock word alone, and writes narrow ones: the size says what is there.
        CheckSortKeys(size == kWideSize ? kWideSortKeySize : kWrittenSortKeySize);
    }

    void CheckConditions() {
        bool unused = false;
        for (std::size_t k = 0; k < kMaxConditions; ++k) {
            const std::uint64_t at = m_appInfoAt + kConditionsAt + k * kConditionSize;
            const std::string name = "Filter condition " + Number(k + 1);
            const auto selector = static_cast<std::uint8_t>(*At(at + kSelectorAt));
            const auto codes = static_cast<std::uint8_t>(*At(at + kCodesAt));
            if (selector == 0) {
                unused = true;
                continue;
            }
            if (unused) Report(at + kSelectorAt, name + " stands behind an unused one");
            if (m_image.substr(at, kConditionTextSize).find('\0') == std::string_view::npos) {
                Report(at, name + " has a text without an end");
            }
            const std::uint8_t joined = codes >> 4;
            if (joined != 0 && (k > 0 || joined != 8)) {
                Report(at + kCodesAt, name + " has the unknown connective " + Number(joined));
            }
            if (selector != kAllFieldsSelector && selector - kFirstFieldSelector >= static_cast<int>(m_fields.size())) {
                Report(at + kSelectorAt, name + " names no field");
                continue;
            }
            const auto operators = selector == kAllFieldsSelector
                                       ? AllFieldsOperators()
                                       : InfoOf(m_fields[selector - kFirstFieldSelector].type).operators;
            if ((codes & 0x0F) >= operators.size()) {
                Report(at + kCodesAt, name + " has an operator that its field's type lacks");
            }
        }
    }

    void CheckSortKeys(std::size_t size) {
        bool unused = false;
        for (std::size_t k = 0; k < kMaxSortKeys; ++k) {
            const std::uint64_t at = m_appInfoAt + kAppInfoFixedSize + k * size;
            const std::string name = "Sort key " + Number(k + 1);
            const auto field = static_cast<std::uint8_t>(*At(at));
            if (field == kUnusedSortKey) {
                unused = true;
                continue;
            }
            if (unused) Report(at, name + " stands behind an unused one");
            if (field >= m_fields.size()) Report(at, name + " names no field");
            if (static_cast<std::uint8_t>(*At(at + 1)) > 1) Report(at + 1, name + " has an unknown direction");
        }
    }

    // ---- Records

    void CheckRecords() {
        for (std::size_t i = 0; i < m_list.size(); ++i) {
            const std::uint8_t attributes = m_list[i].attributes;
            if (IsForeign(attributes)) {
                Report(EntryAt(i), "Record " + Number(i + 1) + " is of another program or kind (attributes " +
                                       Number(attributes) + ") and is not kept when the file is written");
                continue;
            }
            const auto bytes = RecordBytes(i);
            if (!bytes) continue;
            CheckFrame(*bytes, attributes);
            const std::string_view entries = EntriesOf(bytes->substr(kRecordHeader.size()));
            if (std::count(entries.begin(), entries.end(), '\0') > kMostNuls) {
                Report(OffsetOf(*bytes), Name(attributes) + " record holds more entries than there are entry numbers");
                continue;
            }
            const auto walked = WalkEntries(entries);
            if (!walked) {
                Report(OffsetOf(*bytes), Name(attributes) + " record cannot be walked from entry to entry");
                continue;
            }
            const bool isRow = IsRow(attributes);
            CheckEntryNumbers(*walked, attributes, isRow ? m_fields.size() : kMaxFields);
            CheckHiddenEntries(*walked, isRow);
            if (!isRow && m_latest[CategoryOf(attributes)] == i) CheckSchemaEntries(*walked, attributes);
        }
    }

    void CheckFrame(std::string_view bytes, std::uint8_t attributes) {
        const std::string name = Name(attributes) + " record";
        if (bytes.substr(0, kRecordHeader.size()) != kRecordHeader) {
            Report(OffsetOf(bytes), name + " does not begin with a record header");
        }
        const auto mark = bytes.find('\xFF', kRecordHeader.size());
        if (mark == bytes.npos) {
            Report(OffsetOf(bytes), name + " has no end mark");
            return;
        }
        if (mark == kRecordHeader.size() || bytes[mark - 1] != '\0') {
            Report(OffsetOf(bytes) + mark, name + " ends at a byte FF inside a text");
        }
        if (mark + 1 < bytes.size()) {
            Report(OffsetOf(bytes) + mark + 1,
                   name + " has " + Counted(bytes.size() - mark - 1, "byte") + " behind its end mark");
        }
    }

    void CheckEntryNumbers(const std::vector<Entry>& entries, std::uint8_t attributes, std::size_t count) {
        int last = -1;
        for (const Entry& entry : entries) {
            const std::uint64_t at = OffsetOf(entry.text) - 1;
            const std::string name = "Entry " + Number(entry.number) + " of the " + PlainName(attributes) + " record ";
            if (entry.number == last) {
                Report(at, name + "is there twice");
            } else if (entry.number < last) {
                Report(at, name + "stands behind entry " + Number(static_cast<unsigned>(last)));
            }
            if (entry.number >= count && !m_fields.empty()) Report(at, name + "belongs to no field");
            last = entry.number;
        }
    }

    void CheckHiddenEntries(const std::vector<Entry>& entries, bool isRow) {
        const std::size_t count = isRow ? m_fields.size() : kMaxFields;
        for (const Entry& entry : entries) {
            const auto hidden = FieldHiddenBy(entry.text, entry.number, count);
            if (!hidden) continue;
            const auto name = [&](std::size_t number) {
                return isRow ? "the field " + Quoted(m_fields[number].name) : "entry " + Number(number);
            };
            const auto byte = static_cast<unsigned char>(hidden->byte);
            Report(OffsetOf(entry.text) + entry.text.find(hidden->byte),
                   "The byte " + Number(byte) + " in " + name(entry.number) + " hides " + name(hidden->field));
        }
    }

    void CheckSchemaEntries(const std::vector<Entry>& entries, std::uint8_t attributes) {
        const std::string name = Name(attributes) + " record";
        if (entries.size() != kMaxFields) {
            const std::uint64_t at = entries.empty() ? 0 : OffsetOf(entries.front().text) - 2;
            Report(at, name + " has not " + Number(kMaxFields) + " entries but " + Number(entries.size()));
        }
        for (const Entry& entry : entries) {
            switch (CategoryOf(attributes)) {
                case kCategoryDataType:
                    CheckType(entry);
                    break;
                case kCategoryFieldLabels:
                    if (entry.number >= m_fields.size() && !entry.text.empty()) {
                        Report(OffsetOf(entry.text),
                               "The name " + Quoted(entry.text) + " stands behind an empty one, which ends the table");
                    }
                    break;
                case kCategoryFieldLengths:
                    CheckWidth(entry);
                    break;
                default:
                    CheckPreference(entry);
                    break;
            }
        }
        if (CategoryOf(attributes) == kCategoryFieldLabels && m_fields.empty()) {
            Report(entries.empty() ? 0 : OffsetOf(entries.front().text), "The table has no field");
        }
    }

    void CheckType(const Entry& entry) {
        FieldType type{};
        FieldOptions options;
        DecodeFieldType(entry.text, type, options);
        const bool isFiller = entry.number >= m_fields.size();
        if (isFiller ? entry.text == "T" : EncodeFieldType(type, options) == entry.text) return;
        Report(OffsetOf(entry.text), "The type " + Quoted(entry.text) + " of field " + Number(entry.number + 1u) +
                                         (isFiller ? ", which is not there, is not \"T\""
                                                   : " is unknown; it reads as " + std::string(InfoOf(type).name)));
    }

    void CheckWidth(const Entry& entry) {
        const bool isFiller = entry.number >= m_fields.size();
        if (isFiller ? entry.text == "80" : IsDecimal(entry.text)) return;
        Report(OffsetOf(entry.text), "The width " + Quoted(entry.text) + " of field " + Number(entry.number + 1u) +
                                         (isFiller ? ", which is not there, is not \"80\"" : " is no number"));
    }

    void CheckPreference(const Entry& entry) {
        if (entry.number == 1 && !IsDecimal(entry.text)) {
            Report(OffsetOf(entry.text), "The lock of the info text is no number: " + Quoted(entry.text));
        } else if (entry.number > 1 && !entry.text.empty()) {
            Report(OffsetOf(entry.text), "Entry " + Number(entry.number) + " of the Preferences record is not empty");
        }
    }

    static bool IsDecimal(std::string_view text) { return std::to_string(ReadDecimal(text)) == text; }

    std::string_view m_image;
    const AnsiText& m_page;
    std::vector<ListEntry> m_list;
    std::array<std::size_t, kLastCategory + 1> m_latest{};  // of each schema category; the one that counts
    std::vector<Field> m_fields;
    std::uint64_t m_appInfoAt = 0;
    std::uint64_t m_bytesRead = 0;
    bool m_tooLong = false;
    std::vector<Departure> m_found;
    std::uint64_t m_untold = 0;
};

}  // namespace

std::vector<Departure> CheckImage(std::string_view image, const AnsiText& page) { return Checker(image, page).Run(); }

}  // namespace quillary
