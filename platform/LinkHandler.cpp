#include "platform/LinkHandler.h"

#include <glib.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "platform/posix/XdgFolders.h"

namespace quillary {

namespace {

using Texts = std::vector<std::string>;
using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
constexpr char kEntry[] = "Desktop Entry";

KeyFile ReadKeyFile(const Path& path) {
    KeyFile file(g_key_file_new(), &g_key_file_unref);
    if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr)) file.reset();
    return file;
}

/// Without the escapes; empty when it is not there.
std::string Text(GKeyFile& file, const char* key) {
    const std::unique_ptr<char, decltype(&g_free)> text(g_key_file_get_string(&file, kEntry, key, nullptr), &g_free);
    return text ? text.get() : std::string();
}

bool IsSet(GKeyFile& file, const char* key) { return g_key_file_get_boolean(&file, kEntry, key, nullptr) != 0; }

Texts List(GKeyFile& file, const char* group, const std::string& key) {
    const std::unique_ptr<char*, decltype(&g_strfreev)> list(
        g_key_file_get_string_list(&file, group, key.c_str(), nullptr, nullptr), &g_strfreev);
    Texts texts;
    for (char** text = list.get(); text && *text; ++text) texts.emplace_back(*text);
    return texts;
}

Texts Split(std::string_view text, char separator) {
    Texts parts;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string FromEnvironment(const char* variable, const char* otherwise) {
    const char* value = std::getenv(variable);
    return value && *value != '\0' ? value : otherwise;
}

/// The user's first.
std::vector<Path> FoldersOf(Path own, const char* variable, const char* otherwise) {
    std::vector<Path> folders = {std::move(own)};
    for (std::string& folder : Split(FromEnvironment(variable, otherwise), ':'))
        folders.emplace_back(std::move(folder));
    folders.erase(std::remove_if(folders.begin(), folders.end(), [](const Path& path) { return !path.is_absolute(); }),
                  folders.end());
    return folders;
}

/// Where the desktop entries are.
std::vector<Path> ApplicationFolders() {
    std::vector<Path> folders = FoldersOf(FromEnvironment("XDG_DATA_HOME", (HomeFolder() / ".local/share").c_str()),
                                          "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (Path& folder : folders) folder /= "applications";
    return folders;
}

/// The lists of associations, the strongest first.
std::vector<Path> AssociationFiles(const std::vector<Path>& applications) {
    std::vector<Path> folders = FoldersOf(ConfigFolder(), "XDG_CONFIG_DIRS", "/etc/xdg");
    folders.insert(folders.end(), applications.begin(), applications.end());
    Texts names;
    for (std::string& desktop : Split(FromEnvironment("XDG_CURRENT_DESKTOP", ""), ':')) {
        std::transform(desktop.begin(), desktop.end(), desktop.begin(), g_ascii_tolower);
        names.push_back(desktop + "-mimeapps.list");
    }
    names.emplace_back("mimeapps.list");
    std::vector<Path> files;
    for (const Path& folder : folders) {
        for (const std::string& name : names) files.push_back(folder / name);
    }
    return files;
}

/// The desktop entries that are named for a type, the defaults first, then what else can open it.
Texts EntriesFor(const std::string& type, const std::vector<Path>& applications) {
    Texts defaults;
    Texts others;
    std::set<std::string> removed;
    const auto add = [&](const Texts& entries) {
        std::copy_if(entries.begin(), entries.end(), std::back_inserter(others),
                     [&](const std::string& entry) { return !removed.contains(entry); });
    };
    for (const Path& path : AssociationFiles(applications)) {
        const KeyFile file = ReadKeyFile(path);
        if (!file) continue;
        const Texts named = List(*file, "Default Applications", type);
        defaults.insert(defaults.end(), named.begin(), named.end());
        add(List(*file, "Added Associations", type));
        const Texts taken = List(*file, "Removed Associations", type);
        removed.insert(taken.begin(), taken.end());
    }
    for (const Path& folder : applications) {
        const KeyFile file = ReadKeyFile(folder / "mimeinfo.cache");
        if (file) add(List(*file, "MIME Cache", type));
    }
    defaults.insert(defaults.end(), others.begin(), others.end());
    return defaults;
}

/// A "-" in an entry's name may stand for a folder.
std::optional<Path> FindEntry(const std::string& name, const std::vector<Path>& applications) {
    if (name.find('/') != name.npos) return std::nullopt;
    std::error_code ignored;
    for (const Path& folder : applications) {
        std::string below = name;
        for (auto dash = below.find('-');; dash = below.find('-', dash + 1)) {
            if (std::filesystem::is_regular_file(folder / below, ignored)) return folder / below;
            if (dash == below.npos) break;
            below[dash] = '/';
        }
    }
    return std::nullopt;
}

/// One argument of an entry's command line, with what its codes stand for.
void AppendArgument(std::string_view argument, const std::string& link, GKeyFile& entry, const Path& path,
                    Texts& command, bool& hasLink) {
    if (argument == "%i") {
        const std::string icon = Text(entry, "Icon");
        if (!icon.empty()) command.insert(command.end(), {"--icon", icon});
        return;
    }
    std::string out;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        if (argument[i] != '%' || i + 1 == argument.size()) {
            out += argument[i];
            continue;
        }
        switch (argument[++i]) {
            case '%':
                out += '%';
                break;
            case 'u':
            case 'U':
            case 'f':
            case 'F':
                if (!hasLink) out += link;
                hasLink = true;
                break;
            case 'c':
                out += Text(entry, "Name");
                break;
            case 'k':
                out += path.native();
                break;
            default:  // of older times
                break;
        }
    }
    if (!out.empty() || argument.empty()) command.push_back(std::move(out));
}

bool HasLinkCode(std::string_view word) {
    for (auto at = word.find('%'); at != word.npos && at + 1 < word.size(); at = word.find('%', at + 2)) {
        if (std::string_view("uUfF").find(word[at + 1]) != std::string_view::npos) return true;
    }
    return false;
}

/// Whether some program would read the link as more than one argument: an entry may have the code only by itself or
/// behind an option, not among the words of a command that a shell or another program takes apart.
bool TakesLinkApart(const Texts& words) {
    constexpr std::string_view kOfCommands = " \t\n;|&<>()$`\"'\\";
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!HasLinkCode(words[i])) continue;
        if (i == 0 || words[i - 1] == "-c" || words[i].find_first_of(kOfCommands) != std::string::npos) return true;
    }
    return false;
}

