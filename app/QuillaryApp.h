// The application: starts the window, opens and closes databases, and handles the commands that need none.
#pragma once

#include <memory>

#include "admin/StorageLocations.h"
#include "app/MainFrame.h"
#include "db/QuillaryDoc.h"
#include "ui/CommandTarget.h"

namespace quillary {

class CDocumentSession;
class CQuillaryView;

class CQuillaryApp : public CommandMap<CQuillaryApp> {
  public:
    /// Both outlive the application.
    CQuillaryApp(FileAccess& files, const StorageLocations& locations);
    ~CQuillaryApp() override;

    /// Shows the window with the database at `path`, or with what lets the user choose one when `path` is empty.
    void InitInstance(const Path& path);
    /// Opens the database at `path` in place of the one that is open; the one way in for all of the program. Null,
    /// after telling the user why, when it is not opened; no database is then open.
    CQuillaryDoc* OpenDocumentFile(const Path& path);
    /// The same with another's questions, for a picture or another reader that changes nothing.
    CQuillaryDoc* OpenDocumentFile(const Path& path, OpenMode mode, Questions& questions);
    void CloseDocument();

    [[nodiscard]] CMainFrame& Frame() { return m_frame; }

    [[nodiscard]] static std::span<const CommandEntry<CQuillaryApp>> Commands();

  private:
    void OnFileOpen();
    void OnAbout();

    FileAccess& m_files;
    const StorageLocations& m_locations;
    CMainFrame m_frame;
    std::unique_ptr<CDocumentSession> m_session;
    std::unique_ptr<CQuillaryView> m_view;
};

}  // namespace quillary
