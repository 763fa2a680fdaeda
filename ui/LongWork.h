// Work that may take long, step by step: after half a second a person sees that it goes on and can stop it.
#pragma once

#include <functional>

class QString;
class QWidget;

namespace quillary {

/// Calls `step`, each call a few milliseconds, until it answers true. False when the user has stopped it, by the box's
/// Cancel or the Escape key. `text` says in the box what is being done; `parent` is the box's window.
[[nodiscard]] bool RunLongWork(QWidget* parent, const QString& text, const std::function<bool()>& step);

}  // namespace quillary
