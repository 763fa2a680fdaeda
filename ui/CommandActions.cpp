#include "ui/CommandActions.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "ui/Accelerators.h"
#include "ui/Captions.h"
#include "ui/CommandTarget.h"
#include "ui/Icon.h"
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
        action->setIconVisibleInMenu(false);
        m_toolTips[button.command] = FromWide(button.toolTip);
        if (action->text().isEmpty()) action->setText(FromWide(button.toolTip));  // the name for a screen reader
        bar.addAction(action);
        bar.widgetForAction(action)->setObjectName(action->objectName());
    }
}

void CCommandActions::FillMenuBar(QMenuBar& bar, int menuBarId) {
    const std::span<const Popup> popups = PopupsOf(menuBarId);
    QStringList captions;
    for (const Popup& popup : popups) captions << FromWide(Caption(popup.caption));
    captions = WithMnemonics(captions);

    const QList<QAction*> old = bar.actions();
    bar.clear();
    for (QAction* action : old) action->menu()->deleteLater();  // the command may come from one of them
    for (std::size_t i = 0; i < popups.size(); ++i) {
        QMenu* menu = bar.addMenu(captions[static_cast<qsizetype>(i)]);
        menu->setToolTipsVisible(true);  // a disabled command says there why it is
        QObject::connect(menu, &QMenu::aboutToShow, &m_window, [this] { UpdateStates(); });
        QStringList texts;
        for (const MenuItem& item : popups[i].items) texts << FromWide(item.text);
        texts = WithMnemonics(texts);
        for (std::size_t k = 0; k < popups[i].items.size(); ++k) {
            const MenuItem& item = popups[i].items[k];
            if (item.command == kSeparator) {
                menu->addSeparator();
                continue;
            }
            QAction* action = Action(item.command);
            action->setText(texts[static_cast<qsizetype>(k)]);
            menu->addAction(action);
        }
    }
    UpdateStates();
}

void CCommandActions::UpdateStates() {
    for (const auto& [command, action] : m_actions) {
        CommandState state;
        m_update(command, state);
        action->setEnabled(state.IsEnabled());
        const auto toolTip = m_toolTips.find(command);
        action->setToolTip(
            PlainToolTip(state.WhyNot().isEmpty() && toolTip != m_toolTips.end() ? toolTip->second : state.WhyNot()));
    }
}

}  // namespace quillary
