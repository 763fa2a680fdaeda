#include "query/Find.h"

#include <algorithm>
#include <functional>

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

std::optional<std::size_t> RecordFinder::FindFrom(std::size_t row, std::size_t end) {
    const bool isStorable = m_search || m_upper.empty() || !m_doc.Page().IsSingleByte();
    if (!isStorable) return std::nullopt;
    end = std::min(end, m_doc.Shown().size());
    for (row = Candidate(row, end); row < end; row = Candidate(row + 1, end)) {
        if (RowMatches(row)) return row;
    }
    return std::nullopt;
}

// The rows that lie one behind the other in the file's image, so that one search goes over all of their bytes. A limit
// keeps looking for this end cheap where many rows are candidates.
std::size_t RecordFinder::EndOfRun(std::size_t row) const {
    constexpr std::size_t kMaxRun = 64;
    const auto& rows = m_doc.Shown();
    const std::string_view image = m_doc.FileImage();
    const std::less_equal<const char*> upTo;
    const auto end = [](const RecordRef& record) { return record.data + record.size; };
    if (!upTo(image.data(), rows[row].data) || !upTo(end(rows[row]), image.data() + image.size())) return row + 1;
    const std::size_t most = std::min(rows.size(), row + kMaxRun);
    for (++row; row < most; ++row) {
        const char* const begin = rows[row].data;
        if (!upTo(end(rows[row - 1]), begin) || !upTo(end(rows[row]), image.data() + image.size())) break;
    }
    return row;
}

std::size_t RecordFinder::Candidate(std::size_t row, std::size_t end) const {
    if (!m_search || m_mayBeMade) return row;
    const auto& rows = m_doc.Shown();
    while (row < end) {
        const std::size_t endOfRun = EndOfRun(row);
        const char* const begin = rows[row].data;
        const RecordRef& last = rows[endOfRun - 1];
        const std::string_view run(begin, static_cast<std::size_t>(last.data + last.size - begin));
        const std::size_t at = m_search->Candidate(run, '%');
        if (at != run.npos) {
            while (rows[row].data + rows[row].size <= begin + at) ++row;
            return row;
        }
        row = endOfRun;
    }
    return row;
}

bool RecordFinder::RowMatches(std::size_t row) {
    if (m_upper.empty()) return true;
    const std::string_view entries = m_doc.Shown()[row].Entries();
    // Where the stored bytes do not hold the text, only a cell with a directive may.
    const bool isStored = !m_search || m_mayBeMade || m_search->IsIn(entries);
    if (!isStored && entries.find('%') == entries.npos) return false;
    m_entries.Fill(entries, m_doc.FieldCount());
    for (std::size_t field = m_firstField; field < m_endField; ++field) {
        if (!m_entries.Has(field)) continue;
        std::string_view cell = m_entries.Text(field);
        if (!isStored && cell.find('%') == cell.npos) continue;
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
