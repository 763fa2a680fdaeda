#include "platform/SendingPrograms.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "platform/DesktopLauncher.h"
#include "platform/LinkHandler.h"

namespace quillary {

namespace {

using Command = std::vector<std::string>;
using Path = std::filesystem::path;

enum class Takes {
    MailLink,  // a link of which it reads "attach"
    Compose,   // the link to the file as a part of what it composes
    FileLink,  // the link to the file behind an option
    File,      // its path behind an option
};

struct MailProgram {
    const char* name;
    const char* option;
    Takes takes;
};

constexpr char kAttach[] = "--attach";
constexpr std::string_view kDesktopsOwn = "xdg-email";  // starts the one that is named for mail links
constexpr MailProgram kMailPrograms[] = {
    {"evolution", "", Takes::MailLink},
    {"thunderbird", "-compose", Takes::Compose},
    {"thunderbird-esr", "-compose", Takes::Compose},
    {"betterbird", "-compose", Takes::Compose},
    {"kmail", kAttach, Takes::FileLink},
    {"claws-mail", kAttach, Takes::File},
    {"sylpheed", kAttach, Takes::File},
    {kDesktopsOwn.data(), kAttach, Takes::File},  // last: it may open what takes no files
};

struct BluetoothProgram {
    const char* name;
    const char* option;
};

constexpr BluetoothProgram kBluetoothPrograms[] = {
    {"bluetooth-sendto", ""},
    {"bluedevil-sendfile", "-f"},
    {"blueman-sendto", ""},
};

Command CommandOf(const std::string& program, const MailProgram& mail, const Path& file) {
    const std::string link = FileLink(file);
    switch (mail.takes) {
        case Takes::MailLink:
            return {program, "mailto:?attach=" + link};
        case Takes::Compose:
            return {program, mail.option, "attachment='" + link + "'"};  // a link holds neither quotes nor commas
        case Takes::FileLink:
            return {program, mail.option, link};
        case Takes::File:
            return {program, mail.option, file.native()};
    }
    return {};
}

}  // namespace

Command MailCommand(const std::string& program, const Path& file) {
    const std::string name = Path(program).filename().native();
    const auto found = std::find_if(std::begin(kMailPrograms), std::end(kMailPrograms),
                                    [&](const MailProgram& mail) { return mail.name == name; });
    return found == std::end(kMailPrograms) ? Command() : CommandOf(program, *found, file);
}

Command FindMailCommand(const Path& file) {
    const LinkHandler own = FindLinkHandler("mailto:");
    if (own.state == Launcher::Program::There) {
        Command command = MailCommand(own.command.front(), file);
        if (!command.empty()) return command;
    }
    for (const MailProgram& mail : kMailPrograms) {
        if (mail.name == kDesktopsOwn && own.state != Launcher::Program::There) continue;
        const std::string program = FindProgram(mail.name);
        if (!program.empty()) return CommandOf(program, mail, file);
    }
    return {};
}

Command FindBluetoothCommand(const Path& file) {
    for (const BluetoothProgram& bluetooth : kBluetoothPrograms) {
        const std::string program = FindProgram(bluetooth.name);
        if (program.empty()) continue;
        Command command = {program};
        if (*bluetooth.option != '\0') command.emplace_back(bluetooth.option);
        command.push_back(file.native());
        return command;
    }
    return {};
}

Launcher::Bluetooth FindBluetooth(const Path& adapters) {
    std::error_code error;
    const std::filesystem::directory_iterator first(adapters, error);
    if (error || first == std::filesystem::directory_iterator()) return Launcher::Bluetooth::NoAdapter;
    return FindBluetoothCommand("/").empty() ? Launcher::Bluetooth::NoProgram : Launcher::Bluetooth::There;
}

}  // namespace quillary
