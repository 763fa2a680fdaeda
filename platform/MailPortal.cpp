#include "platform/MailPortal.h"

#include <fcntl.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QWindow>
#include <utility>

#include "platform/posix/PosixFile.h"

namespace quillary {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Email");
const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");
constexpr unsigned kCancelled = 1;  // of a response; 0 is done, others failed

/// As portals know windows. The toolkit tells no name of a window under Wayland.
QString NameOf(const QWindow* window) {
    const bool isX11 = window && QGuiApplication::platformName() == QLatin1String("xcb");
    return isX11 ? QStringLiteral("x11:%1").arg(window->winId(), 0, 16) : QString();
}

/// Where the portal answers the request of that token.
QString AnswerPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    return kPath + QStringLiteral("/request/%1/%2").arg(sender.replace(u'.', u'_'), token);
}

}  // namespace

void MailPortal::Compose(const std::filesystem::path& file, const QWindow* window, std::function<void()> failed) {
    (new MailPortal(std::move(failed)))->Ask(file, NameOf(window));
}

MailPortal::MailPortal(std::function<void()> failed)
    : QObject(QCoreApplication::instance()), m_failed(std::move(failed)) {}

void MailPortal::Ask(const std::filesystem::path& file, const QString& parentWindow) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    // No more than the file's name and the right to read it: what portals ask for.
    const PosixFile attachment(open(file.c_str(), O_PATH | O_CLOEXEC));
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    qRegisterMetaType<QDBusMessage>();
    const QString token = QStringLiteral("quillary%1").arg(QRandomGenerator::global()->generate());
    bus.connect(kService, AnswerPath(bus, token), kRequest, QStringLiteral("Response"), this,
                SLOT(OnResponse(QDBusMessage)));
    QDBusMessage compose = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("ComposeEmail"));
    const QList<QDBusUnixFileDescriptor> files = {QDBusUnixFileDescriptor(attachment.Descriptor())};
    compose << parentWindow
            << QVariantMap{{QStringLiteral("handle_token"), token},
                           {QStringLiteral("attachment_fds"), QVariant::fromValue(files)}};
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(compose), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        if (call->isError()) End(true);
    });
}

void MailPortal::OnResponse(const QDBusMessage& response) {
    const unsigned code = response.arguments().value(0).toUInt();
    End(code > kCancelled);
}

void MailPortal::End(bool hasFailed) {
    if (std::exchange(m_hasEnded, true)) return;
    deleteLater();
    if (hasFailed) m_failed();
}

}  // namespace quillary
