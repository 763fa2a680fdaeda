// A CSV table as a database takes it: named columns, and values in the code page. Says with row and column what it
// refuses.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Csv.h"
#include "db/AnsiText.h"

namespace quillary {

class TableReader {
  public:
    /// `table` is UTF-8; it and `page` must outlive the reader.
    TableReader(std::string_view table, const AnsiText& page);

    /// Reads the names of the columns. False (see Error) when there are none, when one cannot be the name of a field,
    /// or when two are the same.
    [[nodiscard]] bool ReadHeader();
    [[nodiscard]] const std::vector<std::string>& Names() const { return m_names; }  // in the code page

    /// False at the end and at an error.
    [[nodiscard]] bool NextRow();
    /// The value of a column of the row last read, in the code page; valid until the next call. nullopt (see Error)
    /// when it is no UTF-8 or the page lacks a character of it.
    [[nodiscard]] std::optional<std::string_view> Value(std::size_t column);

    /// Empty as long as nothing was refused.
    [[nodiscard]] const std::string& Error() const { return m_error; }
    /// "Row 7: " and `text`.
    [[nodiscard]] std::string AtRow(std::string_view text) const;
    /// "Row 7, column Due: " and `text`.
    [[nodiscard]] std::string AtColumn(std::size_t column, std::string_view text) const;
    [[nodiscard]] std::size_t Position() const { return m_csv.Position(); }

  private:
    bool FailWith(std::string error);
    [[nodiscard]] std::string CsvErrorText() const;

    CsvReader m_csv;
    const AnsiText& m_page;
    std::vector<CsvCell> m_cells;
    std::vector<std::string> m_names;
    std::string m_unquoted;
    std::string m_converted;
    std::string m_error;
};

}  // namespace quillary
