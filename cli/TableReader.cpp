#include "cli/TableReader.h"

#include <algorithm>
#include <cstring>

#include "admin/FieldNames.h"
#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/Layout.h"
#include "db/Messages.h"
#include "db/Utf.h"

namespace quillary {

namespace {

bool IsAsciiWithoutNul(std::string_view text) {
    constexpr std::uint64_t kOnes = 0x0101010101010101u;
    constexpr std::uint64_t kHighBits = 0x8080808080808080u;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t eightBytes;
        std::memcpy(&eightBytes, text.data() + i, 8);
        if (((eightBytes - kOnes) | eightBytes) & kHighBits) return false;
    }
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), [](char c) { return c > 0; });
}

}  // namespace

TableReader::TableReader(std::string_view table, const AnsiText& page) : m_csv(table, kMaxFields), m_page(page) {}

bool TableReader::FailWith(std::string error) {
    m_error = std::move(error);
    return false;
}

std::string TableReader::AtRow(std::string_view text) const {
    return "Row " + std::to_string(m_csv.Row()) + ": " + std::string(text);
}

std::string TableReader::AtColumn(std::size_t column, std::string_view text) const {
    const std::string name = column < m_names.size() ? ForMessage(m_names[column], m_page) : std::to_string(column + 1);
    return "Row " + std::to_string(m_csv.Row()) + ", column " + name + ": " + std::string(text);
}

std::string TableReader::CsvErrorText() const {
    const CsvError& error = m_csv.Error();
    switch (error.kind) {
        case CsvError::Kind::None:
            return {};
        case CsvError::Kind::Ragged:
            if (error.column > m_names.size()) {
                return AtColumn(m_names.size(), "the header has only " + Counted(m_names.size(), "column") + ".");
            }
            return AtColumn(error.column, "the row ends before it, with " + Counted(error.column, "value") + ".");
        case CsvError::Kind::TooManyColumns:
            return "Row 1, column " + std::to_string(error.column) + ": a database has at most " +
                   std::to_string(kMaxFields) + " fields.";
        case CsvError::Kind::QuoteInValue:
            return AtColumn(error.column - 1, "there is a quote inside a value that does not begin with one.");
        case CsvError::Kind::TextAfterQuote:
            return AtColumn(error.column - 1, "there is text behind the closing quote.");
        case CsvError::Kind::MissingQuote:
            return AtColumn(error.column - 1, "the closing quote is missing.");
    }
    return {};
}

bool TableReader::ReadHeader() {
    if (!m_csv.Next(m_cells)) {
        const std::string error = CsvErrorText();
        return FailWith(error.empty() ? "The table is empty; its first row holds the names of the columns." : error);
    }
    for (std::size_t column = 0; column < m_cells.size(); ++column) {
        const auto name = Value(column);
        if (!name) return false;
        Failure refusal;
        if (!StoredFieldName(m_page.ToWide(*name), m_page, refusal)) return FailWith(AtColumn(column, refusal.text));
        if (std::find(m_names.begin(), m_names.end(), *name) != m_names.end()) {
            return FailWith(AtColumn(column, "an earlier column has the same name."));
        }
        m_names.emplace_back(*name);
    }
    return true;
}

bool TableReader::NextRow() {
    if (m_csv.Next(m_cells)) return true;
    return FailWith(CsvErrorText());
}

std::optional<std::string_view> TableReader::Value(std::size_t column) {
    const std::string_view value = m_cells[column].Value(m_unquoted);
    if (m_page.KeepsAscii() && IsAsciiWithoutNul(value)) return value;
    const auto wide = Utf8ToWide(value);
    if (!wide) {
        m_error = AtColumn(column, "the value is no UTF-8 text.");
        return std::nullopt;
    }
    std::u16string unstorable;
    auto stored = m_page.FromWide(*wide, &unstorable);
    if (!stored) {
        const std::string characters = WideToUtf8(unstorable.substr(0, 40));
        const std::string place = "a database of code page " + m_page.Name();
        m_error = AtColumn(column, FormatMessage(Message::UnstorableCharacters, {place, characters}));
        return std::nullopt;
    }
    m_converted = std::move(*stored);
    return m_converted;
}

}  // namespace quillary
