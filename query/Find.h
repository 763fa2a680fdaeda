// Finds the next row whose cells hold a text, case ignored.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "db/QuillaryDoc.h"
#include "query/FoldedSearch.h"

namespace quillary {

/// One search of the shown records. Works on the cell texts that the record list shows. The document must outlive it
/// and not change meanwhile.
class RecordFinder {
  public:
    static constexpr int kAllFields = -1;

    /// `column` is a field's position or kAllFields. An empty text is found everywhere.
    RecordFinder(const CQuillaryDoc& doc, std::u16string_view text, int column);
    /// The first matching row from `row` on, ahead of `end`.
    [[nodiscard]] std::optional<std::size_t> FindFrom(std::size_t row, std::size_t end = static_cast<std::size_t>(-1));

  private:
    /// The first row from `row` on that a look at the raw bytes does not rule out; none ahead of `end` when it is more.
    [[nodiscard]] std::size_t Candidate(std::size_t row, std::size_t end) const;
    [[nodiscard]] std::size_t EndOfRun(std::size_t row) const;
    [[nodiscard]] bool CellMatches(std::string_view cell) const;
    [[nodiscard]] bool RowMatches(std::size_t row);

    const CQuillaryDoc& m_doc;
    std::u16string m_upper;
    std::optional<FoldedSearch> m_search;  // single-byte pages; nullopt = no stored text can hold it
    std::size_t m_firstField = 0;
    std::size_t m_endField;
    bool m_mayBeMade = false;  // some field's display may hold the text where its stored text does not
    EntryTable m_entries;
    std::string m_display;
    std::string m_cell;
};

}  // namespace quillary
