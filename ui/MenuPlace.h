// Where a person asks a list for its menu: with the right button, by key, or by holding a finger still.
#pragma once

#include <QPoint>
#include <optional>

class QAbstractItemView;
class QContextMenuEvent;
class QEvent;

namespace quillary {

/// In the viewport; by key at the current row, which comes into sight.
[[nodiscard]] QPoint MenuPlace(const QContextMenuEvent& event, QAbstractItemView& view);
/// In the viewport, once a finger has been held there long enough; nullopt for any other event.
[[nodiscard]] std::optional<QPoint> HeldPlace(const QEvent& event, const QAbstractItemView& view);

}  // namespace quillary
