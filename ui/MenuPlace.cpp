#include "ui/MenuPlace.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGestureEvent>
#include <QKeyEvent>

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

bool MenuByShiftF10::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier) return false;
    auto& widget = static_cast<QWidget&>(*watched);
    const QPoint at = widget.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget.mapToGlobal(at));
    QCoreApplication::sendEvent(&widget, &menu);
    return true;
}

}  // namespace quillary
