#include "query/Find.h"

#include <algorithm>

#include "db/CellText.h"

namespace quillary {

namespace {

// The characters, in upper case, of the display texts that a type makes where it does not show the stored text itself
// (line ends apart, as a cell ends at the first).
std::u16string_view MadeCharacters(FieldType type, DateStyle style) {
    switch (type) {
        case FieldType::Checkbox:
            return u"TRUEFALSE";
        case FieldType::Date:
            return style == DateStyle::Long ? u"0123456789, ABCDEFGHIJLMNOPRSTUVY" : u"0123456789/NO DATE";
        case FieldType::Time:
            return u"0123456789: AMPNOTIME";
        case FieldType::Phone:
            return u"0123456789()- ";
        default:
            return {};
    }
}

}  // namespace

RecordFinder::RecordFinder(const CQuillaryDoc& doc, std::u16string_view text, int column)
    : m_doc(doc), m_upper(AnsiText::Upper(text)), m_endField(doc.FieldCount()) {
    if (column != kAllFields) {
        m_firstField = static_cast<std::size_t>(column);
        m_endField = m_firstField + 1;
    }
    if (!doc.Page().IsSingleByte() || text.empty()) return;
    if (auto folded = doc.Page().FoldedBytes(text)) m_search.emplace(std::move(*folded), doc.Page());
    for (std::size_t field = m_firstField; field < m_endField; ++field) {
        const auto made = MadeCharacters(doc.TypeOf(field), doc.Style());
        m_mayBeMade = m_mayBeMade || m_upper.find_first_not_of(made) == m_upper.npos;
    }
}

std::optional<std::size_t> RecordFinder::FindFrom(std::size_t row) {
    const bool isStorable = m_search || m_upper.empty() || !m_doc.Page().IsSingleByte();
    for (; isStorable && row < m_doc.Shown().size(); ++row) {
        if (RowMatches(row)) return row;
    }
    return std::nullopt;
}

// A quick look at the whole record: false when no cell can hold the text.
bool RecordFinder::MayMatch(std::string_view entries) const {
    return !m_search || m_mayBeMade || m_search->IsIn(entries) || entries.find('%') != entries.npos;
}

bool RecordFinder::RowMatches(std::size_t row) {
    if (m_upper.empty()) return true;
    const std::string_view entries = m_doc.Shown()[row].Entries();
    if (!MayMatch(entries)) return false;
    m_entries.Fill(entries, m_doc.FieldCount());
    for (std::size_t field = m_firstField; field < m_endField; ++field) {
        if (!m_entries.Has(field)) continue;
        std::string_view cell = m_entries.Text(field);
        if (!MadeCharacters(m_doc.TypeOf(field), m_doc.Style()).empty()) {
            m_display.clear();
            m_doc.AppendDisplay(cell, field, m_display);
            cell = m_display;
        }
        const auto isCopied = [](char c) { return c != '\r' && c != '\n' && c != '%'; };
        if (!std::all_of(cell.begin(), cell.end(), isCopied)) {
            m_cell.clear();
            AppendCellText(cell, row, m_cell);
            cell = m_cell;
        }
        if (CellMatches(cell)) return true;
    }
    return false;
}

bool RecordFinder::CellMatches(std::string_view cell) const {
    if (m_search) return m_search->IsIn(cell);
    return AnsiText::Upper(m_doc.Page().ToWide(cell)).find(m_upper) != std::u16string::npos;
}

}  // namespace quillary
