#include "app/QuillaryApp.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileDialog>
#include <QTimer>
#include <system_error>

#include "admin/FieldDefinitionsDlg.h"
#include "admin/PreferencesDlg.h"
#include "admin/Settings.h"
#include "app/CreateDatabase.h"
#include "app/DownloadDatabase.h"
#include "app/RecoveryCopy.h"
#include "app/Splash.h"
#include "app/WindowQuestions.h"
#include "platform/FolderWatcher.h"
#include "platform/InputPanel.h"
#include "platform/NativePath.h"
#include "platform/RecentFiles.h"
#include "remote/DownloadProgressDlg.h"
#include "remote/HttpSession.h"
#include "ui/AboutDlg.h"
#include "ui/CommandIds.h"
#include "ui/FileFilter.h"
#include "ui/MessageBox.h"
#include "ui/OpenDialog.h"
#include "ui/RowColor.h"
#include "ui/StepLog.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

namespace {

constexpr int kSettlingMilliseconds = 100;

// Holds back why a database was not opened until it is known whether that is all there is to tell.
class HoldingQuestions : public Questions {
  public:
    explicit HoldingQuestions(Questions& questions) : m_questions(questions) {}
    void Tell(const Failure& failure) override { m_held = failure; }
    [[nodiscard]] bool AskDatabasePassword(const CQuillaryDoc& doc) override {
        return m_questions.AskDatabasePassword(doc);
    }
    /// Says besides which file it is about, and what the reader found.
    void TellHeld(const Path& path, const Failure& readerError) {
        if (!m_held) return;
        if (m_held->message == Message::InvalidDatabaseFile) {
            const Path name = path.filename();
            m_held->reason = (name.empty() ? path : name).string() + ": " +
                             (readerError.message == Message::None ? "This is no database." : readerError.WithReason());
        }
        m_questions.Tell(*m_held);
    }

  private:
    Questions& m_questions;
    std::optional<Failure> m_held;
};

}  // namespace

std::span<const CommandEntry<CQuillaryApp>> CQuillaryApp::Commands() {
    static constexpr CommandEntry<CQuillaryApp> kCommands[] = {
        {ID_FILE_NEW, &CQuillaryApp::OnFileNew},
        {ID_FILE_OPEN, &CQuillaryApp::OnFileOpen},
        {ID_APP_DOWNLOAD, &CQuillaryApp::OnDownload},
        {ID_APP_PREFERENCES, &CQuillaryApp::OnPreferences},
        {ID_DATABASE_PREFERENCES, &CQuillaryApp::OnPreferences},
        {ID_APP_ABOUT, &CQuillaryApp::OnAbout},
    };
    return kCommands;
}

CQuillaryApp::CQuillaryApp(const Desktop& desktop)
    : m_desktop(desktop),
      m_alternatingRowColor(kNoRowColor),
      m_frame(*this, desktop.inputPanel),
      m_phone(desktop.launcher),
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
    LogStep(QStringLiteral("splash enabled"));
    ReadProfile();
    m_template = std::make_unique<CMyDocListTemplate>(
        m_frame, m_desktop,
        CMyDocListTemplate::Requests{[this](const Path& path) { OpenDocumentFile(path); }, [this] { OpenOther(); },
                                     [this] { m_frame.Dispatch(ID_FILE_NEW); }});
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

