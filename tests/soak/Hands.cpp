// Real events for every kind of control.
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QTreeView>

#include "tests/soak/Soak.h"
#include "ui/DatePicker.h"
#include "ui/MenuCommand.h"

namespace quillary::soak {

int CommandOf(const QAction& action) {
    const auto* item = dynamic_cast<const CMenuCommand*>(&action);
    return item ? item->Command() : action.objectName().toInt();
}

CQuillaryView* Soak::View() {
    for (auto* table : Frame().findChildren<QTableView*>()) {
        if (auto* view = dynamic_cast<CQuillaryView*>(table)) return view;
    }
    return nullptr;
}

QTreeView* Soak::Databases() { return Frame().findChild<QTreeView*>("58378"); }

QWidget* Soak::Focus() {
    QApplication::setActiveWindow(&Frame());
    QWidget* focus = QApplication::focusWidget();
    return focus ? focus : &Frame();
}

void Soak::Click(QWidget* widget, const QPoint& at) {
    QTest::mouseClick(widget, Qt::LeftButton, {}, at);
    Pause();
}

void Soak::Key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    text.isNull() ? QTest::keyClick(widget, static_cast<Qt::Key>(key), modifiers)
                  : QTest::sendKeyEvent(QTest::Click, widget, static_cast<Qt::Key>(key), text, modifiers);
    Pause();
}

void Soak::Type(QWidget* widget, const QString& text) {
    Expect(widget && widget->isVisible(), "there is something to type into");
    const QPointer<QWidget> there(widget);
    widget->setFocus();
    Key(widget, Qt::Key_A, Qt::ControlModifier);
    if (there) Key(widget, Qt::Key_Delete);
    for (const QChar c : text) {
        Expect(!there.isNull(), "what is typed into stays open");
        c == u'\n' ? Key(widget, Qt::Key_Return)
                   : Key(widget, c.unicode() < 0x80 ? c.toUpper().unicode() : int{Qt::Key_unknown}, {}, c);
    }
}

void Soak::Choose(QComboBox* list, int index) {
    if (list->count() == 0) return;
    list->setFocus();
    Key(list, Qt::Key_Home);
    for (int k = 0; k < index; ++k) Key(list, Qt::Key_Down);
    Expect(list->currentIndex() == index, "the list is at its entry " + std::to_string(index));
}

void Soak::Fill(QWidget& page, int percent, int only) {
    for (auto* widget : page.findChildren<QWidget*>()) {
        const int id = widget->objectName().toInt();
        const bool isWanted = id >= 100 && (only < 0 || id == only);
        if (!isWanted || !widget->isVisible() || !widget->isEnabled() || !Percent(percent)) continue;
        if (auto* list = qobject_cast<QComboBox*>(widget)) {
            Choose(list, Pick(list->count()));
        } else if (auto* picker = dynamic_cast<CValuePicker*>(widget)) {
            const QString date =
                QDate(2000, 1, 1).addDays(Pick(3000)).toString(Of<QString>({"MM/dd/yyyy", "yyyy-MM-dd"}));
            const QString time = QTime(Pick(24), Pick(60)).toString(Of<QString>({"hh:mmap", "hh:mm", "hh:mm ap"}));
            const QString& text = dynamic_cast<CDatePicker*>(picker) ? date : time;
            Type(picker->focusProxy(), only >= 0 && Percent(10) ? "12:99" : Percent(80) ? text : QString());
        } else if (qobject_cast<QCheckBox*>(widget)) {
            Key(widget, Qt::Key_Space);
        } else if (qobject_cast<QRadioButton*>(widget)) {
            Click(widget, {8, 8});
        } else if (dynamic_cast<CValuePicker*>(widget->parentWidget()->parentWidget())) {
            continue;  // its line
        } else if (qobject_cast<QLineEdit*>(widget) || qobject_cast<QPlainTextEdit*>(widget)) {
            const QString text = Word();
            Type(widget, qobject_cast<QLineEdit*>(widget) ? text.section('\n', 0, 0) : text);
        }
    }
}

void Soak::Press(CQuillaryDialog& page, int control) {
    auto* button = page.Control<QWidget>(control);
    Expect(button && button->isVisible() && button->isEnabled(),
           "button " + std::to_string(control) + " can be pressed");
    if (qobject_cast<QPushButton*>(button) && control > kCancelButton) Cover(NameOf(control));
    Log("presses " + std::to_string(control));
    Click(button, button->rect().center());
}

// ---- Commands

std::vector<std::pair<QAction*, QAction*>> Soak::MenuItems() {
    std::vector<std::pair<QAction*, QAction*>> items;
    for (QAction* caption : Frame().findChild<QMenuBar*>()->actions()) {
        for (QAction* item : caption->menu()->actions()) items.emplace_back(caption, item);
    }
    return items;
}

void Soak::Command(int id, bool isEnabled) {
    Log(NameOf(id));
    QApplication::setActiveWindow(&Frame());
    std::vector<std::function<void()>> ways;
    for (auto* action : Frame().findChildren<QAction*>(QString::number(id), Qt::FindDirectChildrenOnly)) {
        Expect(action->isEnabled() == isEnabled, NameOf(id) + " is enabled: " + (isEnabled ? "yes" : "no"));
        for (const QKeySequence& key : action->shortcuts()) {
            ways.emplace_back([=, this] { Key(Focus(), key[0].key(), key[0].keyboardModifiers()); });
        }
    }
    for (auto* button : Frame().findChildren<QToolButton*>(QString::number(id))) {
        if (button->isVisible()) ways.emplace_back([=, this] { Click(button, button->rect().center()); });
    }
    for (const auto& [caption, item] : MenuItems()) {
        if (CommandOf(*item) != id) continue;
        ways.emplace_back([=, this, menu = caption->menu(), caption = caption, item = item] {
            auto* bar = Frame().findChild<QMenuBar*>();
            Click(bar, bar->actionGeometry(caption).center());
            Click(menu, menu->actionGeometry(item).center());
            menu->hide();  // a click on a disabled item leaves it open
        });
    }
    Expect(!ways.empty(), "there is a way to " + NameOf(id));
    Of(ways)();
    QApplication::setActiveWindow(&Frame());
}

void Soak::FromContextMenu(QWidget* viewport, const QPoint& at, const QString& item) {
    Log("menu: " + item.toStdString());
    QContextMenuEvent asked(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QApplication::sendEvent(viewport, &asked);
    QTest::qWait(0);
    QApplication::setActiveWindow(&Frame());  // as a window manager leaves it
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    Expect(menu, "a menu opens");
    for (QAction* action : menu->actions()) {
        if (action->text().remove(u'&') == item) return Click(menu, menu->actionGeometry(action).center());
    }
    Fail("the menu lacks " + item.toStdString());
}

}  // namespace quillary::soak
