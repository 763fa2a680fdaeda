// Not every editor has a read-only state of the toolkit's own, and not every screen reader tells it: they say it in
// words.
#pragma once

#include <QWidget>

namespace quillary {

inline void TellReadOnly(QWidget& editor, bool readOnly) {
    editor.setAccessibleDescription(readOnly ? QStringLiteral("read only") : QString());
}

}  // namespace quillary
