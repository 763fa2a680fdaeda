#include "views/DatabaseSending.h"

#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <string>

#include "platform/Launcher.h"
#include "platform/NativePath.h"
#include "ui/CommandTarget.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"

namespace quillary {

namespace {

/// The desktop's programs have another working folder.
Path AbsolutePath(const CDocumentSession& session) {
    std::error_code failed;
    Path path = std::filesystem::absolute(session.Doc().FilePath(), failed);
    return failed ? session.Doc().FilePath() : path;
}

}  // namespace

void CDatabaseSending::SendByMail() {
    if (!m_session.BringToDisk()) return;
    const Path file = AbsolutePath(m_session);
    m_launcher.SendByMail(file, m_frame.Window()->windowHandle(),
                          [&launcher = m_launcher, window = QPointer<QWidget>(m_frame.Window()), file] {
                              if (!window) return;
                              launcher.ShowInFolder(file, [] {});  // the message tells where it is
                              ShowMessage(window, FromUtf8(FormatMessage(Message::NotSentByMail, {file.string()})));
                          });
}

void CDatabaseSending::SendByInfrared() {
    if (!m_session.BringToDisk()) return;
    m_launcher.SendByBluetooth(AbsolutePath(m_session), [window = QPointer<QWidget>(m_frame.Window())](int exitStatus) {
        const std::string status = std::to_string(exitStatus);
        if (window) ShowMessage(window, FromUtf8(FormatMessage(Message::NotSentByBluetooth, {status})));
    });
}

void CDatabaseSending::UpdateInfrared(CommandState& state) const {
    switch (m_launcher.BluetoothState()) {
        case Launcher::Bluetooth::NoAdapter:
            return state.Disable(FromUtf8(MessageText(Message::NoBluetooth)));
        case Launcher::Bluetooth::NoProgram:
            return state.Disable(FromUtf8(MessageText(Message::NoBluetoothProgram)));
        case Launcher::Bluetooth::There:
            break;
    }
}

}  // namespace quillary
