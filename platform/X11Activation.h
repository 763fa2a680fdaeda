// A window's way to the front on an X display.
#pragma once

#include <string>

class QWindow;

namespace quillary {

/// Asks the window manager with the time in `startupId`, which tells that a person wanted this window just now, and
/// tells the desktop that the start is over, so that it stops showing a busy mouse pointer. False on other displays and
/// without an id.
[[nodiscard]] bool ActivateOnX11(QWindow& window, const std::string& startupId);

}  // namespace quillary
