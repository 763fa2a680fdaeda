// Which files a file chooser offers.
#pragma once

#include <QString>

namespace quillary {

/// Databases, whatever the case of their ending.
[[nodiscard]] inline QString DatabaseFileFilter() { return QStringLiteral("Quillary Files (*.[pP][dD][bB])"); }

}  // namespace quillary
