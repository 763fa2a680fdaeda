#include "remote/RemoteRequestBox.h"

#include "remote/RemoteCatalog.h"
#include "ui/FrameWindow.h"
#include "ui/LongWork.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

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
    QString reason = FromUtf8(catalog.Reason());
    if (!reason.isEmpty()) {
        reason[0] = reason[0].toUpper();
        reason += u'.';
    }
    ShowMessage(frame.Window(), QStringLiteral("No results returned."), reason);
}

}  // namespace quillary
