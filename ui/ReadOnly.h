// Editors without a read-only state of the toolkit's own say it to a screen reader in words.
#pragma once

#include <QWidget>

namespace quillary {

inline void TellReadOnly(QWidget& editor, bool readOnly) {
    editor.setAccessibleDescription(readOnly ? QStringLiteral("read only") : QString());
}

}  // namespace quillary
