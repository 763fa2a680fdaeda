#include "ui/CommandActions.h"

#include <QAction>
#include <QKeySequence>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include "ui/Accelerators.h"
#include "ui/Captions.h"
#include "ui/CommandTarget.h"
#include "ui/Icon.h"
#include "ui/MenuCommand.h"
#include "ui/Menus.h"
#include "ui/Mnemonics.h"
#include "ui/ToolBars.h"
#include "ui/ToolTip.h"
#include "ui/WideText.h"

namespace quillary {

CCommandActions::CCommandActions(QWidget& window, std::span<const Accelerator> accelerators, Run run, Update update)
    : m_window(window), m_run(std::move(run)), m_update(std::move(update)) {
    for (const Accelerator& accelerator : accelerators) {
        QAction* action = Action(accelerator.command);
        QList<QKeySequence> keys = action->shortcuts();
        keys.append(QKeySequence(accelerator.key));
        action->setShortcuts(keys);
        action->setAutoRepeat(accelerator.repeats);
    }
}

QAction* CCommandActions::Action(int command) {
    QAction*& action = m_actions[command];
    if (!action) {
        action = new QAction(&m_window);
        action->setObjectName(QString::number(command));
        m_window.addAction(action);
        QObject::connect(action, &QAction::triggered, &m_window, [this, command] { m_run(command); });
    }
    return action;
}

void CCommandActions::FillToolBar(QToolBar& bar, int toolBarId) {
    for (const ToolButton& button : ButtonsOf(toolBarId)) {
        QAction* action = Action(button.command);
        action->setIcon(Icon(button.icon));
        action->setText(FromWide(button.toolTip));  // its name for a screen reader
        bar.addAction(action);
        QWidget* widget = bar.widgetForAction(action);
        widget->setObjectName(action->objectName());
        m_buttons.emplace(button.command, widget);
    }
}

void CCommandActions::FillDialogBar(QToolBar& bar, int toolBarId) {
    bar.setContextMenuPolicy(Qt::PreventContextMenu);
    bar.setIconSize(QSize(16, 16));
    bar.setContentsMargins({});
    bar.layout()->setContentsMargins({});
    FillToolBar(bar, toolBarId);
    for (auto* button : bar.findChildren<QToolButton*>()) {
        // All but the bar's own for what does not fit.
        if (button->objectName().toInt() != 0) button->setFocusPolicy(Qt::TabFocus);
    }
}

void CCommandActions::FillMenuBar(QMenuBar& bar, int menuBarId) {
    const auto [menus, isNew] = m_menus.try_emplace(menuBarId);
    if (isNew) menus->second = MakeMenus(menuBarId);
    bar.clear();
    for (QMenu* menu : menus->second) bar.addMenu(menu);
    UpdateStates();
}

std::vector<QMenu*> CCommandActions::MakeMenus(int menuBarId) {
    const std::span<const Popup> popups = PopupsOf(menuBarId);
    QStringList captions;
    for (const Popup& popup : popups) captions << FromWide(Caption(popup.caption));
    captions = WithMnemonics(captions);

    std::vector<QMenu*> menus;
    for (const Popup& popup : popups) {
        auto* menu = new QMenu(captions[static_cast<qsizetype>(menus.size())], &m_window);
        menu->setToolTipsVisible(true);  // a disabled command says there why it is
        QObject::connect(menu, &QMenu::aboutToShow, &m_window, [this, menu] {
            UpdateStates();
            ShowKeys(*menu, true);
        });
        // With keys of its own, an item would be in the way of its command's while the menu bar has the focus.
        QObject::connect(menu, &QMenu::aboutToHide, &m_window, [this, menu] { ShowKeys(*menu, false); });
        QStringList texts;
        for (const MenuItem& item : popup.items) texts << FromWide(item.text);
        texts = WithMnemonics(texts);
        qsizetype next = 0;
        for (const MenuItem& item : popup.items) {
            const QString& text = texts[next++];
            item.command == kSeparator ? (void)menu->addSeparator() : AddItem(*menu, item.command, text);
        }
        menus.push_back(menu);
    }
    return menus;
}

void CCommandActions::AddItem(QMenu& menu, int command, const QString& text) {
    auto* item = new CMenuCommand(menu, command, text);
    menu.addAction(item);
    item->setShortcutContext(Qt::WidgetShortcut);
    (void)Action(command);
    QObject::connect(item, &QAction::triggered, &m_window, [this, command] { m_run(command); });
    m_menuItems.emplace(command, item);
}

void CCommandActions::ShowKeys(const QMenu& menu, bool on) {
    for (QAction* action : menu.actions()) {
        auto* item = dynamic_cast<CMenuCommand*>(action);
        if (!item) continue;
        const auto own = m_actions.find(item->Command());
        if (own != m_actions.end()) item->setShortcuts(on ? own->second->shortcuts() : QList<QKeySequence>());
    }
}

void CCommandActions::UpdateStates() {
    for (const auto& [command, action] : m_actions) {
        CommandState state;
        m_update(command, state);
        const QString& whyNot = state.WhyNot();
        action->setEnabled(state.IsEnabled());
        action->setToolTip(whyNot.isEmpty() ? action->text() : PlainToolTip(whyNot));
        for (auto [button, end] = m_buttons.equal_range(command); button != end; ++button) {
            button->second->setAccessibleDescription(whyNot);
        }
        for (auto [item, end] = m_menuItems.equal_range(command); item != end; ++item) {
            item->second->SetState(state.IsEnabled(), whyNot);
        }
    }
}

}  // namespace quillary
