// Which entry a list of fields begins with, when the field was chosen earlier, by its name.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "db/QuillaryDoc.h"

namespace quillary {

/// The first field of exactly this name (code page bytes), else the first one whose name begins with it, case ignored:
/// the field may have been renamed to a longer name. nullopt without one, and for an empty name.
[[nodiscard]] std::optional<std::size_t> ChosenField(const CQuillaryDoc& doc, std::string_view name);

}  // namespace quillary
