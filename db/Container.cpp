#include "db/Container.h"

#include <algorithm>
#include <cstring>

#include "db/Bytes.h"

namespace quillary {

namespace {

constexpr std::uint16_t kNewAttributes = 0x0008;
constexpr char kNewSeedByte = 0x32;
constexpr std::string_view kCategoryNames[] = {kFirstCategoryName, "FieldLabels", "DataRecords", "DataRecordsFout",
                                               "Preferences",      "DataType",    "FieldLengths"};
constexpr std::uint8_t kCategoryCount = 16;
constexpr std::size_t kSelectorAt = 40;  // in a condition
constexpr std::size_t kCodesAt = 41;
constexpr std::int32_t kWideKeysFromLockWord = 3;

std::string_view UpToNul(std::string_view text) { return text.substr(0, std::min(text.find('\0'), text.size())); }

// What there is of `size` bytes at `offset`.
std::string_view Clip(std::string_view image, std::uint64_t offset, std::uint64_t size) {
    if (offset >= image.size()) return {};
    return image.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

}  // namespace

DatabaseHeader::DatabaseHeader(std::string_view name) {
    SetName(name);
    StoreBig16(&m_bytes[kAttributesAt], kNewAttributes);
    kTypeAndCreator.copy(&m_bytes[kTypeAt], kTypeAndCreator.size());
    m_bytes[kUniqueIdSeedAt] = kNewSeedByte;
}

std::optional<DatabaseHeader> DatabaseHeader::Read(std::string_view image) {
    if (image.size() < kHeaderSize) return std::nullopt;
    DatabaseHeader header;
    image.copy(header.m_bytes.data(), kHeaderSize);
    return header;
}

std::string_view DatabaseHeader::Name() const { return UpToNul({m_bytes.data(), kNameSize}); }

void DatabaseHeader::SetName(std::string_view name) {
    std::fill_n(m_bytes.begin(), kNameSize, '\0');
    name.substr(0, kNameSize - 1).copy(m_bytes.data(), kNameSize - 1);
}

std::uint16_t DatabaseHeader::Version() const { return LoadBig16(&m_bytes[kVersionAt]); }

std::uint32_t DatabaseHeader::AppInfoOffset() const { return LoadBig32(&m_bytes[kAppInfoOffsetAt]); }

void DatabaseHeader::SetAppInfoOffset(std::uint32_t offset) { StoreBig32(&m_bytes[kAppInfoOffsetAt], offset); }

std::uint16_t DatabaseHeader::RecordCount() const { return LoadBig16(&m_bytes[kRecordCountAt]); }

void DatabaseHeader::SetRecordCount(std::uint16_t count) {
    StoreBig16(&m_bytes[kRecordCountAt], count);
    StoreLittle32(&m_bytes[kUniqueIdSeedAt], count);
}

std::optional<RecordListEntry> ReadRecordListEntry(std::string_view image, std::size_t index) {
    const std::size_t at = kHeaderSize + index * kRecordEntrySize;
    if (at + kRecordEntrySize > image.size()) return std::nullopt;
    const char* entry = image.data() + at;
    const std::uint32_t attributesAndId = LoadBig32(entry + 4);
    return RecordListEntry{LoadBig32(entry), static_cast<std::uint8_t>(attributesAndId >> 24),
                           attributesAndId & 0xFFFFFF};
}

bool IsDatabaseImage(std::string_view image) {
    const auto header = DatabaseHeader::Read(image);
    if (!header || header->Version() != 0) return false;
    for (std::size_t i = 0; i < header->RecordCount(); ++i) {
        const auto entry = ReadRecordListEntry(image, i);
        if (!entry) return false;
        if ((entry->attributes & ~kDirtyBit) == kCategoryFieldLabels) return true;
    }
    return false;
}

AppInfoBlock::AppInfoBlock() {
    for (std::size_t i = 0; i < std::size(kCategoryNames); ++i) {
        kCategoryNames[i].copy(&m_fixed[kCategoryNamesAt + i * kCategoryNameSize], kCategoryNameSize);
    }
    for (std::uint8_t i = 0; i < kCategoryCount; ++i) m_fixed[kCategoryIdsAt + i] = static_cast<char>(i);
    m_fixed[kLastUniqueIdAt] = kCategoryCount - 1;
    StoreBig16(&m_fixed[kFormatVersionAt], kFormatVersion);
    for (std::size_t k = 0; k < kMaxConditions; ++k) {
        m_fixed[kConditionsAt + k * kConditionSize + kSelectorAt] = '\xFF';
    }
}

AppInfoBlock AppInfoBlock::Read(std::string_view image, std::uint32_t offset) {
    AppInfoBlock block;
    block.m_fixed.fill(0);
    Clip(image, offset, kAppInfoFixedSize).copy(block.m_fixed.data(), kAppInfoFixedSize);

    const bool wide = static_cast<std::int32_t>(block.LockWord()) >= kWideKeysFromLockWord;
    const std::size_t keySize = wide ? kWideSortKeySize : kWrittenSortKeySize;
    for (std::size_t k = 0; k < kMaxSortKeys; ++k) {
        std::array<char, kWideSortKeySize> key{};
        Clip(image, offset + kAppInfoFixedSize + k * keySize, keySize).copy(key.data(), keySize);
        block.m_sortKeys[k] = {static_cast<std::uint8_t>(key[0]), key[1] != 0};
    }
    if (block.FormatVersion() == 0) block.SetLockWord(0);
    return block;
}

std::uint16_t AppInfoBlock::FormatVersion() const { return LoadBig16(&m_fixed[kFormatVersionAt]); }

std::uint32_t AppInfoBlock::LockWord() const { return LoadBig32(&m_fixed[kLockWordAt]); }

void AppInfoBlock::SetLockWord(std::uint32_t word) { StoreBig32(&m_fixed[kLockWordAt], word); }

void AppInfoBlock::SetEditOnSelect(bool on) {
    if (on != EditOnSelect()) m_fixed[kEditOnSelectAt] = on ? 1 : 0;
}

void AppInfoBlock::SetStyle(DateStyle style) {
    if (style != Style()) m_fixed[kDateStyleAt] = style == DateStyle::Long ? 1 : 0;
}

StoredCondition AppInfoBlock::Condition(std::size_t k) const {
    const char* at = &m_fixed[kConditionsAt + k * kConditionSize];
    return {std::string(UpToNul({at, kConditionTextSize})), static_cast<std::uint8_t>(at[kSelectorAt]),
            static_cast<std::uint8_t>(at[kCodesAt])};
}

void AppInfoBlock::SetCondition(std::size_t k, const StoredCondition& condition) {
    char* at = &m_fixed[kConditionsAt + k * kConditionSize];
    std::fill_n(at, kConditionSize, '\0');
    if (condition.selector == 0) return;
    condition.text.copy(at, kConditionTextSize);
    at[kSelectorAt] = static_cast<char>(condition.selector);
    at[kCodesAt] = static_cast<char>(condition.codes);
}

void AppInfoBlock::Write(char* at) const {
    std::copy(m_fixed.begin(), m_fixed.end(), at);
    StoreBig16(at + kFormatVersionAt, kFormatVersion);
    at += kAppInfoFixedSize;
    for (const StoredSortKey& key : m_sortKeys) {
        const bool used = key.field != kUnusedSortKey;
        at[0] = static_cast<char>(key.field);
        at[1] = used && key.descending ? 1 : 0;
        at[2] = at[3] = 0;
        at += kWrittenSortKeySize;
    }
}

}  // namespace quillary