void CQuillaryApp::ShowDocList(const Path& select) {
    LogStep(QStringLiteral("document list"));
    if (m_template) m_template->ShowDocList(select);
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path) {
    if (m_session &&
        m_desktop.files.CanonicalPath(path) == m_desktop.files.CanonicalPath(m_session->Doc().FilePath())) {
        FollowFile();
        const CQuillaryDoc& doc = m_session->Doc();
        // What a dialog that was ended for this could not save.
        if (doc.IsModified() && m_keptChange != doc.ChangeNumber()) m_session->Save();
        return &m_session->Doc();
    }
    CWindowQuestions questions(m_frame);
    CQuillaryDoc* doc = OpenDocumentFile(path, OpenMode::Edit, questions);
    if (!doc && !m_session) ShowDocList();
    return doc;
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path, OpenMode mode, Questions& questions) {
    if (m_session && !m_session->Leave()) return nullptr;
    CloseDocument();
    auto doc = Read(path, mode, questions, mode == OpenMode::Edit);
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
    if (!mayAsk) {
        if (m_session) m_session->Retry();
        return true;
    }
    const auto way = CUnwinding::AskForWay(&m_frame, QStringLiteral("Save the changes before closing?"));
    if (!way) return false;
    // An accepted dialog's command saves as soon as the desktop's question is answered.
    // It can no longer stop the end of the session then, but what it cannot save may go elsewhere.
    const auto mayEnd = std::make_shared<bool>(false);
    m_frame.Unwinding().Start(*way, {[this, mayEnd] {
        if (*mayEnd && m_session) (void)m_session->Leave();
    }});
    // A page that is to be saved waits for what stands on it to end, which is after this answer.
    const std::vector<QDialog*>& open = OpenDialog::All();
    const auto stays = [](const QDialog* dialog) { return dialog->isVisible(); };
    const bool isRefused = *way == CUnwinding::Way::Save ? std::any_of(open.begin(), open.end(), stays)
                                                         : !open.empty() && stays(open.back());
    *mayEnd = !isRefused && (!m_session || m_session->Leave());
    return *mayEnd;
}

std::unique_ptr<CQuillaryDoc> CQuillaryApp::Read(const Path& path, OpenMode mode, Questions& questions, bool mayAsk) {
    auto doc = std::make_unique<CQuillaryDoc>(m_desktop.files);
    HoldingQuestions holding(questions);
    bool isOpen = doc->OpenDatabase(path, mode, holding);
    const CopyChoice choice = mayAsk ? SettleRecoveryCopy(m_desktop.files, path, *doc, &m_frame) : CopyChoice::None;
    if (choice == CopyChoice::Undecided) return nullptr;  // its question has told what is wrong
    if (choice == CopyChoice::Restored) {
        isOpen = doc->OpenDatabase(path, mode, questions);
    } else {
        holding.TellHeld(path, doc->ReaderError());
    }
    return isOpen ? std::move(doc) : nullptr;
}

void CQuillaryApp::Show(std::unique_ptr<CQuillaryDoc> doc) {
    m_session = std::make_unique<CDocumentSession>(std::move(doc), m_desktop.files, m_frame, *this);
    m_view =
        std::make_unique<CQuillaryView>(*m_session, m_frame, m_desktop.trash,
                                        FormSurroundings{m_desktop.clock, m_desktop.locale, m_desktop.settings,
                                                         m_dialing, m_desktop.launcher, m_desktop.makePersonalStore});
    m_view->SetRowColor(RowColor(m_alternatingRowColor));
    m_frame.ShowDatabase(*m_session, *m_view);
    WatchFile();
}

void CQuillaryApp::WatchFile() {
    // The name's folder, and the one where the file is when the name is a link.
    std::vector<Path> folders;
    const Path& path = m_session->Doc().FilePath();
    for (const Path& folder : {path.parent_path(), m_desktop.files.CanonicalPath(path).parent_path()}) {
        folders.push_back(folder.empty() ? Path(".") : folder);
    }
    if (folders[0] == folders[1]) folders.pop_back();
    (void)m_desktop.fileWatcher.Watch(folders);  // without watches, the next save still finds out
}

void CQuillaryApp::DocumentMoved() {
    WatchFile();
    Remember(m_session->Doc().FilePath());
}

void CQuillaryApp::FollowFile() {
    if (!m_session) return;
    const CQuillaryDoc& doc = m_session->Doc();
    const bool isKept = m_keptChange == doc.ChangeNumber();  // unsaved only because the file could not be read
    const bool isUnsaved = doc.IsModified() && !doc.IsReadOnly() && !isKept;
    if (isUnsaved || !doc.HasFileChanged()) return;
    // A command works on the document, a menu is open, or a column is being dragged.
    const bool isBusy = !OpenDialog::All().empty() || QApplication::activePopupWidget() ||
                        QGuiApplication::mouseButtons() != Qt::NoButton;
    if (isBusy) {
        m_fileChanged.start();
    } else {
        ReadAgain(Reading::Quiet);
    }
}

