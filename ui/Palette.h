// Light and dark colours for all windows of the program.
#pragma once

namespace quillary {

/// Dark colours, unless the desktop's own are dark already; or the desktop's own.
void UseDarkPalette(bool dark);

}  // namespace quillary
