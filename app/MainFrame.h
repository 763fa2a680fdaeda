// The main window: its bars, its pages (record list, dialogs, document list), and the routing of commands.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "app/Unwinding.h"
#include "ui/CommandActions.h"
#include "ui/CommandTarget.h"
#include "ui/FrameWindow.h"

class QMenuBar;
class QStackedWidget;

namespace quillary {

class CDocumentSession;
class CHelpBook;
class CQuillaryView;
class CRecordBar;
class Settings;

class CMainFrame : public QMainWindow, public FrameWindow, public CommandMap<CMainFrame> {
  public:
    /// `application` receives what nobody before it wants.
    CMainFrame(CommandTarget& application, InputPanel& inputPanel);
    ~CMainFrame() override;

    /// Shows the record list of an open database.
    void ShowDatabase(CDocumentSession& session, CQuillaryView& view);
    /// Forgets both. The document list shows.
    void ForgetDatabase();
    void ShowDocList(QWidget& list);

    /// Offers the command to the active view, the document, this frame, the application. While a dialog is open, does
    /// nothing but end the program; does nothing when the update handler disables it.
    void Dispatch(int command);
    /// The state of a command, disabled when nobody handles it.
    void QueryState(int command, CommandState& state);

    [[nodiscard]] QWidget* Window() override { return this; }
    void ShowRecordCounter(int current, int total) override;
    void DocumentChanged() override;
    void ShowHelp(std::string_view topic) override;
    [[nodiscard]] InputPanel& Panel() override { return m_inputPanel; }
    void PostCommand(int command) override;
    void BeginDialog(CQuillaryDialog& dialog) override;
    void EndDialog(CQuillaryDialog& dialog) override;
    void CancelDialog() override;
    [[nodiscard]] bool IsEndingDialogs() const override { return m_unwinding.IsWaiting(); }

    /// Takes place and size from the settings, and writes them there when the window closes.
    void KeepGeometry(Settings& settings);
    void BringToFront(const std::string& activationToken);
    [[nodiscard]] CUnwinding& Unwinding() { return m_unwinding; }

    [[nodiscard]] static std::span<const CommandEntry<CMainFrame>> Commands();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void OnExit() { close(); }
    void OnHelp();
    [[nodiscard]] std::array<CommandTarget*, 4> Route();
    void ShowTitle();

    CommandTarget& m_application;
    InputPanel& m_inputPanel;
    std::unique_ptr<CHelpBook> m_help;
    CDocumentSession* m_session = nullptr;
    CQuillaryView* m_view = nullptr;
    QMenuBar* m_menus;
    QStackedWidget* m_pages;
    QWidget* m_docList;                            // an empty page until there is one
    std::vector<CQuillaryDialog*> m_dialogs;       // the innermost last
    std::vector<QPointer<QWidget>> m_focusBefore;  // each of them
    CUnwinding m_unwinding;
    bool m_askingToClose = false;
    Settings* m_windowSettings = nullptr;  // where the geometry is kept; null: nowhere
    CCommandActions m_actions;
    CRecordBar* m_recordBar;
};

}  // namespace quillary
