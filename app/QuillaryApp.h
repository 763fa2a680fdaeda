// The application: starts the window, opens and closes databases, and handles the commands that need none.
#pragma once

#include <QTimer>
#include <cstdint>
#include <memory>
#include <optional>

#include "admin/StorageLocations.h"
#include "app/Desktop.h"
#include "app/HandOver.h"
#include "app/MainFrame.h"
#include "app/MyDocListTemplate.h"
#include "app/WindowQuestions.h"
#include "db/QuillaryDoc.h"
#include "integration/Dialing.h"
#include "platform/TelephoneLinks.h"
#include "ui/CommandTarget.h"
#include "views/DocumentHost.h"

namespace quillary {

class CDocumentSession;
class CQuillaryView;

class CQuillaryApp : public CommandMap<CQuillaryApp>, public DocumentHost {
  public:
    explicit CQuillaryApp(const Desktop& desktop);
    ~CQuillaryApp() override;

    /// Hands the request to the instance that runs already. False when it has taken it: there is nothing left to do.
    [[nodiscard]] bool InitApplication(SingleInstance& instances, const LaunchRequest& request);
    /// Reads what the program is to look like.
    void ReadProfile();
    /// Shows the window with the database at `path`, or with what lets the user choose one when `path` is empty.
    void InitInstance(const Path& path);
    /// The desktop's session is about to end: what is not saved is saved, or asked about when that is allowed. False
    /// when the user wants the session to go on.
    [[nodiscard]] bool CommitData(bool mayAsk);
    /// Opens the database at `path` in place of the one that is open; the one way in for all of the program. Null,
    /// after telling the user why, when it is not opened; no database is then open, or still the one that the user did
    /// not want to leave.
    CQuillaryDoc* OpenDocumentFile(const Path& path);
    /// The same with another's questions, for a picture or another reader that changes nothing.
    CQuillaryDoc* OpenDocumentFile(const Path& path, OpenMode mode, Questions& questions);
    void CloseDocument();
    void ReopenDocument() override;
    [[nodiscard]] bool IsReopening() const override { return m_reopening; }
    void DropDocument() override;
    void DocumentMoved() override;

    [[nodiscard]] CMainFrame& Frame() { return m_frame; }
    [[nodiscard]] CHandOver& HandOver() { return m_handOver; }

    [[nodiscard]] static std::span<const CommandEntry<CQuillaryApp>> Commands();

  private:
    void OnFileNew();
    void OnFileOpen();
    void OpenOther();
    void OnDownload();
    void OnPreferences();
    void OnAbout();
    /// `mayAsk`: whether the user decides about a copy that an interrupted save has left.
    [[nodiscard]] std::unique_ptr<CQuillaryDoc> Read(const Path& path, OpenMode mode, Questions& questions,
                                                     bool mayAsk);
    void Show(std::unique_ptr<CQuillaryDoc> doc);
    enum class Reading { Telling, Quiet };  // whether a failure is told
    void ReadAgain(Reading reading);
    /// Shows the file as another program has left it, when nothing is unsaved; else the next save asks.
    void FollowFile();
    void ShowDocList(const Path& select = {});
    void Remember(const Path& path);
    void WatchFile();

    const Desktop m_desktop;
    std::int32_t m_alternatingRowColor;
    bool m_reopening = false;
    std::optional<std::uint64_t> m_keptChange;  // the document's change number when its file became unreadable
    QTimer m_fileChanged;                       // a moment after the last change, as these come in bursts
    CMainFrame m_frame;
    CWindowQuestions m_messages{m_frame};
    TelephoneLinks m_phone;
    Dialing m_dialing{m_phone, m_messages};
    std::unique_ptr<CMyDocListTemplate> m_template;  // null while the program only makes a picture
    CHandOver m_handOver;
    std::unique_ptr<CDocumentSession> m_session;
    std::unique_ptr<CQuillaryView> m_view;
};

}  // namespace quillary
