#include "app/QuillaryApp.h"

#include <QDir>
#include <QFileDialog>

#include "app/RecoveryCopy.h"
#include "app/WindowQuestions.h"
#include "platform/NativePath.h"
#include "ui/AboutDlg.h"
#include "ui/CommandIds.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary {

std::span<const CommandEntry<CQuillaryApp>> CQuillaryApp::Commands() {
    static constexpr CommandEntry<CQuillaryApp> kCommands[] = {
        {ID_FILE_OPEN, &CQuillaryApp::OnFileOpen},
        {ID_APP_ABOUT, &CQuillaryApp::OnAbout},
    };
    return kCommands;
}

CQuillaryApp::CQuillaryApp(FileAccess& files, const StorageLocations& locations)
    : m_files(files), m_locations(locations), m_frame(*this) {}

CQuillaryApp::~CQuillaryApp() { CloseDocument(); }

void CQuillaryApp::InitInstance(const Path& path) {
    m_frame.show();
    if (!path.empty()) {
        OpenDocumentFile(path);
        return;
    }
    const QDir documents(FromPath(m_locations.MainFolder()));
    if (documents.entryList({QStringLiteral("*.pdb")}, QDir::Files | QDir::Readable).isEmpty()) return;
    QMetaObject::invokeMethod(
        &m_frame, [this] { m_frame.Dispatch(ID_FILE_OPEN); }, Qt::QueuedConnection);
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path) {
    CWindowQuestions questions(m_frame);
    return OpenDocumentFile(path, OpenMode::Edit, questions);
}

CQuillaryDoc* CQuillaryApp::OpenDocumentFile(const Path& path, OpenMode mode, Questions& questions) {
    CloseDocument();
    auto doc = std::make_unique<CQuillaryDoc>(m_files);
    if (!doc->OpenDatabase(path, mode, questions)) return nullptr;
    if (mode == OpenMode::Edit && doc->Recovery() == RecoveryState::Unrelated) {
        const CopyChoice choice = SettleRecoveryCopy(m_files, path, &m_frame);
        if (choice == CopyChoice::Undecided) return nullptr;
        if (choice == CopyChoice::Restored && !doc->OpenDatabase(path, mode, questions)) return nullptr;
    }
    m_session = std::make_unique<CDocumentSession>(std::move(doc), m_files, m_frame);
    m_view = std::make_unique<CQuillaryView>(*m_session, m_frame);
    m_frame.ShowDatabase(*m_session, *m_view);
    return &m_session->Doc();
}

void CQuillaryApp::CloseDocument() {
    if (!m_session) return;
    m_session->Finish();
    m_frame.ShowStartPage();
    m_view.reset();
    m_session.reset();
}

void CQuillaryApp::OnFileOpen() {
    const QString file =
        QFileDialog::getOpenFileName(&m_frame, QStringLiteral("Open Database"), FromPath(m_locations.MainFolder()),
                                     QStringLiteral("Quillary Files (*.pdb *.PDB);;All Files (*)"));
    if (!file.isEmpty()) OpenDocumentFile(ToPath(file));
}

void CQuillaryApp::OnAbout() { CAboutDlg(m_frame).exec(); }

}  // namespace quillary
