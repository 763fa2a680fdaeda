// The desktop's wish for light or dark colours, told by a portal of the test's own on a bus of its own.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>
#include <vector>

#include "platform/ColorScheme.h"

namespace quillary {
namespace {

constexpr char kPath[] = "/org/freedesktop/portal/desktop";

QVariant Wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

class Portal : public QDBusVirtualObject {
  public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != QLatin1String("Read")) return false;
        // Made here, so that nobody has made a wrapped value, and Qt registered it, before the first question.
        return bus.send(message.createReply(Wrapped(Wrapped(1U))));
    }
};

TEST(ColorScheme, AsksOnceAndFollowsChanges) {
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.isConnected()) << "run it in dbus-run-session";
    Portal portal;
    ASSERT_TRUE(bus.registerVirtualObject(kPath, &portal));
    ASSERT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
    std::vector<ColorScheme::Kind> told;
    const ColorScheme scheme([&](ColorScheme::Kind kind) { told.push_back(kind); });
    using Kind = ColorScheme::Kind;
    EXPECT_TRUE(QTest::qWaitFor([&] { return told == std::vector{Kind::Dark}; }));
    const struct {
        const char* group;
        const char* key;
        QVariant value;
    } kChanges[] = {
        {"org.freedesktop.appearance", "contrast", 0U},     {"org.gnome.desktop.interface", "color-scheme", 0U},
        {"org.freedesktop.appearance", "color-scheme", 7U}, {"org.freedesktop.appearance", "color-scheme", "dark"},
        {"org.freedesktop.appearance", "color-scheme", 2U},
    };
    for (const auto& change : kChanges) {
        QDBusMessage signal = QDBusMessage::createSignal(kPath, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << change.group << change.key << Wrapped(change.value);
        ASSERT_TRUE(bus.send(signal));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return told == (std::vector{Kind::Dark, Kind::Light}); }));
}

}  // namespace
}  // namespace quillary
