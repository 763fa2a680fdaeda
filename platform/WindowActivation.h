// What the desktop wants to see before it lets a window come to the front at another program's request.
#pragma once

#include <string>

class QWindow;

namespace quillary {

/// The token that this program was started with; empty without one. To be called before the toolkit starts, which takes
/// it out of the environment.
[[nodiscard]] std::string ActivationToken();

/// Asks the desktop to show `window` in front of others and give it the keyboard.
void ActivateWindow(QWindow& window, const std::string& token);

}  // namespace quillary
