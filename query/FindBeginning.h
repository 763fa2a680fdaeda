// Finds the next row that begins with what a person types into the record list.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "db/QuillaryDoc.h"

namespace quillary {

/// The first shown record from `row` on, and then from the top, whose first cell begins with `text`, case ignored as
/// Find ignores it. The cell is what the record list shows in its first column. nullopt when there is none.
[[nodiscard]] std::optional<std::size_t> FindBeginning(const CQuillaryDoc& doc, std::u16string_view text,
                                                       std::size_t row);

}  // namespace quillary
