// The commands as the desktop knows them: one QAction a command, shared by menus and accelerators.
#pragma once

#include <QString>
#include <functional>
#include <map>

class QAction;
class QIcon;
class QMenuBar;
class QWidget;

namespace quillary {

class CommandState;

class CCommandActions {
  public:
    using Run = std::function<void(int command)>;
    /// Asks the state of a command; one that nobody handles comes back disabled.
    using Update = std::function<void(int command, CommandState& state)>;

    /// Makes the accelerators' actions, which work wherever the focus is in `window`.
    CCommandActions(QWidget& window, Run run, Update update);

    /// Replaces the content of `bar` by that menu bar of ui/Menus.h.
    void FillMenuBar(QMenuBar& bar, int menuBarId);
    /// Brings all actions up to date.
    void UpdateStates();

    [[nodiscard]] QAction* Action(int command);
    /// The command's action for a toolbar, with its icon and tooltip.
    [[nodiscard]] QAction* AddButton(int command, const QString& toolTip, const QIcon& icon);

  private:
    QWidget& m_window;
    Run m_run;
    Update m_update;
    std::map<int, QAction*> m_actions;  // children of m_window
    std::map<int, QString> m_toolTips;
};

}  // namespace quillary
