// The results of a search: pages through them, tells about them, and downloads those that are ticked.
#pragma once

#include <vector>

#include "remote/DownloadProgressDlg.h"
#include "ui/QuillaryDialog.h"

class QLabel;
class QPushButton;

namespace quillary {

class CRemoteResultsView;
struct CRemoteResult;

/// exec answers ID_RESULTS_NEW_SEARCH when the user wants to search again.
class CRemoteResultsDlg : public CQuillaryDialog {
  public:
    CRemoteResultsDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame);

    /// What has been downloaded, after a Cancel too.
    [[nodiscard]] const std::vector<Path>& Downloaded() const { return m_downloaded; }

  protected:
    void Load() override;
    /// Downloads. A download that was cancelled, or brought nothing, leaves the dialog open.
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CRemoteResultsDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame, QWidget* bar,
                      CRemoteResultsView* list);

    void OnGetNextResults();
    void OnNewSearch();
    void OnInformation();
    void OnOpen(CRemoteResult& package);
    void ShowState();

    CRemoteCatalog& m_catalog;
    const DownloadPlace m_place;
    CRemoteResultsView* m_list;
    QLabel* m_status;
    QPushButton* m_next;
    QPushButton* m_newSearch;
    QPushButton* m_information;
    std::vector<Path> m_downloaded;
};

}  // namespace quillary
