#include "app/LaunchOptions.h"

#include <string_view>
#include <vector>

namespace quillary {

std::string_view HelpText() {
    return "Usage: quillary [FILE]\n"
           "       quillary --picture PICTURE.png FILE\n"
           "\n"
           "Shows the database FILE in the window, or lets you choose one.\n"
           "\n"
           "  --picture PICTURE.png  saves a picture of the window and ends; needs no display\n"
           "  -h, --help             shows this text and ends\n"
           "  --version              shows the version and ends\n";
}

std::optional<LaunchOptions> ReadCommandLine(std::span<char* const> arguments, std::string& error) {
    LaunchOptions options;
    std::vector<std::string_view> files;
    bool moreOptions = true;
    for (const std::string_view argument : arguments) {
        if (!moreOptions || argument.empty() || argument.front() != '-') {
            files.push_back(argument);
        } else if (argument == "--") {
            moreOptions = false;
        } else if (argument == "--help" || argument == "-h") {
            options.task = LaunchOptions::Task::Help;
        } else if (argument == "--version") {
            options.task = LaunchOptions::Task::Version;
        } else if (argument == "--picture") {
            options.task = LaunchOptions::Task::Picture;
        } else {
            error = "unknown option " + std::string(argument);
            return std::nullopt;
        }
    }
    const bool picture = options.task == LaunchOptions::Task::Picture;
    if (picture && files.size() < 2) {
        error = "--picture needs the picture's and the database's file name";
        return std::nullopt;
    }
    if (files.size() > (picture ? 2U : 1U)) {
        error = "one database at a time";
        return std::nullopt;
    }
    if (picture) options.picture = files.front();
    if (!files.empty()) options.database = files.back();
    return options;
}

}  // namespace quillary
