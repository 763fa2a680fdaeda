// The window program.
#include <QApplication>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "app/LaunchOptions.h"
#include "app/Picture.h"
#include "app/QuillaryApp.h"
#include "platform/posix/PosixFileAccess.h"
#include "platform/posix/PosixStorageLocations.h"

namespace {

// For what shows no window: no display is asked for, and the off-screen platform's notes on what it lacks are not told.
void DoWithoutDisplay() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg) std::cerr << text.toStdString() << '\n';
    });
}

}  // namespace

int main(int argc, char** argv) {
    using quillary::LaunchOptions;
    // Qt takes its own options out of argv, but cannot start without a display. What needs none is looked for first.
    for (int i = 1; i < argc; ++i) {
        for (const char* option : {"--help", "--version", "--picture"}) {
            if (std::strcmp(argv[i], option) == 0) DoWithoutDisplay();
        }
    }
    QCoreApplication::setOrganizationName(QStringLiteral("Telvane"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillary"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLARY_VERSION));
    const QApplication qt(argc, argv);

    std::string error;
    const auto options = quillary::ReadCommandLine({argv + 1, argv + argc}, error);
    if (!options) {
        std::cerr << "quillary: " << error << "\n\n" << quillary::HelpText();
        return 2;
    }
    if (options->task == LaunchOptions::Task::Help) {
        std::cout << quillary::HelpText();
        return 0;
    }
    if (options->task == LaunchOptions::Task::Version) {
        std::cout << "quillary " QUILLARY_VERSION "\n";
        return 0;
    }

    quillary::PosixFileAccess files;
    const quillary::PosixStorageLocations locations;
    quillary::CQuillaryApp app(files, locations);
    if (options->task == LaunchOptions::Task::Picture) {
        return quillary::SavePicture(app, options->database, options->picture);
    }
    app.InitInstance(options->database);
    return QApplication::exec();
}
