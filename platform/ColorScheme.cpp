#include "platform/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace quillary {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

// The portal's older method wraps the value twice.
QVariant Unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace

ColorScheme::ColorScheme(std::function<void(Kind)> changed) : m_changed(std::move(changed)) {
    // Qt 6.4 connects no slot with a type whose number nobody has asked for yet.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(OnSettingChanged(QString, QString, QDBusVariant)));
    QDBusMessage read = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    read << kGroup << kKey;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        if (reply.isValid()) Take(reply.value().variant());
        finished->deleteLater();
    });
}

void ColorScheme::OnSettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == kGroup && key == kKey) Take(value.variant());
}

void ColorScheme::Take(const QVariant& value) {
    bool isNumber = false;
    const unsigned number = Unwrapped(value).toUInt(&isNumber);
    if (isNumber && number <= static_cast<unsigned>(Kind::Light)) m_changed(static_cast<Kind>(number));
}

}  // namespace quillary
