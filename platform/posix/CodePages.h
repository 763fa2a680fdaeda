// Code pages by name, from the system's converter.
#pragma once

#include <optional>
#include <string_view>

#include "db/AnsiText.h"

namespace quillary {

/// The page that the system knows as `name` ("windows-1251", "cp932", "shift_jis", "1250"), or nullopt when it knows
/// none that extends ASCII. Every name of Windows-1252 gives the built-in page.
[[nodiscard]] std::optional<AnsiText> CodePageByName(std::string_view name);

}  // namespace quillary
