#include "platform/DesktopLauncher.h"

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>
#include <utility>

#include "platform/LinkHandler.h"
#include "platform/MailPortal.h"
#include "platform/SendingPrograms.h"
#include "platform/StartProgram.h"

namespace quillary {

namespace {

// A file manager may have to be started first.
constexpr int kWaitMilliseconds = 10000;

}  // namespace

std::string FileLink(const std::filesystem::path& path) {
    return "file://" + QByteArray::fromStdString(path.native()).toPercentEncoding("/").toStdString();
}

void DesktopLauncher::ShowInFolder(const std::filesystem::path& file, Failed failed) {
    QDBusMessage show = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    show.setArguments({QStringList(QString::fromStdString(FileLink(file))), QString()});
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(show, kWaitMilliseconds));
    QObject::connect(call, &QDBusPendingCallWatcher::finished,
                     [this, folder = FileLink(file.parent_path()), failed = std::move(failed), call] {
                         call->deleteLater();
                         // Without that service the folder opens as any link does, the file not marked in it.
                         if (call->isError() && !OpenLink(folder)) failed();
                     });
}

bool DesktopLauncher::OpenLink(const std::string& link) {
    return QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(link), QUrl::StrictMode));
}

Launcher::Program DesktopLauncher::ProgramFor(const std::string& scheme) { return FindLinkHandler(scheme + ':').state; }

void DesktopLauncher::StartProgramFor(const std::string& link, EndedBadly endedBadly) {
    const LinkHandler handler = FindLinkHandler(link);
    StartProgram(handler.command, handler.folder, std::move(endedBadly));
}

void DesktopLauncher::SendByMail(const std::filesystem::path& file, QWindow* window, Failed failed) {
    MailPortal::Compose(file, window, [file, failed = std::move(failed)] {
        StartProgram(FindMailCommand(file), {}, [failed](int) { failed(); });
    });
}

Launcher::Bluetooth DesktopLauncher::BluetoothState() { return FindBluetooth(m_bluetoothAdapters); }

void DesktopLauncher::SendByBluetooth(const std::filesystem::path& file, EndedBadly endedBadly) {
    StartProgram(FindBluetoothCommand(file), {}, std::move(endedBadly));
}

}  // namespace quillary
