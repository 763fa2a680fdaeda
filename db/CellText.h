// From a display text to what the record list shows in a cell; Find searches the same, at any length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillary {

class CQuillaryDoc;

/// Appends the first line of `display` with its directives expanded. A directive is "%", flags, width, precision,
/// length letters and one letter; d i u o x X c take the row number (from 0) once, "%%" is a percent sign, everything
/// else prints nothing. Width and precision above 255 count as 255. No text reaches a C formatting function.
void AppendCellText(std::string_view display, std::size_t row, std::string& out);

/// What a cell can show at most; a longer text is cut before it costs a list time.
inline constexpr std::size_t kMaxCellBytes = 4096;

/// Appends what the record list shows of the text stored in a field: its display text, cut to kMaxCellBytes, as a cell
/// text. `display` is overwritten; given again, its memory serves the next cell.
void AppendListCell(const CQuillaryDoc& doc, std::size_t field, std::string_view stored, std::size_t row,
                    std::string& display, std::string& out);

}  // namespace quillary
