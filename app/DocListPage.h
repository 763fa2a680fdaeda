// The first screen: the databases of the documents folder and of the storage cards, to open one.
#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "app/Desktop.h"
#include "app/DocListFiles.h"
#include "app/DocListModel.h"
#include "app/DocListScanner.h"

class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QStackedWidget;
class QTimer;
class QToolButton;

namespace quillary {

class CDocListView;
class CFolderBox;

class CDocListPage : public QWidget {
  public:
    /// What the page leaves to others.
    struct Requests {
        std::function<void(const Path&)> open;
        std::function<void()> openOther;  // a file that the list does not show
        std::function<void()> create;     // a new database
        std::function<void()> changed;    // the set of databases may be another
        std::function<void()> resized;
        std::function<void()> shown;
    };
    /// `window` is the parent of questions.
    CDocListPage(const Desktop& desktop, QWidget& window, Requests requests);
    ~CDocListPage() override;

    void FitColumns();
    /// Looks for databases anew. Rows that show stay until that is done.
    void Scan();
    [[nodiscard]] bool IsScanning() const { return m_scanner.IsRunning(); }
    /// Selects the database once the next scan has found it.
    void SelectNext(Path path) { m_selectNext = std::move(path); }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void BuildActions();
    void BuildSorting(const QString& caption);
    void BuildLayout();
    void ReadSortOrder();
    void OnFound(std::vector<DocListRow> rows);
    void OnFoldersChanged();
    void OnScanned(const CDocListScanner::Result& result);
    void WatchFolders();
    void FillFolders();
    void ShowState();
    /// What a command of the list acts on: the row that the menu was opened for, else the selected one.
    [[nodiscard]] std::optional<Path> Target() const;
    void OpenSelected();
    void Rename(const Path& path, const QString& name);
    void CopySelected();
    void DeleteSelected();

    const Desktop m_desktop;
    const Requests m_requests;
    CDocListFiles m_files;
    CDocListModel m_model;
    CDocListScanner m_scanner;
    std::vector<Path> m_roots;
    std::vector<DocListRow> m_found;  // by a scan whose rows do not show yet
    bool m_showsWhileScanning = true;
    bool m_changedWhileScanning = false;
    QElapsedTimer m_scanTime;
    std::optional<Path> m_menuTarget;
    Path m_selectNext;  // once a scan has found it; empty: nothing
    QString m_notice;

    CDocListView* m_view;
    QToolButton* m_new;
    CFolderBox* m_folders;
    QPushButton* m_other;
    QStackedWidget* m_body;
    QWidget* m_emptyPage = nullptr;
    QLabel* m_state;
    QLabel* m_noticeLabel;
    QMenu* m_menu;
    QTimer* m_changed;
};

}  // namespace quillary
