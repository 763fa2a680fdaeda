// One record in memory, and the two ways to find its entries: the scan that everything shows and sorts by, and the walk
// that a rewrite takes. Bytes: docs/file-format.md, "Record".
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/Layout.h"

namespace quillary {

/// A record that lives elsewhere (in the image or the arena of its database): immutable, cheap to copy and move.
/// `entries` are the bytes between the record header and the end mark: 00, number, text, 00, number, text ...
struct RecordRef {
    const char* data = nullptr;
    std::uint32_t size = 0;
    std::uint8_t category = kCategoryShown;  // the whole attribute byte

    [[nodiscard]] std::string_view Entries() const { return {data, size}; }
};
static_assert(sizeof(RecordRef) == 16);

/// The entries of a record as its file bytes behind the record header hold them: up to the end mark, which may be
/// missing. Its zero is cut off too, so that no search takes it for the number of entry 0.
[[nodiscard]] std::string_view EntriesOf(std::string_view bytesBehindHeader);

/// The text of entry `number` (0..19), or nullopt when the entries end first.
/// Scans for the byte instead of walking the entries, as existing files need: a line feed in a text is found as
/// entry 10. The first byte is the high half of a number and is not looked at: entries that begin with another one than
/// entry 0 have it where a later entry begins, or not at all. Reads nothing outside `entries`, whatever they hold. The
/// result points into them.
[[nodiscard]] std::optional<std::string_view> FindEntry(std::string_view entries, std::uint8_t number);

/// The texts of the first `fieldCount` entries of one record, found in a single pass, by the same rule as FindEntry.
class EntryTable {
  public:
    /// `fieldCount` is 0..20. The texts point into `entries`.
    void Fill(std::string_view entries, std::size_t fieldCount);
    /// By walking from entry to entry instead; of entries with one number, the first. False, with nothing filled, when
    /// the record is not made so.
    [[nodiscard]] bool FillByWalking(std::string_view entries, std::size_t fieldCount);
    [[nodiscard]] bool Has(std::size_t number) const { return m_begin[number] != kMissing; }
    /// Empty for a missing entry.
    [[nodiscard]] std::string_view Text(std::size_t number) const {
        if (!Has(number)) return {};
        return {m_entries.data() + m_begin[number], m_end[number] - m_begin[number]};
    }
    /// The bytes of the entries from `first` on, heads included, as far as they lie one behind the other in the order
    /// of their numbers, and to `last` at most; `last` receives the last of them. Entry `first` is not missing, and the
    /// table was filled by walking.
    [[nodiscard]] std::string_view Run(std::size_t first, std::size_t& last) const;

  private:
    static constexpr std::uint32_t kMissing = 0xFFFFFFFF;
    static constexpr std::uint32_t kHeadSize = 2;  // of an entry: a zero and its number
    std::string_view m_entries;
    std::array<std::uint32_t, kMaxFields> m_begin{};
    std::array<std::uint32_t, kMaxFields> m_end{};
};

struct Entry {
    std::uint8_t number;
    std::string_view text;
};

/// A number is one byte, so a record with more entries repeats some, and would need many times its memory to be walked.
inline constexpr std::size_t kMaxEntries = 256;
/// The entries by walking from one to the next, or nullopt when the record is not made so. What comes behind the first
/// kMaxEntries is the text of one more, with the heads of its entries in it.
[[nodiscard]] std::optional<std::vector<Entry>> WalkEntries(std::string_view entries);

void AppendEntry(std::string& entries, std::uint8_t number, std::string_view text);

/// The record with the entries of `changes` (ascending numbers) replaced or added. Every other entry is kept byte for
/// byte, entries beyond the last field included, as walking finds them; only a record that cannot be walked is taken
/// apart by the scan, into its first `fieldCount` entries. nullopt when these lie in each other, so that apart they
/// would take several times the record's memory.
[[nodiscard]] std::optional<std::string> RewriteEntries(std::string_view entries, std::span<const Entry> changes,
                                                        std::size_t fieldCount);

/// The same entries in the order of their numbers; those with the same one stay in their order. As they are when the
/// record cannot be walked.
[[nodiscard]] std::string InOrder(std::string_view entries);

/// How many of `bytes` are less than `limit`: two for each entry of a record in which no text hides anything.
[[nodiscard]] std::size_t CountBytesBelow(std::string_view bytes, std::uint8_t limit);

/// The first field that the scan would no longer find behind `text` in field `field`, with the byte that hides it.
struct HiddenField {
    std::size_t field;
    char byte;
};
[[nodiscard]] std::optional<HiddenField> FieldHiddenBy(std::string_view text, std::size_t field,
                                                       std::size_t fieldCount);

}  // namespace quillary
