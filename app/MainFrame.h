// The main window: its bars, its pages (record list, dialogs, start page), and the routing of commands.
#pragma once

#include <QMainWindow>
#include <array>
#include <memory>
#include <vector>

#include "ui/CommandActions.h"
#include "ui/CommandTarget.h"
#include "ui/FrameWindow.h"

class QStackedWidget;

namespace quillary {

class CCommandBar;
class CDocumentSession;
class CQuillaryView;

class CMainFrame : public QMainWindow, public FrameWindow, public CommandMap<CMainFrame> {
  public:
    /// `application` receives what nobody before it wants.
    explicit CMainFrame(CommandTarget& application);
    ~CMainFrame() override;

    /// Shows the record list of an open database.
    void ShowDatabase(CDocumentSession& session, CQuillaryView& view);
    /// Forgets both and shows the start page.
    void ShowStartPage();
    void ShowMenuBar(int menuBarId);

    /// Offers the command to the active view, the document, this frame, the application. Does nothing while a dialog is
    /// open, or when its update handler disables it.
    void Dispatch(int command);
    /// The state of a command, disabled when nobody handles it.
    void QueryState(int command, CommandState& state);

    [[nodiscard]] QWidget* Window() override { return this; }
    void ShowRecordCounter(int current, int total) override;
    void DocumentChanged() override;
    void BeginDialog(CQuillaryDialog& dialog) override;
    void EndDialog(CQuillaryDialog& dialog) override;
    void CancelDialog() override;

    [[nodiscard]] static std::span<const CommandEntry<CMainFrame>> Commands();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void OnExit() { close(); }
    [[nodiscard]] std::array<CommandTarget*, 4> Route();
    void ShowTitle();

    CommandTarget& m_application;
    CDocumentSession* m_session = nullptr;
    CQuillaryView* m_view = nullptr;
    CCommandBar* m_bar;
    QStackedWidget* m_pages;
    QWidget* m_startPage;
    std::vector<CQuillaryDialog*> m_dialogs;  // the innermost last
    bool m_closeAfterDialog = false;
    CCommandActions m_actions;
};

}  // namespace quillary
