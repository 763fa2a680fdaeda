#include "app/QuillaryApp.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QTimer>
#include <system_error>

#include "admin/Settings.h"
#include "app/RecoveryCopy.h"
#include "app/Splash.h"
#include "app/StepLog.h"
#include "app/WindowQuestions.h"
#include "platform/FolderWatcher.h"
#include "platform/InputPanel.h"
#include "platform/NativePath.h"
#include "platform/RecentFiles.h"
#include "ui/AboutDlg.h"
#include "ui/CommandIds.h"
#include "ui/OpenDialog.h"
#include "ui/RowColor.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

namespace {

constexpr int kSettlingMilliseconds = 100;

}  // namespace

std::span<const CommandEntry<CQuillaryApp>> CQuillaryApp::Commands() {
    static constexpr CommandEntry<CQuillaryApp> kCommands[] = {
        {ID_FILE_OPEN, &CQuillaryApp::OnFileOpen},
        {ID_APP_ABOUT, &CQuillaryApp::OnAbout},
    };
    return kCommands;
}

CQuillaryApp::CQuillaryApp(const Desktop& desktop)
    : m_desktop(desktop),
      m_alternatingRowColor(kNoRowColor),
      m_frame(*this, desktop.inputPanel),
      m_handOver(m_frame, [this](const Path& path) { OpenDocumentFile(path); }) {
    m_fileChanged.setSingleShot(true);
    m_fileChanged.setInterval(kSettlingMilliseconds);
    QObject::connect(&m_fileChanged, &QTimer::timeout, &m_frame, [this] { FollowFile(); });
    m_desktop.fileWatcher.OnChange([this] { m_fileChanged.start(); });
}

CQuillaryApp::~CQuillaryApp() { CloseDocument(); }

bool CQuillaryApp::InitApplication(SingleInstance& instances, const LaunchRequest& request) {
    return m_handOver.Start(instances, request);
}

void CQuillaryApp::ReadProfile() {
    QCoreApplication::setOrganizationName(QStringLiteral("Telvane"));
    LogStep(QStringLiteral("registry key"));
    m_alternatingRowColor = m_desktop.settings.ReadInt(kAlternatingRowColor, kNoRowColor);
    LogStep(QStringLiteral("alternating row colour"));
}

void CQuillaryApp::InitInstance(const Path& path) {
    m_desktop.inputPanel.Hide();
    LogStep(QStringLiteral("input panel"));
    LogStep(QStringLiteral("splash"));
    ReadProfile();
    m_template = std::make_unique<CMyDocListTemplate>(
        m_frame, m_desktop,
        CMyDocListTemplate::Requests{[this](const Path& path) { OpenDocumentFile(path); }, [this] { OpenOther(); }});
    LogStep(QStringLiteral("document list template"));
    m_frame.KeepGeometry(m_desktop.windowSettings);
    LogStep(path.empty() ? QStringLiteral("shell command: nothing") : QStringLiteral("shell command: open file"));
    new CSplash(m_frame);  // goes by itself
    m_frame.show();
    if (path.empty()) {
        ShowDocList();
    } else {
        OpenDocumentFile(path);
    }
    m_frame.raise();
    LogStep(QStringLiteral("window on top"));
}

void CQuillaryApp::ShowDocList() {
    LogStep(QStringLiteral("document list"));
    if (m_template) m_template->ShowDocList();
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path) {
    CWindowQuestions questions(m_frame);
    CQuillaryDoc* doc = OpenDocumentFile(path, OpenMode::Edit, questions);
    if (!doc && !m_session) ShowDocList();
    return doc;
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path, OpenMode mode, Questions& questions) {
    if (m_session && !m_session->Leave()) return nullptr;
    CloseDocument();
    auto doc = Read(path, mode, questions);
    if (!doc) return nullptr;
    Show(std::move(doc));
    if (mode == OpenMode::Edit) Remember(path);
    return &m_session->Doc();
}

void CQuillaryApp::Remember(const Path& path) {
    LogStep(QStringLiteral("opened ") + FromPath(path));
    // Once the records show: the desktop's list can be long.
    QTimer::singleShot(0, &m_frame, [this, path] {
        std::error_code failed;
        const Path absolute = std::filesystem::absolute(path, failed);
        if (!failed) m_desktop.recentFiles.Add(absolute.lexically_normal());
    });
}

