#include "ui/MenuPlace.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QGestureEvent>

namespace quillary {

QPoint MenuPlace(const QContextMenuEvent& event, QAbstractItemView& view) {
    if (event.reason() != QContextMenuEvent::Keyboard) return event.pos();
    view.scrollTo(view.currentIndex());
    return view.visualRect(view.currentIndex()).center();
}

std::optional<QPoint> HeldPlace(const QEvent& event, const QAbstractItemView& view) {
    if (event.type() != QEvent::Gesture) return std::nullopt;
    const QGesture* held = static_cast<const QGestureEvent&>(event).gesture(Qt::TapAndHoldGesture);
    if (!held || held->state() != Qt::GestureFinished) return std::nullopt;
    return view.viewport()->mapFromGlobal(held->hotSpot().toPoint());
}

}  // namespace quillary
