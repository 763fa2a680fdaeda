// Joins the main window and its document list: which files it lists, when it shows, when it looks for them again.
#pragma once

#include <functional>
#include <memory>

#include "app/Desktop.h"
#include "db/FileAccess.h"

namespace quillary {

class CDocListPage;
class CMainFrame;

class CMyDocListTemplate {
  public:
    struct Requests {
        std::function<void(const Path&)> open;
        std::function<void()> openOther;
        std::function<void()> create;  // a new database
    };
    CMyDocListTemplate(CMainFrame& frame, const Desktop& desktop, Requests requests);
    ~CMyDocListTemplate();

    /// Shows the list, in place of a database, and brings it up to date. `select` is the database to come back to.
    void ShowDocList(const Path& select = {});
    /// Fits the list's columns. When the set of databases may have changed, looks for them anew: on a thread of its
    /// own, while the window stays live. Files are only ever left out of the list, never touched.
    void FilterPass();

    /// For whoever creates, deletes or downloads a database: the next pass looks at the disk.
    static void SetRefreshFlag();

  private:
    CMainFrame& m_frame;
    const Desktop m_desktop;
    const Requests m_requests;
    std::unique_ptr<CDocListPage> m_page;  // null until it is first shown
};

}  // namespace quillary
