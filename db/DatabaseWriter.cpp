#include "db/DatabaseWriter.h"

#include <algorithm>
#include <optional>

#include "db/Bytes.h"

namespace quillary {

namespace {

constexpr std::uint8_t kMatchAnyCode = 0x80;

std::optional<std::uint8_t> PositionOf(std::string_view name, const std::vector<Field>& fields) {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [name](const Field& field) { return field.name == name; });
    if (found == fields.end()) return std::nullopt;
    return static_cast<std::uint8_t>(found - fields.begin());
}

// The entries of a schema record: `text(field)` for each field, `padding` behind the last one.
template <typename Text>
std::string SchemaEntries(const std::vector<Field>& fields, std::string_view padding, Text text) {
    std::string entries;
    for (std::uint8_t k = 0; k < kMaxFields; ++k) {
        AppendEntry(entries, k, k < fields.size() ? std::string(text(fields[k])) : std::string(padding));
    }
    return entries;
}

std::string PreferenceEntries(const DatabaseContent& content) {
    std::string entries;
    AppendEntry(entries, kInfoTextEntry, content.infoText);
    AppendEntry(entries, kInfoLockEntry, std::to_string(content.infoLockHash));
    for (std::uint8_t k = kInfoLockEntry + 1; k < kMaxFields; ++k) AppendEntry(entries, k, {});
    return entries;
}

// Writes records one behind the other and fills in the record list.
class RecordWriter {
  public:
    RecordWriter(char* image, std::size_t firstRecordAt)
        : m_image(image), m_list(image + kHeaderSize), m_at(image + firstRecordAt) {}

    // Returns where the entries stand in the image.
    const char* Write(std::uint8_t category, std::string_view entries) {
        StoreBig32(m_list, static_cast<std::uint32_t>(m_at - m_image));
        StoreBig32(m_list + 4, static_cast<std::uint32_t>(category) << 24 | m_nextUniqueId++);
        m_list += kRecordEntrySize;
        kRecordHeader.copy(m_at, kRecordHeader.size());
        const char* written = m_at += kRecordHeader.size();
        entries.copy(m_at, entries.size());
        m_at += entries.size();
        kEndMark.copy(m_at, kEndMark.size());
        m_at += kEndMark.size();
        return written;
    }

    void WriteAll(std::uint8_t category, std::vector<RecordRef>& records) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            // Sorted records lie all over the old image: the next ones are on their way while this one is copied.
            if (i + kAhead < records.size()) {
                const RecordRef& ahead = records[i + kAhead];
                __builtin_prefetch(ahead.data);
                __builtin_prefetch(ahead.data + ahead.size / 2);
            }
            RecordRef& record = records[i];
            record = {Write(category, record.Entries()), record.size, category};
        }
    }

  private:
    static constexpr std::size_t kAhead = 8;
    char* m_image;
    char* m_list;
    char* m_at;
    std::uint32_t m_nextUniqueId = 1;
};

constexpr std::size_t kRecordOverhead = kRecordHeader.size() + kEndMark.size();

std::uint64_t SizeOf(const std::vector<RecordRef>& records) {
    std::uint64_t size = 0;
    for (const RecordRef& record : records) size += kRecordOverhead + record.size;
    return size;
}

// Conditions and keys whose name is no field are left out, and the used ones move up.
void FillSettings(DatabaseContent& content) {
    std::size_t used = 0;
    for (const FilterCondition& condition : content.filter.conditions) {
        const auto field = PositionOf(condition.field, content.fields);
        if (used == kMaxConditions) break;
        if (!condition.allFields && !field) continue;
        const bool any = used == 0 && content.filter.matchAny;
        content.appInfo.SetCondition(
            used++, {condition.value,
                     static_cast<std::uint8_t>(condition.allFields ? kAllFieldsSelector : *field + kFirstFieldSelector),
                     static_cast<std::uint8_t>((condition.operation & 0x0F) | (any ? kMatchAnyCode : 0))});
    }
    while (used < kMaxConditions) content.appInfo.SetCondition(used++, {});

    used = 0;
    for (const SortKey& key : content.sort) {
        const auto field = PositionOf(key.field, content.fields);
        if (field && used < kMaxSortKeys) {
            content.appInfo.SetSortKey(used++, {*field, key.descending});
        }
    }
    while (used < kMaxSortKeys) content.appInfo.SetSortKey(used++, {});
}

}  // namespace

bool EncodeDatabase(DatabaseContent& content, Image& image, Failure& failure) {
    const std::size_t records = content.shown.size() + content.hidden.size();
    if (records > kMaxRecords) {
        failure.Set(Message::TooManyRecords, {"Nothing was written."});
        return false;
    }
    const std::string types = SchemaEntries(content.fields, kTypeFiller, StoredFieldType);
    const std::string labels = SchemaEntries(content.fields, {}, [](const Field& field) { return field.name; });
    const std::string lengths = SchemaEntries(content.fields, kWidthFiller, StoredFieldWidth);
    const std::string preferences = PreferenceEntries(content);

    const std::size_t entryCount = records + kSchemaRecords;
    const std::size_t appInfoAt = kHeaderSize + entryCount * kRecordEntrySize + kGapSize;
    const std::size_t firstRecordAt = appInfoAt + kAppInfoWrittenSize;
    const std::uint64_t size = firstRecordAt + kSchemaRecords * kRecordOverhead + types.size() + labels.size() +
                               lengths.size() + preferences.size() + SizeOf(content.shown) + SizeOf(content.hidden);
    if (size > kMaxReadSize) {
        failure.Set(Message::ImageTooLarge);
        return false;
    }

    content.header.SetRecordCount(static_cast<std::uint16_t>(entryCount));
    content.header.SetAppInfoOffset(static_cast<std::uint32_t>(appInfoAt));
    FillSettings(content);

    image = Image(static_cast<std::size_t>(size));
    content.header.Bytes().copy(image.Data(), kHeaderSize);
    std::fill_n(image.Data() + appInfoAt - kGapSize, kGapSize, '\0');
    content.appInfo.Write(image.Data() + appInfoAt);
    RecordWriter writer(image.Data(), firstRecordAt);
    writer.Write(kCategoryDataType, types);
    writer.Write(kCategoryFieldLabels, labels);
    writer.Write(kCategoryFieldLengths, lengths);
    writer.Write(kCategoryPreferences, preferences);
    writer.WriteAll(kCategoryShown, content.shown);
    writer.WriteAll(kCategoryHidden, content.hidden);
    return true;
}

}  // namespace quillary
