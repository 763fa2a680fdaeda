// Where things stand in a database file. Offsets and sizes in bytes; integers are big-endian except where a line says
// otherwise. docs/file-format.md has the story.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillary {

inline constexpr std::size_t kMaxFields = 20;
inline constexpr std::size_t kSchemaRecords = 4;
inline constexpr std::size_t kMaxRecords = 65535 - kSchemaRecords;  // the count is a 16-bit number
inline constexpr std::uint64_t kMaxReadSize = 1u << 30;             // larger files are neither opened nor written
static_assert(kMaxReadSize <= 0xFFFFFFFFu);                         // offsets are 32-bit numbers

// Header
inline constexpr std::size_t kHeaderSize = 78;
inline constexpr std::size_t kNameSize = 32;  // with its NUL
inline constexpr std::size_t kAttributesAt = 32;
inline constexpr std::size_t kVersionAt = 34;
inline constexpr std::size_t kAppInfoOffsetAt = 52;
inline constexpr std::size_t kSortInfoOffsetAt = 56;  // of a block that this system neither reads nor writes
inline constexpr std::size_t kTypeAt = 60;
inline constexpr std::size_t kUniqueIdSeedAt = 68;  // Little-endian, alone in the header: files must stay byte-equal.
inline constexpr std::size_t kRecordCountAt = 76;
static_assert(kRecordCountAt + 2 == kHeaderSize);
inline constexpr std::string_view kTypeAndCreator = "Qly1Qly1";

// Record list, then two zero bytes
inline constexpr std::size_t kRecordEntrySize = 8;  // offset 4, attributes 1, unique ID 3
inline constexpr std::size_t kGapSize = 2;

// Application-info block
inline constexpr std::size_t kCategoryNamesAt = 2;
inline constexpr std::size_t kCategoryNameSize = 16;
inline constexpr std::string_view kFirstCategoryName = "Unfiled";
inline constexpr std::size_t kCategoryIdsAt = 258;
inline constexpr std::size_t kLastUniqueIdAt = 274;
inline constexpr std::size_t kFormatVersionAt = 276;
inline constexpr std::size_t kLockWordAt = 278;
inline constexpr std::size_t kEditOnSelectAt = 282;
inline constexpr std::size_t kDateStyleAt = 283;
inline constexpr std::size_t kConditionsAt = 290;
inline constexpr std::size_t kConditionSize = 42;  // comparison text 40, field selector 1, operator and connective 1
inline constexpr std::size_t kConditionTextSize = 40;
inline constexpr std::size_t kMaxConditions = 3;
inline constexpr std::size_t kAppInfoFixedSize = 416;
static_assert(kConditionsAt + kMaxConditions * kConditionSize == kAppInfoFixedSize);
inline constexpr std::size_t kMaxSortKeys = 3;
inline constexpr std::size_t kWrittenSortKeySize = 4;  // field number 1, direction 1, reserved 2
inline constexpr std::size_t kWideSortKeySize = 5;     // read when the lock word is 3 or more
inline constexpr std::size_t kAppInfoWrittenSize = kAppInfoFixedSize + kMaxSortKeys * kWrittenSortKeySize;
static_assert(kAppInfoWrittenSize == 428);
inline constexpr std::uint8_t kUnusedSortKey = 0xFF;
inline constexpr std::uint8_t kAllFieldsSelector = 1;
inline constexpr std::uint8_t kFirstFieldSelector = 2;
inline constexpr std::uint16_t kFormatVersion = 3;

// Record: header, numbered entries, end mark
inline constexpr std::string_view kRecordHeader{"\xFF\xFF\xFF\x01\xFF\x00", 6};
inline constexpr std::string_view kEndMark{"\x00\xFF", 2};

// What stands in the entries behind the last field's, of types and of widths
inline constexpr std::string_view kTypeFiller = "T";
inline constexpr std::string_view kWidthFiller = "80";

// Entries of the Preferences record
inline constexpr std::uint8_t kInfoTextEntry = 0;
inline constexpr std::uint8_t kInfoLockEntry = 1;

// Categories, compared as whole attribute bytes with or without the dirty bit
inline constexpr std::uint8_t kDirtyBit = 0x40;
inline constexpr std::uint8_t kCategoryFieldLabels = 1;
inline constexpr std::uint8_t kCategoryShown = 2;
inline constexpr std::uint8_t kCategoryHidden = 3;
inline constexpr std::uint8_t kCategoryPreferences = 4;
inline constexpr std::uint8_t kCategoryDataType = 5;
inline constexpr std::uint8_t kCategoryFieldLengths = 6;

}  // namespace quillary
