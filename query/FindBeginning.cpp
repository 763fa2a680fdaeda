#include "query/FindBeginning.h"

#include <algorithm>
#include <string>

#include "db/CellText.h"

namespace quillary {

namespace {

// Looks at one cell after the other, and keeps the memory that they need.
class BeginningTest {
  public:
    BeginningTest(const CQuillaryDoc& doc, std::u16string_view text)
        : m_doc(doc), m_page(doc.Page()), m_upper(AnsiText::Upper(text)) {
        if (m_page.IsSingleByte()) m_folded = m_page.FoldedBytes(text);
    }
    // False for a text with a character that no cell can hold.
    [[nodiscard]] bool IsPossible() const { return m_folded || !m_page.IsSingleByte(); }

    [[nodiscard]] bool Matches(std::size_t row) {
        constexpr std::uint8_t kFirstField = 0;
        const auto stored = FindEntry(m_doc.Shown()[row].Entries(), kFirstField);
        if (!stored) return false;
        m_cell.clear();
        AppendListCell(m_doc, kFirstField, *stored, row, m_display, m_cell);
        if (!m_folded) return AnsiText::Upper(m_page.ToWide(m_cell)).starts_with(m_upper);
        const auto isSame = [this](char wanted, char c) {
            return static_cast<std::uint8_t>(wanted) == m_page.Fold()[static_cast<std::uint8_t>(c)];
        };
        return m_cell.size() >= m_folded->size() &&
               std::equal(m_folded->begin(), m_folded->end(), m_cell.begin(), isSame);
    }

  private:
    const CQuillaryDoc& m_doc;
    const AnsiText& m_page;
    std::u16string m_upper;
    std::optional<std::string> m_folded;  // in a single-byte page
    std::string m_display;
    std::string m_cell;
};

}  // namespace

std::optional<std::size_t> FindBeginning(const CQuillaryDoc& doc, std::u16string_view text, std::size_t row) {
    BeginningTest test(doc, text);
    const std::size_t rows = doc.Shown().size();
    if (!test.IsPossible()) return std::nullopt;
    for (std::size_t step = 0; step < rows; ++step) {
        const std::size_t at = (row + step) % rows;
        if (test.Matches(at)) return at;
    }
    return std::nullopt;
}

}  // namespace quillary
