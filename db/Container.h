// The database container: header, record list and application-info block, as bytes and as what they mean.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "db/Layout.h"

namespace quillary {

enum class DateStyle : std::uint8_t { Numeric, Long };

/// The 78 bytes of the header. What the program never interprets is carried as it was.
class DatabaseHeader {
  public:
    /// The header of a new database; `name` is cut to 31 bytes.
    DatabaseHeader() : DatabaseHeader(std::string_view{}) {}
    explicit DatabaseHeader(std::string_view name);
    /// nullopt when `image` is shorter than a header.
    [[nodiscard]] static std::optional<DatabaseHeader> Read(std::string_view image);

    [[nodiscard]] std::string_view Name() const;
    void SetName(std::string_view name);
    [[nodiscard]] std::uint16_t Version() const;
    [[nodiscard]] std::uint32_t AppInfoOffset() const;
    void SetAppInfoOffset(std::uint32_t offset);
    [[nodiscard]] std::uint16_t RecordCount() const;
    /// Also sets the unique-ID seed, which holds the same number little-endian.
    void SetRecordCount(std::uint16_t count);
    [[nodiscard]] std::string_view Bytes() const { return {m_bytes.data(), m_bytes.size()}; }

  private:
    std::array<char, kHeaderSize> m_bytes{};
};

/// An entry of the record list.
struct RecordListEntry {
    std::uint32_t offset;
    std::uint8_t attributes;
    std::uint32_t uniqueId;
};
/// Entry `index` (0-based, in file order), or nullopt when `image` ends before it.
[[nodiscard]] std::optional<RecordListEntry> ReadRecordListEntry(std::string_view image, std::size_t index);

/// True when the file is a database of this program: version 0 and a FieldLabels record in the list.
[[nodiscard]] bool IsDatabaseImage(std::string_view image);

struct StoredCondition {
    std::string text;           // at most 40 bytes
    std::uint8_t selector = 0;  // 0 unused, 1 All Fields, else field number + 2
    std::uint8_t codes = 0;     // low four bits operator, high four bits 8 = or (first condition)
};

struct StoredSortKey {
    std::uint8_t field = kUnusedSortKey;
    bool descending = false;
};

/// The application-info block: 416 fixed bytes and three sort keys.
class AppInfoBlock {
  public:
    /// The block of a new database.
    AppInfoBlock();
    /// Bytes beyond the image's end read as zero. The sort keys are read 5 bytes wide when the lock word is 3 or more;
    /// format version 0 clears the lock word.
    [[nodiscard]] static AppInfoBlock Read(std::string_view image, std::uint32_t offset);

    [[nodiscard]] std::uint16_t FormatVersion() const;
    /// The password hash; not 0 means locked.
    [[nodiscard]] std::uint32_t LockWord() const;
    void SetLockWord(std::uint32_t word);
    [[nodiscard]] bool EditOnSelect() const { return m_fixed[kEditOnSelectAt] == 1; }
    void SetEditOnSelect(bool on);
    [[nodiscard]] DateStyle Style() const { return m_fixed[kDateStyleAt] ? DateStyle::Long : DateStyle::Numeric; }
    void SetStyle(DateStyle style);

    [[nodiscard]] StoredCondition Condition(std::size_t k) const;
    /// An unused condition becomes 42 zero bytes.
    void SetCondition(std::size_t k, const StoredCondition& condition);
    [[nodiscard]] StoredSortKey SortKey(std::size_t k) const { return m_sortKeys[k]; }
    void SetSortKey(std::size_t k, StoredSortKey key) { m_sortKeys[k] = key; }

    /// Writes the 428 bytes of the file, with format version 3, to `at`.
    void Write(char* at) const;

  private:
    std::array<char, kAppInfoFixedSize> m_fixed{};
    std::array<StoredSortKey, kMaxSortKeys> m_sortKeys{};
};

}  // namespace quillary
