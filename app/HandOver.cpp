#include "app/HandOver.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <optional>
#include <utility>

#include "app/MainFrame.h"
#include "app/Unwinding.h"
#include "platform/NativePath.h"
#include "ui/StepLog.h"
#include "ui/UserMessages.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

/// The one database file that is being dropped.
std::optional<Path> DroppedDatabase(const QDropEvent& drop) {
    const QList<QUrl> urls = drop.mimeData()->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile()) return std::nullopt;
    const QString file = urls.first().toLocalFile();
    if (!file.endsWith(QStringLiteral(".pdb"), Qt::CaseInsensitive)) return std::nullopt;
    return ToPath(file);
}

}  // namespace

CHandOver::CHandOver(CMainFrame& frame, Open open) : m_frame(frame), m_open(std::move(open)) {
    m_frame.setAcceptDrops(true);
    m_frame.installEventFilter(this);
    m_frame.Unwinding().whenEnded = [this] {
        if (!m_frame.isVisible()) m_paths.clear();  // it has closed
        PostNext();
    };
}

bool CHandOver::Start(SingleInstance& instances, const LaunchRequest& request) {
    switch (instances.Start(request, [this](const LaunchRequest& later) { Receive(later); })) {
        case SingleInstance::Role::HandedOver:
            LogStep(QStringLiteral("handed over"));
            return false;
        case SingleInstance::Role::First:
            LogStep(QStringLiteral("first instance"));
            break;
        case SingleInstance::Role::Alone:
            LogStep(QStringLiteral("no answer from the first instance"));
            break;
    }
    return true;
}

void CHandOver::Receive(const LaunchRequest& request) {
    LogStep(QStringLiteral("received ") + FromPath(request.path));
    m_frame.BringToFront(request.activationToken);
    if (request.path.empty()) return;
    m_paths.emplace_back(request.path);
    PostNext();
}

bool CHandOver::event(QEvent* event) {
    if (event->type() != kOpenFileMessage) return QObject::event(event);
    OpenNext();
    return true;
}

void CHandOver::PostNext() { QCoreApplication::postEvent(this, new QEvent(kOpenFileMessage)); }

void CHandOver::OpenNext() {
    // While the window is about to close, they wait for a dialog that refuses its end.
    if (m_busy || m_paths.empty() || m_frame.Unwinding().IsWaiting()) return;
    const Path path = std::move(m_paths.front());
    m_paths.pop_front();
    m_busy = true;
    EndDialogsAndOpen(path);
}

void CHandOver::EndDialogsAndOpen(const Path& path) {
    const auto next = [this] {
        m_busy = false;
        PostNext();
    };
    const auto way = CUnwinding::AskForWay(
        &m_frame, QStringLiteral("Save the changes before opening \"%1\"?").arg(OnOneLine(FromPath(path.filename()))));
    if (!way) {
        next();
        return;
    }
    m_frame.Unwinding().Start(*way, {[this, path, next] {
                                         next();  // a later request need not wait for this file's password
                                         m_open(path);
                                     },
                                     next});
}

bool CHandOver::eventFilter(QObject* watched, QEvent* event) {
    const bool drop = event->type() == QEvent::Drop;
    if (drop || event->type() == QEvent::DragEnter) {
        auto& dropped = static_cast<QDropEvent&>(*event);
        const auto path = DroppedDatabase(dropped);
        if (!path || !(dropped.possibleActions() & Qt::CopyAction)) return false;
        dropped.setDropAction(Qt::CopyAction);  // whoever drags the file must not take it for moved
        dropped.accept();
        if (drop) Receive({path->native(), {}});
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace quillary
