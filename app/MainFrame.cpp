#include "app/MainFrame.h"

#include <QCloseEvent>
#include <QScreen>
#include <QStackedWidget>

#include "app/CommandBar.h"
#include "app/StartPage.h"
#include "platform/NativePath.h"
#include "ui/Captions.h"
#include "ui/CommandIds.h"
#include "ui/Menus.h"
#include "ui/QuillaryDialog.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

std::span<const CommandEntry<CMainFrame>> CMainFrame::Commands() {
    static constexpr CommandEntry<CMainFrame> kCommands[] = {
        {ID_APP_EXIT, &CMainFrame::OnExit},
    };
    return kCommands;
}

CMainFrame::CMainFrame(CommandTarget& application)
    : m_application(application),
      m_bar(new CCommandBar),
      m_pages(new QStackedWidget),
      m_startPage(new CStartPage([this] { Dispatch(ID_FILE_OPEN); })),
      m_actions(
          *this, [this](int command) { Dispatch(command); },
          [this](int command, CommandState& state) { QueryState(command, state); }) {
    setMenuBar(m_bar);
    setCentralWidget(m_pages);
    m_pages->addWidget(m_startPage);
    resize(QSize(1000, 640).boundedTo(screen()->availableSize() * 9 / 10));
    ShowStartPage();
}

CMainFrame::~CMainFrame() = default;

void CMainFrame::ShowDatabase(CDocumentSession& session, CQuillaryView& view) {
    m_session = &session;
    m_view = &view;
    m_pages->addWidget(m_view);
    m_pages->setCurrentWidget(m_view);
    m_view->setFocus();
    m_actions.FillMenuBar(*m_bar, kMenuDatabase);
    m_bar->ShowCounter(true);
    m_view->UpdateRecordCounter();
    ShowTitle();
}

void CMainFrame::ShowStartPage() {
    if (m_view) m_pages->removeWidget(m_view);
    m_view = nullptr;
    m_session = nullptr;
    m_pages->setCurrentWidget(m_startPage);
    m_startPage->setFocus();
    m_bar->ShowCounter(false);
    m_actions.FillMenuBar(*m_bar, kMenuNoDatabase);
    ShowTitle();
}

std::array<CommandTarget*, 4> CMainFrame::Route() { return {m_view, m_session, this, &m_application}; }

void CMainFrame::Dispatch(int command) {
    CommandState state;
    QueryState(command, state);
    if (!state.IsEnabled()) return;
    for (CommandTarget* target : Route()) {
        if (target && target->RunCommand(command)) break;
    }
    DocumentChanged();
}

void CMainFrame::QueryState(int command, CommandState& state) {
    if (m_dialogs.empty()) {
        for (const CommandTarget* target : Route()) {
            if (target && target->UpdateCommand(command, state)) return;
        }
    }
    state.Enable(false);
}

void CMainFrame::ShowRecordCounter(int current, int total) {
    m_bar->SetCounter(QStringLiteral("%1 of %2").arg(current).arg(total));
}

void CMainFrame::DocumentChanged() {
    ShowTitle();
    m_actions.UpdateStates();
}

void CMainFrame::ShowTitle() {
    QString title = FromWide(Caption(kCaptionProgram));
    if (m_session) {
        const CQuillaryDoc& doc = m_session->Doc();
        title = FromWide(doc.Name());
        if (title.isEmpty()) title = FromPath(doc.FilePath().stem());
        if (doc.IsReadOnly()) {
            title += QStringLiteral(" (read only)");
        } else if (doc.IsModified()) {
            title += u'*';
        }
    }
    title.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));  // Qt reads a single one as a place for a mark
    setWindowTitle(title);
}

void CMainFrame::BeginDialog(CQuillaryDialog& dialog) {
    m_dialogs.push_back(&dialog);
    m_pages->addWidget(&dialog);
    m_pages->setCurrentWidget(&dialog);
    m_bar->setEnabled(false);
    m_actions.UpdateStates();
}

void CMainFrame::EndDialog(CQuillaryDialog& dialog) {
    m_pages->removeWidget(&dialog);
    m_dialogs.pop_back();
    QWidget* page = m_startPage;
    if (m_view) page = m_view;
    if (!m_dialogs.empty()) page = m_dialogs.back();
    m_pages->setCurrentWidget(page);
    m_bar->setEnabled(m_dialogs.empty());
    if (m_dialogs.empty()) page->setFocus();
    m_actions.UpdateStates();
    if (!m_closeAfterDialog) return;
    // Once the handler that had opened the dialog has returned.
    QMetaObject::invokeMethod(this, "close", Qt::QueuedConnection);
}

void CMainFrame::CancelDialog() {
    if (!m_dialogs.empty()) m_dialogs.back()->reject();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    m_closeAfterDialog = !m_dialogs.empty();
    if (m_closeAfterDialog) {
        event->ignore();
        CancelDialog();
        return;
    }
    if (m_session) m_session->Finish();
    event->accept();
}

}  // namespace quillary
