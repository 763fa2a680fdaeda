// Reads tables of comma-separated values (RFC 4180) from a buffer, row by row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

/// One value of a row. It points into the table.
struct CsvCell {
    std::string_view raw;           // without the quotes around it
    bool hasDoubledQuotes = false;  // each "" in `raw` stands for one quote

    /// The value, in `raw` or in `buffer`.
    [[nodiscard]] std::string_view Value(std::string& buffer) const;
};

struct CsvError {
    enum class Kind : std::uint8_t {
        None,
        Ragged,          // another number of values than the header; `column` is the number of values, at most one more
                         // than the header's
        TooManyColumns,  // in the header
        QuoteInValue,    // a quote inside a value that does not begin with one
        TextAfterQuote,  // something other than a comma or a line end behind a closing quote
        MissingQuote,    // the table ends inside quotes
    };
    Kind kind = Kind::None;
    std::size_t row = 0;     // the header is 1; line breaks inside quotes do not count
    std::size_t column = 0;  // from 1
};

/// Every row has as many values as the first one, the header. Rows end at CR LF, LF or CR; the last line end may be
/// missing. Quoted values hold line breaks as they are. A byte-order mark is skipped; no byte is looked at otherwise.
class CsvReader {
  public:
    /// `table` must outlive the reader and its cells.
    CsvReader(std::string_view table, std::size_t mostColumns);

    /// The values of the next row; false at the end or at an error.
    [[nodiscard]] bool Next(std::vector<CsvCell>& row);

    [[nodiscard]] const CsvError& Error() const { return m_error; }
    /// The number of the row last read; the header is 1.
    [[nodiscard]] std::size_t Row() const { return m_row; }
    /// How many bytes are read.
    [[nodiscard]] std::size_t Position() const { return static_cast<std::size_t>(m_at - m_begin); }

  private:
    bool Fail(CsvError::Kind kind, std::size_t column);
    [[nodiscard]] bool ReadCell(std::size_t column, CsvCell& cell);
    [[nodiscard]] bool ReadQuoted(std::size_t column, CsvCell& cell);
    void SkipLineEnd();

    const char* m_begin;
    const char* m_at;
    const char* m_end;
    std::size_t m_mostColumns;
    std::size_t m_columns = 0;  // of the header, once it was read
    std::size_t m_row = 0;
    CsvError m_error;
};

}  // namespace quillary
