#include "app/LaunchOptions.h"

#include <string_view>
#include <vector>

#include "admin/DatabasePath.h"

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
    constexpr std::string_view kPictureIs = "--picture=";
    LaunchOptions options;
    std::vector<std::string_view> files;
    bool moreOptions = true;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (!moreOptions || argument.empty() || argument.front() != '-') {
            files.push_back(argument);
        } else if (argument == "--") {
            moreOptions = false;
        } else if (argument == "--help" || argument == "-h") {
            options.task = LaunchOptions::Task::Help;
        } else if (argument == "--version") {
            options.task = LaunchOptions::Task::Version;
        } else if (argument == "--picture" || argument.starts_with(kPictureIs)) {
            options.task = LaunchOptions::Task::Picture;
            if (argument.starts_with(kPictureIs)) {
                options.picture = argument.substr(kPictureIs.size());
            } else if (i + 1 < arguments.size() && arguments[i + 1][0] != '-') {
                options.picture = arguments[++i];
            }
        } else {
            error = "unknown option " + std::string(argument);
            return std::nullopt;
        }
    }
    if (options.task == LaunchOptions::Task::Picture) {
        if (options.picture.empty() || files.empty()) {
            error = "--picture needs the picture's and the database's file name";
            return std::nullopt;
        }
        if (EndsInExtension(options.picture.native())) {
            error = "a picture is not written to a file named like a database: " + options.picture.string();
            return std::nullopt;
        }
    }
    if (files.size() > 1) {
        error = "one database at a time";
        return std::nullopt;
    }
    if (!files.empty()) options.database = files.front();
    return options;
}

}  // namespace quillary
