#include "remote/RemoteRequestBox.h"

#include "remote/RemoteCatalog.h"
#include "ui/FrameWindow.h"
#include "ui/LongWork.h"
#include "ui/MessageBox.h"

namespace quillary {

RequestEnd RunRequest(CRemoteCatalog& catalog, FrameWindow& frame, const QString& doing,
                      const std::function<bool(CRemoteCatalog&)>& request) {
    bool isAnswered = false;
    const bool isThrough = RunOnThread(
        frame.Window(), doing, [&] { isAnswered = request(catalog); }, [&] { catalog.Session().Cancel(); });
    catalog.Session().Resume();
    if (!isThrough) return RequestEnd::Stopped;
    return isAnswered ? RequestEnd::Through : RequestEnd::Failed;
}

void TellNoResults(const CRemoteCatalog& catalog, FrameWindow& frame) {
    ShowMessageAndReason(frame.Window(), QStringLiteral("No results returned."), catalog.Reason());
}

}  // namespace quillary
