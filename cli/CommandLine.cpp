#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <new>

#include "cli/Command.h"
#include "cli/Completion.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace quillary {

namespace {

constexpr std::string_view kHelpOption = "--help";
constexpr std::string_view kShortHelpOption = "-h";
constexpr std::string_view kCompletionCommand = "__complete";  // for shells, so help does not list it
constexpr int kMostWords = 1 << 20;

std::vector<std::string_view> ChoicesOf(const CommandOption& option) {
    std::vector<std::string_view> choices;
    if (option.value.find('|') == option.value.npos) return choices;
    std::string_view rest = option.value;
    for (auto end = rest.find('|'); end != rest.npos; end = rest.find('|')) {
        choices.push_back(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    choices.push_back(rest);
    return choices;
}

// ---- Help

void AppendOptions(std::span<const CommandOption> options, std::string& help) {
    constexpr std::size_t kIndent = 28;
    for (const CommandOption& option : options) {
        std::string left = "  " + std::string(option.name);
        if (!option.value.empty()) left += " " + std::string(option.value);
        left += left.size() + 2 > kIndent ? "\n" + std::string(kIndent, ' ') : std::string(kIndent - left.size(), ' ');
        help += left + std::string(option.help) + "\n";
    }
}

std::string HelpOn(const Command& command) {
    std::string help = "Usage: qly " + std::string(command.name) + " " + std::string(command.synopsis) + "\n\n" +
                       std::string(command.summary) + ".\n";
    if (!command.details.empty()) help += "\n" + std::string(command.details) + "\n";
    if (!command.options.empty()) {
        help += "\nOptions:\n";
        AppendOptions(command.options, help);
    }
    help += "\nOptions of every command:\n";
    AppendOptions(CommonOptions(), help);
    return help;
}

std::string HelpOnAll() {
    std::string help =
        "Usage: qly COMMAND FILE ...\n\n"
        "Works on Quillary's databases without a window.\n\nCommands:\n";
    for (const Command& command : AllCommands()) {
        std::string name = "  " + std::string(command.name);
        name.resize(12, ' ');
        help += name + std::string(command.summary) + "\n";
    }
    help += "\nOptions of every command:\n";
    AppendOptions(CommonOptions(), help);
    return help +
           "\n\"--\" ends the options. The password of a locked database comes from --password-file or from the "
           "environment\nvariable QLY_PASSWORD. \"qly help COMMAND\" tells more.\n";
}

ExitStatus Print(std::string_view text) {
    Output output;
    output.Append(text);
    output.Flush();
    if (!output.HasFailed()) return ExitStatus::Done;
    Complain("The output cannot be written (" + output.Reason() + ").");
    return ExitStatus::Refused;
}

// ---- Commands

ExitStatus UnknownCommand(std::string_view name) {
    std::vector<std::string_view> names{"help"};
    for (const Command& command : AllCommands()) names.push_back(command.name);
    const std::string hint = NearestNameHint(name, names);
    Complain("There is no command " + Quoted(name) + "." + (hint.empty() ? " \"qly --help\" lists them." : hint));
    return ExitStatus::WrongUsage;
}

// `help` is the command that lists them.
ExitStatus UnknownOption(std::string_view given, const std::vector<std::string_view>& names, std::string_view help) {
    const std::string_view name = given.substr(0, given.find('='));
    const std::string hint = NearestNameHint(name, names);
    Complain("There is no option " + Quoted(name) + " here." +
             (hint.empty() ? " " + Quoted(help) + " lists them." : hint));
    return ExitStatus::WrongUsage;
}

// Takes the arguments behind the command's name apart. False with a message when they make no sense.
class ArgumentParser {
  public:
    explicit ArgumentParser(const Command& command) : m_command(command), m_options(OptionsOf(command)) {
        m_app.set_help_flag();
        // Not as a list of any length: that would take a word like "[a,b]" apart.
        m_app.add_option("words")->expected(kMostWords)->take_all()->allow_extra_args(false);
        for (const CommandOption* option : m_options) {
            const std::string name(option->name);
            if (option->value.empty()) {
                m_app.add_flag(name);
            } else {
                const auto count = static_cast<int>(option->ValueCount());
                m_app.add_option(name)->type_size(count)->take_all()->allow_extra_args(false);
            }
        }
    }

    [[nodiscard]] bool Parse(std::vector<std::string> given, Arguments& arguments) {
        if (!Prepare(given)) return false;
        std::reverse(given.begin(), given.end());
        try {
            m_app.parse(given);
        } catch (const CLI::ExtrasError&) {
            std::vector<std::string_view> names;
            for (const CommandOption* option : m_options) names.push_back(option->name);
            (void)UnknownOption(m_app.remaining().front(), names, "qly help " + std::string(m_command.name));
            return false;
        } catch (const CLI::ParseError& error) {
            // What is left to go wrong is an option whose value is missing; the library's text begins with its name.
            const std::string_view text = error.what();
            const std::string_view name = text.substr(0, text.find(':'));
            const auto option = std::find_if(m_options.begin(), m_options.end(),
                                             [name](const CommandOption* known) { return known->name == name; });
            const bool isOneWord = option == m_options.end() || (*option)->ValueCount() == 1;
            Complain("The option " + Quoted(name) + " needs " +
                     (isOneWord ? "a value" : std::string((*option)->value)) + ".");
            return false;
        }
        if (AsksForHelp()) return true;
        arguments.words = m_app.get_option("words")->results();
        for (const CommandOption* option : m_options) {
            const CLI::Option* parsed = m_app.get_option(std::string(option->name));
            if (parsed->count() == 0) continue;
            if (!Check(*option, parsed->results())) return false;
            arguments.options[option->name] = option->value.empty() ? std::vector<std::string>() : parsed->results();
        }
        return CheckWords(arguments.words.size());
    }
    [[nodiscard]] bool AsksForHelp() const { return m_app.count(std::string(kHelpOption)) > 0; }

  private:
    // What the library would misread: of "--name=" it would take the next word for the value. False with a message when
    // a flag has a value.
    [[nodiscard]] bool Prepare(std::vector<std::string>& given) const {
        for (std::size_t i = 0; i < given.size() && given[i] != "--"; ++i) {
            if (given[i] == kShortHelpOption) given[i] = kHelpOption;
            const auto nameEnd = given[i].find('=');
            const std::string name = given[i].substr(0, nameEnd);
            const auto option = std::find_if(m_options.begin(), m_options.end(),
                                             [&name](const CommandOption* known) { return known->name == name; });
            if (option == m_options.end()) continue;
            const bool isFlag = (*option)->value.empty();
            if (nameEnd == std::string::npos) {
                i += (*option)->ValueCount();  // the next words are its value, whatever they look like
                continue;
            }
            if (isFlag) {
                Complain("The option " + Quoted(name) + " takes no value.");
                return false;
            }
            if (nameEnd + 1 == given[i].size()) {
                given[i].pop_back();
                given.insert(given.begin() + static_cast<std::ptrdiff_t>(++i), std::string());
            }
            i += (*option)->ValueCount() - 1;
        }
        return true;
    }

    static bool Check(const CommandOption& option, const std::vector<std::string>& values) {
        if (values.size() > 1 && !option.repeats && !option.value.empty()) {
            Complain("The option " + Quoted(option.name) + " is given twice.");
            return false;
        }
        const auto choices = ChoicesOf(option);
        if (choices.empty() || std::find(choices.begin(), choices.end(), values.front()) != choices.end()) return true;
        Complain("The option " + Quoted(option.name) + " takes " + std::string(option.value) + ", not " +
                 Quoted(values.front()) + ".");
        return false;
    }

    [[nodiscard]] bool CheckWords(std::size_t count) const {
        if (count >= m_command.fewestWords && count <= m_command.mostWords) return true;
        Complain(std::string(count < m_command.fewestWords ? "Too few" : "Too many") + " words. Usage: qly " +
                 std::string(m_command.name) + " " + std::string(m_command.synopsis));
        return false;
    }

    const Command& m_command;
    std::vector<const CommandOption*> m_options;
    CLI::App m_app;
};

ExitStatus RunCommand(const Command& command, std::vector<std::string> given, const RunService& runService) {
    ArgumentParser parser(command);
    Arguments arguments;
    if (!parser.Parse(std::move(given), arguments)) return ExitStatus::WrongUsage;
    if (parser.AsksForHelp()) return Print(HelpOn(command));
    Session session(command, arguments);
    if (!session.SetUp()) return ExitStatus::WrongUsage;
    try {
        return session.Finish(command.run ? command.run(session, arguments) : runService(command, session, arguments));
    } catch (const std::bad_alloc&) {
        return session.Refuse("There is not enough memory.");
    }
}

ExitStatus RunHelp(const std::vector<std::string>& words) {
    if (words.empty()) return Print(HelpOnAll());
    if (words.size() > 1) {
        Complain("Too many words. Usage: qly help COMMAND");
        return ExitStatus::WrongUsage;
    }
    const Command* command = CommandNamed(words.front());
    return command ? Print(HelpOn(*command)) : UnknownCommand(words.front());
}

ExitStatus PrintVersion(const std::vector<std::string>& words) {
    if (words.empty()) return Print("qly " QUILLARY_VERSION "\n");
    Complain("Too many words. Usage: qly --version");
    return ExitStatus::WrongUsage;
}

}  // namespace

ExitStatus RunCommandLine(const std::vector<std::string>& arguments, const RunService& runService) {
    if (arguments.empty()) {
        Complain("No command is given. \"qly --help\" lists them.");
        return ExitStatus::WrongUsage;
    }
    const std::string& first = arguments.front();
    std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    if (first == kHelpOption || first == kShortHelpOption || first == "help") return RunHelp(rest);
    if (first == "--version") return PrintVersion(rest);
    if (first == kCompletionCommand) return Print(CompletionAnswer(rest));
    if (first.starts_with("-")) return UnknownOption(first, {kHelpOption, "--version"}, "qly --help");
    const Command* command = CommandNamed(first);
    return command ? RunCommand(*command, std::move(rest), runService) : UnknownCommand(first);
}

}  // namespace quillary