bool CQuillaryApp::CommitData(bool mayAsk) {
    m_frame.Unwinding().Start(CUnwinding::Way::Cancel, {[] {}});
    if (!m_session) return true;
    if (mayAsk) return m_session->Leave();
    m_session->Retry();
    return true;
}

std::unique_ptr<CQuillaryDoc> CQuillaryApp::Read(const Path& path, OpenMode mode, Questions& questions) {
    auto doc = std::make_unique<CQuillaryDoc>(m_desktop.files);
    if (!doc->OpenDatabase(path, mode, questions)) return nullptr;
    if (mode == OpenMode::Edit && doc->Recovery() == RecoveryState::Unrelated) {
        const CopyChoice choice = SettleRecoveryCopy(m_desktop.files, path, &m_frame);
        if (choice == CopyChoice::Undecided) return nullptr;
        if (choice == CopyChoice::Restored && !doc->OpenDatabase(path, mode, questions)) return nullptr;
    }
    return doc;
}

void CQuillaryApp::Show(std::unique_ptr<CQuillaryDoc> doc) {
    m_session = std::make_unique<CDocumentSession>(std::move(doc), m_desktop.files, m_frame, *this);
    m_view = std::make_unique<CQuillaryView>(*m_session, m_frame, m_desktop.trash);
    m_view->SetRowColor(RowColor(m_alternatingRowColor));
    m_frame.ShowDatabase(*m_session, *m_view);
    // Without watches, the next save still finds out.
    const Path folder = m_session->Doc().FilePath().parent_path();
    (void)m_desktop.fileWatcher.Watch({folder.empty() ? Path(".") : folder});
}

void CQuillaryApp::FollowFile() {
    if (!m_session || m_session->Doc().IsModified() || !m_session->Doc().HasFileChanged()) return;
    if (OpenDialog::All().empty()) {
        ReadAgain();
    } else {
        m_fileChanged.start();  // a command works on the document
    }
}

void CQuillaryApp::ReopenDocument() {
    QMetaObject::invokeMethod(
        &m_frame, [this] { ReadAgain(); }, Qt::QueuedConnection);
}

void CQuillaryApp::DropDocument() {
    QMetaObject::invokeMethod(
        &m_frame,
        [this] {
            CloseDocument();
            ShowDocList();
        },
        Qt::QueuedConnection);
}

void CQuillaryApp::ReadAgain() {
    if (!m_session) return;
    m_session->Finish();  // the last save's flush holds the file
    const CQuillaryDoc& old = m_session->Doc();
    CWindowQuestions questions(m_frame, old.DatabasePasswordHash());
    auto doc = Read(old.FilePath(), OpenMode::Edit, questions);
    if (!doc) return;
    const CQuillaryView::Place place = m_view->CurrentPlace();
    CloseDocument();
    Show(std::move(doc));
    m_view->GoTo(place);
}

void CQuillaryApp::CloseDocument() {
    if (!m_session) return;
    m_session->Finish();
    m_frame.ForgetDatabase();
    (void)m_desktop.fileWatcher.Watch({});
    m_view.reset();
    m_session.reset();
}

void CQuillaryApp::OnFileOpen() {
    if (!m_session) {
        OpenOther();
    } else if (m_session->Leave()) {
        CloseDocument();
        ShowDocList();
    }
}

void CQuillaryApp::OpenOther() {
    QFileDialog chooser(&m_frame, QStringLiteral("Open Database"), FromPath(m_desktop.locations.MainFolder()),
                        QStringLiteral("Quillary Files (*.pdb *.PDB);;All Files (*)"));
    chooser.setFileMode(QFileDialog::ExistingFile);
    {
        const OpenDialog open(chooser);
        if (chooser.exec() != QDialog::Accepted) return;
    }
    OpenDocumentFile(ToPath(chooser.selectedFiles().first()));
}

void CQuillaryApp::OnAbout() { CAboutDlg(m_frame).exec(); }

}  // namespace quillary
