#include "query/Find.h"

#include <algorithm>

#include "db/CellText.h"

namespace quillary {

namespace {

// Types whose display text is the stored text but for line ends, so that a first line needs no copy.
bool ShowsAsStored(FieldType type) {
    switch (type) {
        case FieldType::Text:
        case FieldType::List:
        case FieldType::Number:
        case FieldType::Sequence:
        case FieldType::EMail:
        case FieldType::WebUrl:
            return true;
        default:
            return false;
    }
}

}  // namespace

RecordFinder::RecordFinder(const CQuillaryDoc& doc, std::u16string_view text, int column)
    : m_doc(doc), m_upper(AnsiText::Upper(text)), m_column(column) {
    if (doc.Page().IsSingleByte()) m_folded = doc.Page().FoldedBytes(text);
}

std::optional<std::size_t> RecordFinder::FindFrom(std::size_t row) {
    if (m_doc.Page().IsSingleByte() && !m_folded) return std::nullopt;
    for (; row < m_doc.Shown().size(); ++row) {
        if (RowMatches(row)) return row;
    }
    return std::nullopt;
}

bool RecordFinder::RowMatches(std::size_t row) {
    if (m_upper.empty()) return true;
    const std::string_view entries = m_doc.Shown()[row].Entries();
    m_entries.Fill(entries, m_doc.FieldCount());
    const bool all = m_column == kAllFields;
    const std::size_t first = all ? 0 : static_cast<std::size_t>(m_column);
    const std::size_t last = all ? m_doc.FieldCount() : first + 1;
    for (std::size_t field = first; field < last; ++field) {
        if (!m_entries.Has(field)) continue;
        std::string_view cell = m_entries.Text(field);
        if (!ShowsAsStored(m_doc.TypeOf(field))) {
            m_display.clear();
            m_doc.AppendDisplay(cell, field, m_display);
            cell = m_display;
        }
        if (cell.find_first_of("\r\n%") != cell.npos) {
            m_cell.clear();
            AppendCellText(cell, row, m_cell);
            cell = m_cell;
        }
        if (CellMatches(cell)) return true;
    }
    return false;
}

bool RecordFinder::CellMatches(std::string_view cell) const {
    if (!m_folded) return AnsiText::Upper(m_doc.Page().ToWide(cell)).find(m_upper) != std::u16string::npos;
    const auto& fold = m_doc.Page().Fold();
    const auto same = [&fold](char inCell, char folded) {
        return fold[static_cast<unsigned char>(inCell)] == static_cast<unsigned char>(folded);
    };
    return std::search(cell.begin(), cell.end(), m_folded->begin(), m_folded->end(), same) != cell.end();
}

}  // namespace quillary
