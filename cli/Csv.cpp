#include "cli/Csv.h"

#include <array>
#include <cstring>

namespace quillary {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The bytes at which an unquoted value ends or goes wrong.
constexpr std::array<bool, 256> kEndsValue = [] {
    std::array<bool, 256> ends{};
    for (const unsigned char c : {',', '"', '\r', '\n'}) ends[c] = true;
    return ends;
}();

}  // namespace

std::string_view CsvCell::Value(std::string& buffer) const {
    if (!hasDoubledQuotes) return raw;
    buffer.clear();
    std::string_view rest = raw;
    for (auto quote = rest.find('"'); quote != rest.npos; quote = rest.find('"')) {
        buffer.append(rest, 0, quote + 1);
        rest.remove_prefix(quote + 2);
    }
    return buffer.append(rest);
}

CsvReader::CsvReader(std::string_view table, std::size_t mostColumns)
    : m_begin(table.data()), m_at(m_begin), m_end(m_begin + table.size()), m_mostColumns(mostColumns) {
    if (table.substr(0, kByteOrderMark.size()) == kByteOrderMark) m_at += kByteOrderMark.size();
}

bool CsvReader::Fail(CsvError::Kind kind, std::size_t column) {
    m_error = {kind, m_row, column};
    return false;
}

bool CsvReader::ReadQuoted(std::size_t column, CsvCell& cell) {
    const char* begin = ++m_at;
    for (;;) {
        const void* quote = m_at < m_end ? std::memchr(m_at, '"', static_cast<std::size_t>(m_end - m_at)) : nullptr;
        if (!quote) return Fail(CsvError::Kind::MissingQuote, column);
        m_at = static_cast<const char*>(quote) + 1;
        if (m_at == m_end || *m_at != '"') break;
        cell.hasDoubledQuotes = true;
        ++m_at;
    }
    cell.raw = {begin, static_cast<std::size_t>(m_at - 1 - begin)};
    if (m_at < m_end && (!kEndsValue[static_cast<unsigned char>(*m_at)])) {
        return Fail(CsvError::Kind::TextAfterQuote, column);
    }
    return true;
}

bool CsvReader::ReadCell(std::size_t column, CsvCell& cell) {
    cell.hasDoubledQuotes = false;
    if (m_at < m_end && *m_at == '"') return ReadQuoted(column, cell);
    const char* begin = m_at;
    while (m_at < m_end && !kEndsValue[static_cast<unsigned char>(*m_at)]) ++m_at;
    cell.raw = {begin, static_cast<std::size_t>(m_at - begin)};
    return (m_at < m_end && *m_at == '"') ? Fail(CsvError::Kind::QuoteInValue, column) : true;
}

void CsvReader::SkipLineEnd() {
    if (m_at == m_end) return;
    const bool carriageReturn = *m_at++ == '\r';
    if (carriageReturn && m_at < m_end && *m_at == '\n') ++m_at;
}

bool CsvReader::Next(std::vector<CsvCell>& row) {
    row.clear();
    if (m_at == m_end || m_error.kind != CsvError::Kind::None) return false;
    ++m_row;
    const bool isHeader = m_columns == 0;
    const std::size_t most = isHeader ? m_mostColumns : m_columns;
    for (;;) {
        if (row.size() == most) {
            return Fail(isHeader ? CsvError::Kind::TooManyColumns : CsvError::Kind::Ragged, row.size() + 1);
        }
        row.emplace_back();
        if (!ReadCell(row.size(), row.back())) return false;
        if (m_at == m_end || *m_at != ',') break;
        ++m_at;
    }
    SkipLineEnd();
    if (isHeader) m_columns = row.size();
    return row.size() == m_columns || Fail(CsvError::Kind::Ragged, row.size());
}

}  // namespace quillary
