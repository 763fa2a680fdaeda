// Work that may take long, step by step: after half a second a person sees that it goes on and can stop it.
#pragma once

#include <functional>

class QString;
class QWidget;

namespace quillary {

/// Calls `step`, each call a few milliseconds, until it answers true. False when the user has stopped it, by the box's
/// Cancel or the Escape key. `text` says in the box what is being done; `parent` is the box's window.
[[nodiscard]] bool RunLongWork(QWidget* parent, const QString& text, const std::function<bool()>& step);
/// For work that another thread does: asks `isDone`, which waits for nothing, now and then. `text` is asked too, and
/// may tell how far it is.
[[nodiscard]] bool WaitForWork(QWidget* parent, const std::function<QString()>& text,
                               const std::function<bool()>& isDone);

/// The same with `work` on a thread of its own. `stop` breaks it off when the user has stopped it; the work has ended
/// when this returns.
[[nodiscard]] bool RunOnThread(QWidget* parent, const QString& text, const std::function<void()>& work,
                               const std::function<void()>& stop);

}  // namespace quillary
