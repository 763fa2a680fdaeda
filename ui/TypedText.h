// What a key event says that an editor would write.
#pragma once

#include <QString>

namespace quillary {

/// Whether the text of a key event is a character; Return, Tab and Escape have a text too.
[[nodiscard]] inline bool IsWriting(const QString& typed) {
    return !typed.isEmpty() && (typed.front().isPrint() || typed.front().isSurrogate());
}

}  // namespace quillary
