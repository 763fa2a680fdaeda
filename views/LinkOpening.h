// Opens what a record's mail and web addresses stand for in the desktop's programs, and tells when that fails.
#pragma once

#include <QString>

#include "db/FieldType.h"

namespace quillary {

class FrameWindow;
class Launcher;

/// `type` is EMail or WebUrl. Nothing happens with a blank text.
void OpenAddress(FieldType type, const QString& text, Launcher& launcher, FrameWindow& frame);

}  // namespace quillary
