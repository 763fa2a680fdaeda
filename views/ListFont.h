// The font of the record list.
#pragma once

#include <QFont>

namespace quillary {

/// `font`, the desktop's own, made narrower: the widths of columns are stored in pixels, for screens on which a
/// character took seven of them. A font that a person made large stays large, and gets narrower letters only.
[[nodiscard]] QFont ListFont(const QFont& font);

}  // namespace quillary
