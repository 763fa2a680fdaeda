// The desktop portal's way to a new mail with a file attached.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <filesystem>
#include <functional>

class QWindow;

namespace quillary {

/// One request. It goes by itself once it is answered.
class MailPortal : public QObject {
    Q_OBJECT
  public:
    /// Asks without waiting. `failed` is called, later, when no portal takes the file; not when the user cancels.
    static void Compose(const std::filesystem::path& file, const QWindow* window, std::function<void()> failed);

  private Q_SLOTS:
    void OnResponse(const QDBusMessage& response);

  private:
    explicit MailPortal(std::function<void()> failed);
    void Ask(const std::filesystem::path& file, const QString& parentWindow);
    void End(bool hasFailed);

    std::function<void()> m_failed;
    bool m_hasEnded = false;
};

}  // namespace quillary
