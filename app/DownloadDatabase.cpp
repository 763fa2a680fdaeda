#include "app/DownloadDatabase.h"

#include <utility>

#include "remote/RemoteCatalog.h"
#include "remote/RemoteResultsDlg.h"
#include "remote/RemoteSearchDlg.h"
#include "ui/CommandIds.h"

namespace quillary {

Downloaded DownloadDatabases(std::unique_ptr<HttpSession> session, const Settings& settings, const DownloadPlace& place,
                             FrameWindow& frame) {
    CRemoteCatalog catalog(std::move(session), settings);
    Downloaded downloaded;
    CRemoteSearchDlg::Search search;
    for (int end = ID_RESULTS_NEW_SEARCH; end == ID_RESULTS_NEW_SEARCH;) {
        CRemoteSearchDlg searching(catalog, place.page, search, frame);
        if (searching.exec() != QDialog::Accepted) break;
        search = searching.Searched();
        CRemoteResultsDlg results(catalog, place, frame);
        end = results.exec();
        downloaded.files.insert(downloaded.files.end(), results.Downloaded().begin(), results.Downloaded().end());
        downloaded.isOpenedNow = end == QDialog::Accepted && downloaded.files.size() == 1;
    }
    return downloaded;
}

}  // namespace quillary
