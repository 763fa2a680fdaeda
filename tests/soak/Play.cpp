// Whatever keys, clicks and turns of the wheel, of which nobody knows what comes.
#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QWheelEvent>

#include "tests/soak/Soak.h"

namespace quillary::soak {

namespace {

constexpr const char* kKeys =
    "Up Down Left Right Home End PgUp PgDown Tab Backtab Space Return Del Backspace Ins F1 F2 F3 F4 F5 F10 Esc Menu "
    "Ctrl+Z Ctrl+X Ctrl+C Ctrl+V Ctrl+A Ctrl+S Ctrl+N Ctrl+PgUp Ctrl+PgDown Alt+Up Alt+Down Shift+Return Shift+Down "
    "F24";

void PlayWithButtons(Soak& s, QWidget& page) {
    auto buttons = page.findChildren<QAbstractButton*>();
    buttons.removeIf([](auto* b) { return b->objectName().toInt() == 0 || !b->isVisible() || !b->isEnabled(); });
    if (buttons.isEmpty()) return;
    const auto name = [&](int at) { return "command " + buttons[at]->objectName().toStdString(); };
    const int at = s.Rarest(static_cast<std::size_t>(buttons.size()), name);
    s.Log("presses " + name(at));
    if (!qobject_cast<QToolButton*>(buttons[at])) s.Cover(name(at));
    s.Click(buttons[at], buttons[at]->rect().center());
}

void PlayWithKeys(Soak& s) {
    static const QStringList kNames = QString(kKeys).split(u' ');
    QWidget* focus = QApplication::activePopupWidget() ? QApplication::activePopupWidget() : s.Focus();
    if (s.Percent(33)) {
        const QChar c = QString("abc XYZ019.-/:;,@é")[s.Pick(18)];
        s.Log("types " + QString(c).toStdString());
        return s.Key(focus, c.toUpper().unicode(), {}, c);
    }
    const QString& name = kNames[s.Pick(kNames.size())];
    const QKeyCombination key = QKeySequence(name)[0];
    s.Log(name.toStdString() + " on " + focus->metaObject()->className());
    s.Key(focus, key.key(), key.keyboardModifiers(), key.key() == Qt::Key_F24 ? QString("") : QString());
}

void PlayWithMouse(Soak& s, QWidget& page) {
    QWidgetList widgets = page.findChildren<QWidget*>();
    widgets.removeIf([](QWidget* w) { return !w->isVisible() || w->width() < 2 || w->height() < 2; });
    QWidget* widget = widgets.isEmpty() ? &page : widgets[s.Pick(widgets.size())];
    const QPointer<QWidget> there(widget);
    const QPoint at(s.Pick(widget->width()), s.Pick(widget->height()));
    const auto waits = [](QWidget* one) {  // its menu has an event loop of its own
        return qobject_cast<QScrollBar*>(one) || qobject_cast<QAbstractSpinBox*>(one) ||
               one->contextMenuPolicy() == Qt::ActionsContextMenu;
    };
    const int what = s.Pick(4);
    s.Log("mouse " + std::to_string(what) + " on " + widget->metaObject()->className() + ' ' + std::to_string(at.x()) +
          ',' + std::to_string(at.y()));
    if (what < 2) {
        if (widget->objectName().startsWith("qt_calendar_month")) return;
        s.Click(widget, at);
        if (!there || s.Percent(70)) return;
        QTest::mouseDClick(widget, Qt::LeftButton, {}, at);
        if (there) QTest::mouseRelease(widget, Qt::LeftButton, {}, at);
    } else if (what == 2) {
        QWheelEvent wheel(at, widget->mapToGlobal(QPointF(at)), {}, {0, s.Percent(50) ? 120 : -120}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &wheel);
    } else if (!waits(widget) && !waits(widget->parentWidget())) {
        QContextMenuEvent asked(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
        QApplication::sendEvent(widget, &asked);
    }
}

}  // namespace

void Soak::Play(int command) {
    m_isPlaying = true;
    if (command != 0) {
        Command(command);
    } else if (Percent(60)) {
        std::vector<int> enabled;
        for (const auto& [caption, item] : MenuItems()) {
            if (!item->isSeparator() && item->isEnabled()) enabled.push_back(CommandOf(*item));
        }
        const auto name = [&](int k) { return NameOf(enabled[At(k)]); };
        Command(enabled[At(Rarest(enabled.size(), name))]);
    }
    if (Frame().isVisible()) PlayAbout(Frame(), 1 + Pick(30));
    for (int k = 0; k < 3; ++k) {  // a name that is being edited
        QTest::qWait(0);
        auto* editor = Databases() ? Databases()->findChild<QLineEdit*>() : nullptr;
        if (editor) editor->setFocus(), Key(editor, Qt::Key_Escape);
    }
    if (!Frame().isVisible()) StartAgain();
    Adopt();
    m_isPlaying = false;
    // The window knows more than the file: how a filter is applied, what a reader sorted.
    if (open) Leave();
}

void Soak::PlayAbout(QWidget& page, int count) {
    const QPointer<QWidget> there(&page);
    while (count-- > 0 && there && there->isVisible()) {
        QWidget* popup = QApplication::activePopupWidget();
        const int what = Pick(12);
        if (what > 9) {
            if (!popup) PlayWithButtons(*this, page);
        } else {
            what < 6 ? PlayWithKeys(*this) : PlayWithMouse(*this, popup ? *popup : page);
        }
        Pause();
    }
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
}

}  // namespace quillary::soak
