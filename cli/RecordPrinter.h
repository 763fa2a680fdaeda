// Prints records as a table: straight from their bytes, a value at a time, in one of the forms of `qly list`.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/Output.h"
#include "db/QuillaryDoc.h"

namespace quillary {

enum class TableFormat : std::uint8_t { Csv, Tsv, Json, JsonLines };

enum class TableTexts : std::uint8_t {
    Display,
    Stored,
    Iso,    // as the import reads them back: dates as YYYY-MM-DD, times as HH:MM:SS, line ends as they are stored
    Cells,  // what the cells of the record list show
};

class RecordPrinter {
  public:
    /// Prints in UTF-8. Both references must outlive the printer.
    RecordPrinter(const CQuillaryDoc& doc, TableFormat format, TableTexts texts, Output& output);

    void Begin();
    void Print(const RecordRef& record);
    void End();

  private:
    void PrintValue(std::string_view text);
    [[nodiscard]] bool PrintPlain(std::string_view text);
    void PrintSpecial(std::string_view text);
    void PrintMissing();
    void PrintSeparator();
    void EndRow();
    [[nodiscard]] std::string_view TextOf(std::size_t field, std::string_view stored);
    void AppendIsoDate(std::string_view stored);
    void AppendIsoTime(std::string_view stored);

    const CQuillaryDoc& m_doc;
    TableFormat m_format;
    TableTexts m_texts;
    Output& m_output;
    bool m_isJson;
    bool m_copiesAscii;
    std::array<bool, kMaxFields> m_showsAsStored{};  // as long as the text is plain
    std::size_t m_row = 0;
    EntryTable m_entries;
    std::string m_text;
    std::string m_display;
    std::string m_utf8;
    std::string m_json;
};

}  // namespace quillary
