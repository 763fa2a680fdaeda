#include "platform/WindowActivation.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWindow>

#include "platform/X11Activation.h"

namespace quillary {

namespace {

constexpr char kToken[] = "XDG_ACTIVATION_TOKEN";
constexpr char kStartupId[] = "DESKTOP_STARTUP_ID";  // the older one

}  // namespace

std::string ActivationToken() {
    const QByteArray token = qgetenv(kToken);
    return (token.isEmpty() ? qgetenv(kStartupId) : token).toStdString();
}

void ActivateWindow(QWindow& window, const std::string& token) {
    if (ActivateOnX11(window, token)) return;
    // The toolkit looks for the token there when a window asks for activation.
    if (!token.empty()) qputenv(kToken, QByteArray::fromStdString(token));
    window.requestActivate();
    qunsetenv(kToken);
}

}  // namespace quillary