/// How a program is started that needs a terminal around it; empty when there is none.
Texts Terminal() {
    for (const auto& [name, option] : {std::pair{"xdg-terminal-exec", ""}, std::pair{"x-terminal-emulator", "-e"}}) {
        const std::string program = FindProgram(name);
        if (!program.empty()) return *option == '\0' ? Texts{program} : Texts{program, option};
    }
    return {};
}

LinkHandler HandlerOf(GKeyFile& entry, const Path& path, const std::string& link) {
    LinkHandler handler;
    if (IsSet(entry, "Hidden") || Text(entry, "Type") != "Application") return handler;
    int count = 0;
    char** words = nullptr;
    if (!g_shell_parse_argv(Text(entry, "Exec").c_str(), &count, &words, nullptr)) return handler;
    const std::unique_ptr<char*, decltype(&g_strfreev)> owner(words, &g_strfreev);
    if (TakesLinkApart(Texts(words, words + count))) return handler;
    handler.state = Launcher::Program::Missing;
    const std::string program = FindProgram(words[0]);
    const std::string needed = Text(entry, "TryExec");
    if (program.empty() || (!needed.empty() && FindProgram(needed).empty())) return handler;
    const bool inTerminal = IsSet(entry, "Terminal");
    if (inTerminal) handler.command = Terminal();
    if (inTerminal && handler.command.empty()) return handler;
    handler.command.push_back(program);
    bool hasLink = false;
    for (int i = 1; i < count; ++i) AppendArgument(words[i], link, entry, path, handler.command, hasLink);
    if (!hasLink) handler.command.push_back(link);
    handler.folder = Text(entry, "Path");
    handler.state = Launcher::Program::There;
    return handler;
}

}  // namespace

std::string FindProgram(const std::string& name) {
    // Below a folder, but of whom?
    if (name.find('/') != name.npos && !name.starts_with('/')) return {};
    const std::unique_ptr<char, decltype(&g_free)> path(g_find_program_in_path(name.c_str()), &g_free);
    return path ? path.get() : std::string();
}

LinkHandler FindLinkHandler(const std::string& link) {
    const std::vector<Path> applications = ApplicationFolders();
    LinkHandler found;
    for (const std::string& name : EntriesFor("x-scheme-handler/" + link.substr(0, link.find(':')), applications)) {
        const auto path = FindEntry(name, applications);
        const KeyFile entry = path ? ReadKeyFile(*path) : KeyFile(nullptr, &g_key_file_unref);
        if (!entry) continue;
        LinkHandler handler = HandlerOf(*entry, *path, link);
        if (handler.state == Launcher::Program::There) return handler;
        if (handler.state == Launcher::Program::Missing) found = std::move(handler);
    }
    return found;
}

}  // namespace quillary
