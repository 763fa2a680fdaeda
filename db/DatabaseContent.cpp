#include "db/DatabaseContent.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "db/DatabaseReader.h"
#include "db/FieldValue.h"

namespace quillary {

namespace {

// Replaces the bytes of a schema text behind which the entries up to `last` could not be found. No text made here holds
// any; a damaged file's would change what its later entries read as from save to save.
std::string WithoutHidingBytes(std::string_view text, std::size_t entry, std::size_t last) {
    std::string plain(text);
    std::replace_if(
        plain.begin(), plain.end(), [entry, last](unsigned char byte) { return byte > entry && byte <= last; }, '?');
    return plain;
}

std::vector<Field> FieldsOf(CDatabaseReader& reader) {
    std::vector<Field> fields(reader.ColumnCount());
    const std::size_t endOfNames = std::min(fields.size(), kMaxFields - 1);
    for (std::size_t k = 0; k < fields.size(); ++k) {
        Field& field = fields[k];
        field.name = WithoutHidingBytes(reader.ColumnName(k).value_or(std::string_view{}), k, endOfNames);
        std::string type =
            WithoutHidingBytes(reader.ColumnTypeText(k).value_or(std::string_view{}), k, fields.size() - 1);
        DecodeFieldType(type, field.type, field.options);
        field.storedType = std::move(type);
        field.width = reader.ColumnWidth(k);
        if (const auto width = reader.ColumnWidthText(k)) {
            field.storedWidth = WithoutHidingBytes(*width, k, fields.size() - 1);
        }
    }
    return fields;
}

// Conditions and keys are stored from format version 3 on; those that name no field are left out.
FilterSettings LoadFilter(const AppInfoBlock& block, const std::vector<Field>& fields) {
    FilterSettings filter;
    if (block.FormatVersion() < kFormatVersion) return filter;
    const StoredCondition first = block.Condition(0);
    filter.matchAny = first.selector != 0 && first.codes >> 4 != 0;
    for (std::size_t k = 0; k < kMaxConditions; ++k) {
        const StoredCondition stored = block.Condition(k);
        const bool allFields = stored.selector == kAllFieldsSelector;
        const std::size_t field = stored.selector - kFirstFieldSelector;
        if (stored.selector == 0 || (!allFields && field >= fields.size())) continue;
        filter.conditions.push_back({allFields, allFields ? std::string() : fields[field].name,
                                     static_cast<std::uint8_t>(stored.codes & 0x0F), stored.text});
    }
    return filter;
}

SortSettings LoadSort(const AppInfoBlock& block, const std::vector<Field>& fields) {
    SortSettings sort;
    if (block.FormatVersion() < kFormatVersion) return sort;
    for (std::size_t k = 0; k < kMaxSortKeys; ++k) {
        const StoredSortKey key = block.SortKey(k);
        if (key.field < fields.size()) sort.push_back({fields[key.field].name, key.descending});
    }
    return sort;
}

}  // namespace

DatabaseContent ContentOf(CDatabaseReader& reader) {
    DatabaseContent content;
    content.header = reader.Header();
    content.appInfo = reader.AppInfo();
    content.fields = FieldsOf(reader);
    content.infoText = WithoutHidingBytes(reader.Preference(kInfoTextEntry).value_or(std::string_view{}),
                                          kInfoTextEntry, kInfoLockEntry);
    content.infoLockHash = ReadDecimal(reader.Preference(kInfoLockEntry).value_or(std::string_view{}));
    content.filter = LoadFilter(content.appInfo, content.fields);
    content.sort = LoadSort(content.appInfo, content.fields);

    const bool filterIsStored = content.appInfo.FormatVersion() >= kFormatVersion;
    content.shown.reserve(reader.DataRecordCount());
    for (bool more = reader.FirstDataRecord(); more; more = reader.NextDataRecord()) {
        const RecordRef& record = reader.DataRecord();
        const std::uint8_t category = filterIsStored ? record.category : kCategoryShown;
        const bool shown = (category & ~kDirtyBit) == kCategoryShown;
        (shown ? content.shown : content.hidden).push_back({record.data, record.size, category});
    }
    return content;
}

}  // namespace quillary