void CQuillaryApp::ReopenDocument() {
    m_reopening = true;
    // The dialog in which a save came upon the other program's change shows records that go away.
    QMetaObject::invokeMethod(
        &m_frame,
        [this] {
            m_frame.Unwinding().Start(CUnwinding::Way::Cancel, {[this] {
                                                                    m_reopening = false;
                                                                    ReadAgain(Reading::Telling);
                                                                },
                                                                [this] { m_reopening = false; }});
        },
        Qt::QueuedConnection);
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

void CQuillaryApp::ReadAgain(Reading reading) {
    if (!m_session) return;
    m_session->Finish();  // the last save's flush holds the file
    const CQuillaryDoc& old = m_session->Doc();
    CWindowQuestions questions(m_frame, old.DatabasePasswordHash(), reading == Reading::Quiet);
    auto doc = Read(old.FilePath(), OpenMode::Edit, questions, reading == Reading::Telling);
    if (!doc) {
        if (reading == Reading::Telling) return;
        // A file that is still being copied may be a database with the next change.
        m_keptChange = old.ChangeNumber();
        m_session->Doc().KeepUnsaved();
        m_frame.DocumentChanged();
        return;
    }
    const CQuillaryView::Place place = m_view->CurrentPlace();
    CloseDocument();
    Show(std::move(doc));
    m_view->GoTo(place);
    m_frame.DocumentChanged();
}

void CQuillaryApp::CloseDocument() {
    if (!m_session) return;
    m_session->Finish();
    m_keptChange.reset();
    m_frame.ForgetDatabase();
    (void)m_desktop.fileWatcher.Watch({});
    m_view.reset();
    m_session.reset();
}

// While a database is open, the document takes the command: a new record.
void CQuillaryApp::OnFileNew() {
    const auto defineFields = [this] { return RunFieldDefinitions({}, AnsiText::Windows1252(), m_frame); };
    const auto path = CreateDatabase({m_desktop.files, m_desktop.locations, m_desktop.settings}, m_frame, defineFields);
    if (path) {
        CMyDocListTemplate::SetRefreshFlag();
        OpenDocumentFile(*path);
    } else {
        ShowDocList();
    }
}

void CQuillaryApp::OnFileOpen() {
    if (!m_session) {
        OpenOther();
    } else if (m_session->Leave()) {
        const Path path = m_session->Doc().FilePath();
        CloseDocument();
        ShowDocList(path);
    }
}

void CQuillaryApp::OpenOther() {
    QFileDialog chooser(&m_frame, QStringLiteral("Open Database"), FromPath(m_desktop.locations.MainFolder()),
                        DatabaseFileFilter() + QStringLiteral(";;AllFiles (*)"));
    chooser.setFileMode(QFileDialog::ExistingFile);
    chooser.setOption(QFileDialog::HideNameFilterDetails);
    {
        const OpenDialog open(chooser);
        if (chooser.exec() != QDialog::Accepted) return;
    }
    OpenDocumentFile(ToPath(chooser.selectedFiles().first()));
}

void CQuillaryApp::OnDownload() {
    auto session = m_desktop.openHttp ? m_desktop.openHttp() : nullptr;
    if (!session) {
        ShowMessage(&m_frame,
                    QStringLiteral("Nothing can be downloaded, as the program's part for HTTP does not load."));
        return;
    }
    const Downloaded downloaded =
        DownloadDatabases(std::move(session), m_desktop.settings,
                          {m_desktop.files, m_desktop.locations, AnsiText::Windows1252()}, m_frame);
    if (downloaded.files.empty()) return;
    CMyDocListTemplate::SetRefreshFlag();
    if (downloaded.isOpenedNow) {
        OpenDocumentFile(downloaded.files.front());
    } else if (!m_session) {
        ShowDocList(downloaded.files.front());
    }
}

void CQuillaryApp::OnPreferences() {
    CPreferencesDlg dialog(m_desktop.settings, m_desktop.locations, m_frame);
    if (dialog.exec() != QDialog::Accepted) return;
    m_alternatingRowColor = dialog.Values().rowColor;
    if (m_view) m_view->SetRowColor(RowColor(m_alternatingRowColor));
}

void CQuillaryApp::OnAbout() { CAboutDlg(m_frame).exec(); }

}  // namespace quillary
