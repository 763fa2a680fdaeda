// Whether the desktop wants programs light or dark, while they run, too: asked of the desktop portal, which Qt 6.4 does
// not do by itself.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <functional>

class QDBusPendingCallWatcher;

namespace quillary {

class ColorScheme : public QObject {
    Q_OBJECT
  public:
    // The portal's numbers (org.freedesktop.appearance color-scheme).
    enum class Kind : unsigned { NoPreference = 0, Dark = 1, Light = 2 };

    /// Asks, without waiting, and calls `changed` with each answer.
    explicit ColorScheme(std::function<void(Kind)> changed);

  private Q_SLOTS:
    void OnSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void Take(const QVariant& value);

    std::function<void(Kind)> m_changed;
};

}  // namespace quillary
