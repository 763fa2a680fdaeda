// Writes a page of the manual with qly's commands and options in the places of two lines, @COMMANDS@ and @OPTIONS@.
//   qly-manual PAGE RESULT
#include <fstream>
#include <iostream>
#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "cli/Command.h"

namespace quillary {

namespace {

// One line of text, which holds no macro of the page's language.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else {
            escaped += c;
        }
    }
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

// Each on a line of its own, as the language wants it.
std::string Sentences(std::string_view text) {
    std::string lines;
    for (auto end = text.find(". "); end != text.npos; end = text.find(". ")) {
        lines += Escaped(text.substr(0, end + 1)) + "\n";
        text.remove_prefix(end + 2);
    }
    return lines + Escaped(text) + "\n";
}

// Paragraphs stand between empty lines, tables are indented.
std::string Details(std::string_view details) {
    std::string page = ".Pp\n";
    bool isTable = false;
    std::istringstream lines{std::string(details)};
    for (std::string line; std::getline(lines, line);) {
        const bool isRow = line.starts_with("  ");
        if (isRow != isTable) page += isRow ? ".Bd -literal -offset indent\n" : ".Ed\n.Pp\n";
        isTable = isRow;
        if (line.empty()) {
            if (!page.ends_with(".Pp\n")) page += ".Pp\n";
        } else {
            page += isRow ? Escaped(line.substr(2)) + "\n" : Sentences(line);
        }
    }
    return isTable ? page + ".Ed\n" : page;
}

std::string Options(std::span<const CommandOption> options) {
    std::string page = ".Bl -tag -width Ds\n";
    for (const CommandOption& option : options) {
        page += ".It Fl " + Escaped(option.name.substr(1));
        if (!option.value.empty()) page += " Ar " + std::string(option.value);
        page += "\n" + Escaped(option.help) + "\n";
    }
    return page + ".El\n";
}

std::string Commands() {
    std::string page;
    for (const Command& command : AllCommands()) {
        page += ".Ss " + std::string(command.name) + "\n.Bd -ragged -offset indent\n.Nm\n" +
                Escaped(std::string(command.name) + " " + std::string(command.synopsis)) + "\n.Ed\n.Pp\n" +
                Escaped(command.summary) + ".\n";
        if (!command.details.empty()) page += Details(command.details);
        if (!command.options.empty()) page += Options(command.options);
    }
    return page;
}

bool Write(const char* pagePath, const char* resultPath) {
    std::ifstream page(pagePath);
    std::ofstream result(resultPath);
    for (std::string line; std::getline(page, line);) {
        if (line == "@COMMANDS@") {
            line = Commands();
        } else if (line == "@OPTIONS@") {
            line = Options(CommonOptions());
        }
        if (line.ends_with('\n')) line.pop_back();
        result << line << '\n';
    }
    return page.eof() && result.flush();
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) {
    if (argc == 3 && quillary::Write(argv[1], argv[2])) return 0;
    std::cerr << "usage: qly-manual PAGE RESULT\n";
    return 1;
}
