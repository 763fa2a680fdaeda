// quillary-soak: uses the program by chance for a given time and compares it with what it must hold.
#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <iostream>

#include "tests/soak/Soak.h"

int main(int argc, char** argv) {
    // All its names are equally wide, as paths show in the window.
    const std::string number = std::to_string(getpid());
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("quillary-soak-" + std::string(8 - number.size(), '0') + number);
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(variable, QByteArray::fromStdString(folder.string()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser line;
    line.addOptions({{"seed", "", "N", "1"}, {"seconds", "", "S", "60"}, {"steps", "", "N", "0"}});
    line.addOptions({{"verbose", ""}, {"coverage", "Fails when something was never reached."}});
    line.process(application);
    const auto valueOf = [&](const char* name) { return line.value(name).toInt(); };
    std::cout << "seed " << valueOf("seed") << std::endl;
    quillary::soak::Soak(
        {valueOf("seed"), valueOf("seconds"), valueOf("steps"), line.isSet("verbose"), line.isSet("coverage")}, folder)
        .Run();
    std::filesystem::remove_all(folder);
    return 0;
}
