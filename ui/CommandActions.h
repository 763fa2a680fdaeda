// The commands as the desktop knows them: one QAction a command, shared by accelerators and toolbars, and one for each
// place in a menu. A screen reader knows an item by its action, so that two menus cannot share one.
#pragma once

#include <QString>
#include <functional>
#include <map>
#include <span>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

namespace quillary {

class CMenuCommand;
class CommandState;
struct Accelerator;

class CCommandActions {
  public:
    using Run = std::function<void(int command)>;
    /// Asks the state of a command; one that nobody handles comes back disabled.
    using Update = std::function<void(int command, CommandState& state)>;

    /// Makes the accelerators' actions, which work wherever the focus is in `window`.
    CCommandActions(QWidget& window, std::span<const Accelerator> accelerators, Run run, Update update);

    /// Makes `bar` show that menu bar of ui/Menus.h.
    void FillMenuBar(QMenuBar& bar, int menuBarId);
    /// Adds the buttons of that toolbar of ui/ToolBars.h.
    void FillToolBar(QToolBar& bar, int toolBarId);
    /// The same for a bar that stands in a dialog.
    void FillDialogBar(QToolBar& bar, int toolBarId);
    /// Brings all actions up to date.
    void UpdateStates();

  private:
    [[nodiscard]] QAction* Action(int command);
    [[nodiscard]] std::vector<QMenu*> MakeMenus(int menuBarId);
    void AddItem(QMenu& menu, int command, const QString& text);
    void ShowKeys(const QMenu& menu, bool on);

    QWidget& m_window;
    Run m_run;
    Update m_update;
    std::map<int, QAction*> m_actions;  // children of m_window
    std::multimap<int, CMenuCommand*> m_menuItems;
    std::multimap<int, QWidget*> m_buttons;      // as long as the window
    std::map<int, std::vector<QMenu*>> m_menus;  // by menu bar, made when it first shows
};

}  // namespace quillary
