#include "views/LinkOpening.h"

#include <QPointer>
#include <QWidget>

#include "integration/Links.h"
#include "platform/Launcher.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

namespace quillary {

void OpenAddress(FieldType type, const QString& text, Launcher& launcher, FrameWindow& frame) {
    const auto tell = [window = QPointer<QWidget>(frame.Window())](const std::string& message) {
        if (window) ShowMessage(window, FromUtf8(message));
    };
    const std::string typed = text.toStdString();
    Failure failure;
    const auto link = type == FieldType::EMail ? MailLink(typed, failure) : WebLink(typed, failure);
    if (!link) {
        if (failure.message != Message::None) tell(failure.text);
        return;
    }
    const std::string scheme = link->substr(0, link->find(':'));
    const bool isMail = scheme == "mailto";
    const std::string what = isMail ? "mail addresses" : "web addresses";
    switch (launcher.ProgramFor(scheme)) {
        case Launcher::Program::None:
            // Some desktops only know a browser by other ways.
            if (isMail || !launcher.OpenLink(*link)) tell(FormatMessage(Message::NoLinkProgram, {what}));
            return;
        case Launcher::Program::Missing:
            tell(FormatMessage(Message::LinkProgramMissing, {what}));
            return;
        case Launcher::Program::There:
            break;
    }
    launcher.StartProgramFor(*link, [tell, what](int exitStatus) {
        tell(FormatMessage(Message::LinkProgramFailed, {what, std::to_string(exitStatus)}));
    });
}

}  // namespace quillary
