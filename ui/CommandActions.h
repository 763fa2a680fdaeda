// The commands as the desktop knows them: one QAction a command, shared by menus and accelerators.
#pragma once

#include <QString>
#include <functional>
#include <map>
#include <span>

class QAction;
class QMenuBar;
class QToolBar;
class QWidget;

namespace quillary {

class CommandState;
struct Accelerator;

class CCommandActions {
  public:
    using Run = std::function<void(int command)>;
    /// Asks the state of a command; one that nobody handles comes back disabled.
    using Update = std::function<void(int command, CommandState& state)>;

    /// Makes the accelerators' actions, which work wherever the focus is in `window`.
    CCommandActions(QWidget& window, std::span<const Accelerator> accelerators, Run run, Update update);

    /// Replaces the content of `bar` by that menu bar of ui/Menus.h.
    void FillMenuBar(QMenuBar& bar, int menuBarId);
    /// Adds the buttons of that toolbar of ui/ToolBars.h.
    void FillToolBar(QToolBar& bar, int toolBarId);
    /// Brings all actions up to date.
    void UpdateStates();

  private:
    [[nodiscard]] QAction* Action(int command);

    QWidget& m_window;
    Run m_run;
    Update m_update;
    std::map<int, QAction*> m_actions;  // children of m_window
    std::map<int, QString> m_toolTips;
};

}  // namespace quillary
