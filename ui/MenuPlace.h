// Where a person asks a list for its menu: with the right button, by key, or by holding a finger still.
#pragma once

#include <QObject>
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

/// For the application: Shift+F10 asks for a menu wherever the menu key does.
class MenuByShiftF10 : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace quillary
