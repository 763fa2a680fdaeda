// From a display text to what the record list shows in a cell, which is also what Find searches.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillary {

/// Appends the first line of `display` with its directives expanded. A directive is "%", flags, width, precision,
/// length letters and one letter; d i u o x X c take the row number (from 0) once, "%%" is a percent sign, everything
/// else prints nothing. Width and precision above 255 count as 255. No text reaches a C formatting function.
void AppendCellText(std::string_view display, std::size_t row, std::string& out);

}  // namespace quillary
