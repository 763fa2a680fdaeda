// The program's own icons: line drawings that take the colour of the text around them, so that they fit every palette
// and scale.
#pragma once

#include <QIcon>
#include <string_view>

namespace quillary {

/// The drawing `name` of ui/icons.
[[nodiscard]] QIcon Icon(std::string_view name);
/// That of the program itself, in its own colours.
[[nodiscard]] QIcon ProgramIcon();

}  // namespace quillary
