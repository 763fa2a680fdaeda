// The window program.
#include <QApplication>
#include <QSessionManager>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/LaunchOptions.h"
#include "app/Picture.h"
#include "app/QuillaryApp.h"
#include "platform/ColorScheme.h"
#include "platform/DesktopFolderWatcher.h"
#include "platform/DesktopInputPanel.h"
#include "platform/DesktopLauncher.h"
#include "platform/DesktopRecentFiles.h"
#include "platform/DesktopTrash.h"
#include "platform/Signals.h"
#include "platform/SingleInstance.h"
#include "platform/WindowActivation.h"
#include "platform/http/HttpModule.h"
#include "platform/posix/DesktopPersonalStore.h"
#include "platform/posix/LargePages.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileAccess.h"
#include "platform/posix/PosixLocale.h"
#include "platform/posix/PosixStorageLocations.h"
#include "platform/posix/PreferencesFile.h"
#include "ui/Icon.h"
#include "ui/Palette.h"

namespace {

using quillary::Path;

bool s_isDisplayNamed = false;

// The toolkit ends a program that gets no display by a signal, after words of its own, which tell what is wrong when a
// display or the way to it was named.
void TellOfNoDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    static std::string said;
    said += text.toStdString() + '\n';
    if (type != QtFatalMsg) return;
    if (s_isDisplayNamed) {
        std::cerr << "quillary: The window cannot be shown.\n" << said;
    } else {
        std::cerr << "quillary: There is no display here.\n";
    }
    std::cerr << "--picture needs no display, and qly works without one.\n";
    std::_Exit(1);
}

// The off-screen platform notes what it lacks, which nobody needs to know.
void TellOfTheWorst(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtFatalMsg) return;
    std::cerr << "quillary: " << text.toStdString() << '\n';
    std::_Exit(1);  // the toolkit would end it by a signal
}

// A file that is handed over is opened by a program with another working folder.
Path Absolute(const Path& path) {
    std::error_code failed;
    Path absolute = path.empty() ? path : std::filesystem::absolute(path, failed);
    return failed ? path : absolute;
}

}  // namespace

int main(int argc, char** argv) {
    using quillary::LaunchOptions;
    quillary::UseLargePages();
    // Qt takes its own options out of argv, but cannot start without a display. What needs none is looked for first.
    bool needsDisplay = true;
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable)) s_isDisplayNamed = true;
    }
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--") break;
        for (const char* option : {"-h", "--help", "--version", "--picture"}) {
            if (argument == option) needsDisplay = false;
        }
        if (argument.starts_with("--picture=")) needsDisplay = false;
        for (const char* option : {"-platform", "--platform", "-display", "--display"}) {
            if (argument == option) s_isDisplayNamed = true;
        }
    }
    if (!needsDisplay) qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setApplicationName(QStringLiteral("Quillary"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLARY_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.telvane.quillary"));
    const std::string activationToken = quillary::ActivationToken();
    const QtMessageHandler former = qInstallMessageHandler(TellOfNoDisplay);
    const QApplication qt(argc, argv);
    qInstallMessageHandler(needsDisplay ? former : TellOfTheWorst);

    QGuiApplication::setWindowIcon(quillary::ProgramIcon());

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
    quillary::PreferencesFile settings;
    quillary::DesktopTrash trash;
    quillary::DesktopInputPanel inputPanel;
    quillary::PreferencesFile windowSettings(quillary::PreferencesFile::DefaultPath(), "Window");
    quillary::DesktopRecentFiles recentFiles;
    quillary::DesktopFolderWatcher folderWatcher;
    quillary::DesktopFolderWatcher fileWatcher;
    quillary::DesktopLauncher launcher;
    const quillary::PosixClock clock;
    const quillary::PosixLocale locale;
    const quillary::PersonalStoreFactory makePersonalStore = [&settings] {
        return std::make_unique<quillary::DesktopPersonalStore>(settings);
    };
    quillary::CQuillaryApp app({files, locations, settings, trash, inputPanel, windowSettings, recentFiles,
                                folderWatcher, fileWatcher, launcher, clock, locale, makePersonalStore,
                                quillary::LoadHttpSession});
    if (options->task == LaunchOptions::Task::Picture) {
        return quillary::SavePicture(app, options->database, options->picture);
    }
    quillary::SingleInstance instances;
    const Path database = Absolute(options->database);
    if (!app.InitApplication(instances, {database.native(), activationToken})) return 0;
    quillary::UseDarkPalette(false);
    const quillary::ColorScheme colors(
        [](quillary::ColorScheme::Kind kind) { quillary::UseDarkPalette(kind == quillary::ColorScheme::Kind::Dark); });
    const quillary::Signals ending([&app] { app.Frame().close(); });
    QObject::connect(&qt, &QGuiApplication::commitDataRequest, &qt, [&app](QSessionManager& session) {
        const bool mayAsk = session.allowsInteraction();
        if (!app.CommitData(mayAsk)) session.cancel();
        if (mayAsk) session.release();
    });
    app.InitInstance(database);
    return QApplication::exec();
}
