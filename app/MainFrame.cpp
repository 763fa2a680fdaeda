#include "app/MainFrame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>
#include <algorithm>

#include "admin/Settings.h"
#include "app/RecordBar.h"
#include "platform/NativePath.h"
#include "platform/WindowActivation.h"
#include "ui/Accelerators.h"
#include "ui/Captions.h"
#include "ui/CommandIds.h"
#include "ui/HelpBook.h"
#include "ui/HelpTopics.h"
#include "ui/MenuPlace.h"
#include "ui/Menus.h"
#include "ui/OpenDialog.h"
#include "ui/QuillaryDialog.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

namespace {

constexpr std::string_view kGeometry = "Geometry";

}  // namespace

std::span<const CommandEntry<CMainFrame>> CMainFrame::Commands() {
    static constexpr CommandEntry<CMainFrame> kCommands[] = {
        {ID_APP_EXIT, &CMainFrame::OnExit},
        {ID_HELP, &CMainFrame::OnHelp},
    };
    return kCommands;
}

CMainFrame::CMainFrame(CommandTarget& application, InputPanel& inputPanel)
    : m_application(application),
      m_inputPanel(inputPanel),
      m_menus(new QMenuBar),
      m_pages(new QStackedWidget),
      m_docList(new QWidget),
      m_actions(
          *this, AllAccelerators(), [this](int command) { Dispatch(command); },
          [this](int command, CommandState& state) { QueryState(command, state); }),
      m_recordBar(new CRecordBar(m_actions, [this] { Dispatch(ID_FILE_OPEN); })) {
    qApp->installEventFilter(new MenuByShiftF10(this));
    m_menus->setNativeMenuBar(false);  // a place of its own, also for the tests' clicks
    setMenuBar(m_menus);
    addToolBar(m_recordBar);
    setCentralWidget(m_pages);
    resize(QSize(1000, 640).boundedTo(screen()->availableSize() * 9 / 10));
    m_docList->setFocusPolicy(Qt::StrongFocus);
    ForgetDatabase();
}

CMainFrame::~CMainFrame() = default;

void CMainFrame::ShowDatabase(CDocumentSession& session, CQuillaryView& view) {
    m_session = &session;
    m_view = &view;
    m_pages->addWidget(m_view);
    m_pages->setCurrentWidget(m_view);
    m_view->setFocus();
    m_actions.FillMenuBar(*m_menus, kMenuDatabase);
    m_recordBar->show();
    m_view->UpdateRecordCounter();
    ShowTitle();
}

void CMainFrame::ForgetDatabase() {
    if (m_view) m_pages->removeWidget(m_view);
    m_view = nullptr;
    m_session = nullptr;
    ShowDocList(*m_docList);
    m_recordBar->hide();
    m_actions.FillMenuBar(*m_menus, kMenuNoDatabase);
    ShowTitle();
}

void CMainFrame::ShowDocList(QWidget& list) {
    m_docList = &list;
    if (m_pages->indexOf(&list) < 0) m_pages->addWidget(&list);
    m_pages->setCurrentWidget(&list);
    list.setFocus();
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
    if (m_dialogs.empty() || command == ID_APP_EXIT) {
        for (const CommandTarget* target : Route()) {
            if (target && target->UpdateCommand(command, state)) return;
        }
    }
    state.Enable(false);
}

void CMainFrame::ShowRecordCounter(int current, int total) {
    const int hidden = m_session ? static_cast<int>(m_session->Doc().Hidden().size()) : 0;
    m_recordBar->ShowCounter(current, total, hidden);
}

void CMainFrame::ShowHelp(std::string_view topic) {
    if (!m_help) {
        m_help = std::make_unique<CHelpBook>();
        m_help->setAttribute(Qt::WA_QuitOnClose, false);  // the program ends with its main window
    }
    m_help->ShowTopic(topic);
}

void CMainFrame::OnHelp() { ShowHelp(m_view ? kTopicRecordList : kTopicDocumentList); }

void CMainFrame::PostCommand(int command) {
    QMetaObject::invokeMethod(
        this, [this, command] { Dispatch(command); }, Qt::QueuedConnection);
}

void CMainFrame::DocumentChanged() {
    ShowTitle();
    m_actions.UpdateStates();
}

void CMainFrame::ShowTitle() {
    QString title = FromWide(Caption(kCaptionProgram));
    if (m_session) {
        const CQuillaryDoc& doc = m_session->Doc();
        title = m_session->DisplayName();
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
    m_focusBefore.emplace_back(focusWidget());
    m_pages->addWidget(&dialog);
    m_pages->setCurrentWidget(&dialog);
    m_menus->setEnabled(false);
    m_recordBar->setEnabled(false);
    m_actions.UpdateStates();
}

void CMainFrame::EndDialog(CQuillaryDialog& dialog) {
    m_pages->removeWidget(&dialog);
    m_dialogs.pop_back();
    QWidget* focus = m_focusBefore.back();
    m_focusBefore.pop_back();
    QWidget* page = m_docList;
    if (m_view) page = m_view;
    if (!m_dialogs.empty()) page = m_dialogs.back();
    m_pages->setCurrentWidget(page);
    m_menus->setEnabled(m_dialogs.empty());
    m_recordBar->setEnabled(m_dialogs.empty());
    if (m_dialogs.empty()) focus = page;
    if (focus) focus->setFocus();
    m_actions.UpdateStates();
}

void CMainFrame::CancelDialog() {
    if (!m_dialogs.empty()) m_dialogs.back()->reject();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    if (!OpenDialog::All().empty()) {
        event->ignore();
        if (std::exchange(m_askingToClose, true)) return;
        const auto way = CUnwinding::AskForWay(this, QStringLiteral("Save the changes before closing?"));
        m_askingToClose = false;
        if (way) m_unwinding.Start(*way, {[this] { close(); }});
        return;
    }
    event->setAccepted(!m_session || m_session->Leave());
    if (event->isAccepted() && m_windowSettings) {
        m_windowSettings->WriteText(kGeometry, saveGeometry().toBase64().toStdString());
    }
}

void CMainFrame::KeepGeometry(Settings& settings) {
    m_windowSettings = &settings;
    const QByteArray kept = QByteArray::fromBase64(QByteArray::fromStdString(settings.ReadText(kGeometry, {})));
    if (!restoreGeometry(kept) || isMaximized()) return;
    // The toolkit leaves a window alone of which a corner can be seen.
    const QScreen* at = QGuiApplication::screenAt(geometry().center());
    const QRect there = (at ? at : screen())->availableGeometry();
    QRect place(geometry().topLeft(), size().boundedTo(there.size()));
    place.moveTo(std::clamp(place.left(), there.left(), there.right() - place.width() + 1),
                 std::clamp(place.top(), there.top(), there.bottom() - place.height() + 1));
    setGeometry(place);
}

void CMainFrame::BringToFront(const std::string& activationToken) {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    if (windowHandle()) ActivateWindow(*windowHandle(), activationToken);
}

}  // namespace quillary
