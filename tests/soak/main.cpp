// quillary-soak: uses the program by chance for a given time and compares it with what it must hold.
#include <unistd.h>

#include <QApplication>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "tests/soak/Soak.h"

int main(int argc, char** argv) {
    quillary::soak::Options options;
    const std::pair<const char*, int*> kNumbers[] = {
        {"--seed", &options.seed}, {"--seconds", &options.seconds}, {"--steps", &options.steps}};
    const std::pair<const char*, bool*> kSwitches[] = {{"--verbose", &options.verbose},
                                                       {"--coverage", &options.coverage}};
    for (int i = 1; i < argc; ++i) {
        bool isKnown = false;
        for (const auto& [name, value] : kNumbers) {
            if (i + 1 < argc && std::strcmp(argv[i], name) == 0) *value = std::atoi(argv[++i]), isKnown = true;
        }
        for (const auto& [name, value] : kSwitches) {
            if (i < argc && std::strcmp(argv[i], name) == 0) *value = isKnown = true;
        }
        if (isKnown) continue;
        std::cerr << "usage: quillary-soak [--seconds 60] [--seed N] [--steps M] [--verbose] [--coverage]\n";
        return 2;
    }
    std::cout << "seed " << options.seed << std::endl;
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
    quillary::soak::Soak(options, folder).Run();
    std::filesystem::remove_all(folder);
    return 0;
}
