// What the numeric editor lets a person type. On the UTF-16 of the editor, as nothing is stored yet.
#pragma once

#include <string>
#include <string_view>

namespace quillary {

/// "-" only first and once, "." at most once, blanks at the ends ignored; nothing else is looked at.
[[nodiscard]] bool IsValidNumericText(std::u16string_view text);

/// False for a typed character that is refused with a beep: only "-", "." and digits pass, and backspace (U+0008).
/// Not asked while Ctrl is held.
[[nodiscard]] bool AcceptsNumericKey(char16_t typed);

/// What the editor holds after it lost the focus: the run of "0123456789.-" that begins at the first such character, or
/// nothing when that is no valid text.
[[nodiscard]] std::u16string CleanNumericText(std::u16string_view text);

}  // namespace quillary
