#include "cli/Completion.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>

#include "cli/BashWords.h"
#include "cli/Command.h"
#include "db/QuillaryDoc.h"
#include "db/Utf.h"
#include "integration/ExportContacts.h"
#include "platform/posix/CodePages.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

constexpr std::uint64_t kLargestFile = 64 << 20;  // bytes: nobody waits long for a completion

// What the words behind a command's name are. One that is in no row takes a FILE, or what has no completion.
struct CommandWords {
    std::string_view command;
    std::string_view action;  // the first word that is not FILE, where the others depend on it
    std::string_view words;   // the last one may repeat
};
constexpr CommandWords kCommandWords[] = {
    {"import", "", "TABLE FILE"},
    {"fields", "", "FILE SCHEMA"},
    {"sort", "", "FILE KEY"},
    {"hash", "", ""},
    {"password", "", "FILE set|clear"},
    {"record", "", "FILE add|set|delete|duplicate"},
    {"record", "add", "FILE add FIELD=VALUE"},
    {"record", "set", "FILE set ROW FIELD=VALUE"},
    {"catalogue", "", "search|details|package|download"},
    {"catalogue", "download", "download FILE-ID TARGET"},
};

struct FileKind {
    std::string_view name;
    std::string_view suffix;
};
// Options that want a field of one type.
struct FieldOption {
    std::string_view command;
    std::string_view option;
    FieldType type;
};
constexpr FieldOption kFieldOptions[] = {
    {"calendar", "--date", FieldType::Date},
    {"calendar", "--start", FieldType::Time},
    {"calendar", "--end", FieldType::Time},
};

constexpr FileKind kFileKinds[] = {
    {"FILE", ".pdb"}, {"TABLE", ".csv"}, {"SCHEMA", ".json"}, {"PATH", ""}, {"TARGET", ""},
};

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (auto end = text.find(separator); end != text.npos; end = text.find(separator)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

class NoAnswers : public Questions {
  public:
    void Tell(const Failure& /*failure*/) override {}
    bool AskDatabasePassword(const CQuillaryDoc& /*doc*/) override { return false; }
};

class Completer {
  public:
    Completer(const Command& command, const std::vector<std::string>& words)
        : m_command(command), m_options(OptionsOf(command)), m_typed(words.back()) {
        for (auto word = words.begin() + 1; word != words.end() - 1; ++word) Take(*word);
    }

    Completion Run() {
        if (m_option) {
            Complete(Split(m_option->value, ' ')[m_values.size()], m_typed);
        } else if (!m_isEnded && m_typed.starts_with('-')) {
            CompleteOption();
        } else {
            Complete(WordNumber(m_words.size()), m_typed);
        }
        return std::move(m_completion);
    }

  private:
    [[nodiscard]] const CommandOption* OptionNamed(std::string_view name) const {
        const auto found = std::find_if(m_options.begin(), m_options.end(),
                                        [name](const CommandOption* option) { return option->name == name; });
        return found == m_options.end() ? nullptr : *found;
    }

    void Take(std::string_view word) {
        if (m_option) {
            TakeValue(word);
        } else if (m_isEnded || !word.starts_with('-')) {
            m_words.push_back(word);
        } else if (word == "--") {
            m_isEnded = true;
        } else {
            const auto equals = word.find('=');
            m_option = OptionNamed(word.substr(0, equals));
            if (!m_option) return;
            m_given.push_back(m_option);
            if (m_option->ValueCount() == 0) {
                m_option = nullptr;
            } else if (equals != word.npos) {
                TakeValue(word.substr(equals + 1));
            }
        }
    }
    void TakeValue(std::string_view value) {
        m_values.push_back(value);
        if (m_values.size() < m_option->ValueCount()) return;
        if (m_option->name == "--code-page") m_codePage = value;
        m_option = nullptr;
        m_values.clear();
    }

    // The name in capitals of a word behind the command's, or the words that there may be.
    [[nodiscard]] std::string_view WordNumber(std::size_t number) const {
        std::string_view words = "FILE";
        for (const CommandWords& row : kCommandWords) {
            if (row.command != m_command.name) continue;
            const bool fits =
                row.action.empty() || std::find(m_words.begin(), m_words.end(), row.action) != m_words.end();
            if (fits) words = row.words;
        }
        const auto names = Split(words, ' ');
        const bool repeats = names.back() == "KEY" || names.back() == "FIELD=VALUE";
        if (number >= names.size() && repeats) return names.back();
        return number < std::min(names.size(), m_command.mostWords) ? names[number] : std::string_view{};
    }

    void Add(const std::string& word, std::string_view typed, std::string_view help = {}) {
        if (word.starts_with(typed)) m_completion.candidates.push_back({m_before + word, help});
    }

    void CompleteOption() {
        const auto equals = m_typed.find('=');
        if (equals != m_typed.npos) {
            const CommandOption* option = OptionNamed(m_typed.substr(0, equals));
            if (!option || option->value.empty()) return;
            m_option = option;
            m_before = m_typed.substr(0, equals + 1);
            Complete(Split(option->value, ' ').front(), m_typed.substr(equals + 1));
            return;
        }
        for (const CommandOption* option : m_options) {
            const bool isGiven = std::find(m_given.begin(), m_given.end(), option) != m_given.end();
            if (!isGiven || option->repeats) Add(std::string(option->name), m_typed, option->help);
        }
    }

    void Complete(std::string_view name, std::string_view typed) {
        const auto* file = std::find_if(std::begin(kFileKinds), std::end(kFileKinds),
                                        [name](const FileKind& row) { return row.name == name; });
        const bool isField = name == "FIELD" || (m_option && m_option->name == "--field" && name == "NAME");
        if (file != std::end(kFileKinds)) {
            m_completion.isFile = true;
            m_completion.suffix = file->suffix;
        } else if (name.find('|') != name.npos) {
            for (const std::string_view choice : Split(name, '|')) Add(std::string(choice), typed);
        } else if (isField || name == "KEY") {
            if (m_option && m_option->name == "--where") Add("*", typed);
            for (const std::string& field : FieldNames()) {
                if (IsWanted(field)) Add(field, typed);
                if (name != "KEY" || !typed.starts_with(field + ":")) continue;
                for (const char* order : {":asc", ":desc"}) Add(field + order, typed);
            }
        } else if (name == "DEFINITION") {
            CompleteDefinition(typed);
        } else if (name == "FIELD=VALUE") {
            CompleteFieldAndValue(typed);
        } else if (name == "PROPERTY=FIELD") {
            CompletePropertyAndField(typed);
        } else if (name == "OP") {
            const auto field = FieldNamed(m_values[0]);
            if (!field && m_values[0] != "*") return;
            for (const auto text : field ? InfoOf(m_doc->TypeOf(*field)).operators : AllFieldsOperators()) {
                Add(std::string(text), typed);
            }
        } else if (name == "VALUE") {
            AddValues(FieldNamed(m_values[0]), "", typed);
        }
    }

    // Whether it is of the type that the option wants.
    [[nodiscard]] bool IsWanted(std::string_view field) {
        for (const FieldOption& row : kFieldOptions) {
            if (!m_option || row.command != m_command.name || row.option != m_option->name) continue;
            const auto place = FieldNamed(field);
            return place && m_doc->TypeOf(*place) == row.type;
        }
        return true;
    }

    void CompleteDefinition(std::string_view typed) {
        const auto colon = typed.find(':');
        if (colon == typed.npos) return;
        const std::string name(typed.substr(0, colon + 1));
        for (const FieldTypeInfo& info : AllFieldTypes()) Add(name + std::string(info.commandName), typed);
    }

    void CompleteFieldAndValue(std::string_view typed) {
        std::string before;  // as the longest name that fits, with its "="
        for (const std::string& field : FieldNames()) {
            Add(field + "=", typed);
            if (typed.starts_with(field + "=") && field.size() >= before.size()) before = field + "=";
        }
        if (before.empty()) return;
        m_completion.candidates.clear();
        AddValues(FieldNamed(std::string_view(before).substr(0, before.size() - 1)), before, typed);
    }

    void CompletePropertyAndField(std::string_view typed) {
        const auto equals = typed.find('=');
        if (equals != typed.npos) {
            for (const std::string& field : FieldNames()) Add(std::string(typed.substr(0, equals + 1)) + field, typed);
            return;
        }
        for (const ContactPropertyInfo& row : kContactPropertyTable) {
            std::string label = WideToUtf8(row.label);
            if (label.ends_with(':')) label.pop_back();
            Add(label + "=", typed);
        }
    }

    // Those that there are.
    void AddValues(std::optional<std::size_t> field, const std::string& before, std::string_view typed) {
        if (!field) return;
        const Field& definition = m_doc->Fields()[*field];
        if (definition.type == FieldType::Checkbox) {
            for (const char* value : {"true", "false"}) Add(before + value, typed);
        }
        if (definition.type != FieldType::List) return;
        for (const std::string& item : definition.options.items) {
            const std::string text = m_doc->Page().ToUtf8(item);
            if (!HasControlCharacter(text)) Add(before + text, typed);
        }
    }

    void OpenDatabase() {
        if (m_doc) return;
        m_page = CodePageByName(m_codePage);
        m_doc.emplace(m_files, m_page ? *m_page : AnsiText::Windows1252());
        std::string path;
        for (std::size_t k = 0; k < m_words.size(); ++k) {
            if (WordNumber(k) == "FILE") path = m_words[k];
        }
        if (path.starts_with("~/")) path.replace(0, 1, HomeFolder().native());  // the shells do not
        FileStamp stamp;
        NoAnswers none;
        if (path.empty() || !m_files.StampOf(path, stamp) || stamp.size > kLargestFile) return;
        (void)m_doc->OpenDatabase(path, OpenMode::Read, none);
    }

    // In the file's order, without those that no line can hold.
    std::vector<std::string> FieldNames() {
        OpenDatabase();
        std::vector<std::string> names;
        for (std::size_t k = 0; k < m_doc->FieldCount(); ++k) {
            std::string name = WideToUtf8(m_doc->FieldName(k));
            if (!HasControlCharacter(name)) names.push_back(std::move(name));
        }
        return names;
    }
    std::optional<std::size_t> FieldNamed(std::string_view name) {
        OpenDatabase();
        for (std::size_t k = 0; k < m_doc->FieldCount(); ++k) {
            if (WideToUtf8(m_doc->FieldName(k)) == name) return k;
        }
        return std::nullopt;
    }

    const Command& m_command;
    std::vector<const CommandOption*> m_options;
    const std::string_view m_typed;
    std::vector<std::string_view> m_words;  // behind the command's name, those of options left out
    std::vector<const CommandOption*> m_given;
    const CommandOption* m_option = nullptr;  // that needs more values than m_values
    std::vector<std::string_view> m_values;
    bool m_isEnded = false;  // by "--"
    std::string_view m_codePage = "windows-1252";
    std::string m_before;  // stands before each candidate
    Completion m_completion;
    PosixFileAccess m_files{StateFolder(), std::chrono::milliseconds(0)};
    std::optional<AnsiText> m_page;
    std::optional<CQuillaryDoc> m_doc;
};

Completion CommandNames(std::string_view typed, bool withOptions) {
    Completion completion;
    const auto add = [&completion, typed](std::string_view name, std::string_view help) {
        if (name.starts_with(typed)) completion.candidates.push_back({std::string(name), help});
    };
    for (const Command& command : AllCommands()) add(command.name, command.summary);
    if (!withOptions) return completion;
    add("help", "Tell about a command");
    if (!typed.starts_with('-')) return completion;
    add("--help", "list the commands");
    add("--version", "print the version");
    return completion;
}

}  // namespace

Completion CompleteWords(const std::vector<std::string>& words) {
    const std::string& first = words.front();
    if (words.size() == 1) return CommandNames(first, true);
    if (first == "help") return words.size() == 2 ? CommandNames(words.back(), false) : Completion{};
    const Command* command = CommandNamed(first);
    if (!command) return {};
    try {
        return Completer(*command, words).Run();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

std::string CompletionAnswer(const std::vector<std::string>& arguments) {
    const bool isBash = arguments.size() == 3 && arguments[0] == "--bash";
    BashLine line;
    if (isBash) {
        line = ReadBashLine(arguments[1], arguments[2]);
    } else if (!arguments.empty() && arguments[0] == "--") {
        line.words = arguments;
    }
    if (line.words.size() < 2) return {};
    line.words.erase(line.words.begin());  // "--", or the program's name
    const Completion completion = CompleteWords(line.words);
    if (completion.isFile) return "files " + std::string(completion.suffix) + "\n";
    std::string answer = "words\n";
    for (const Completion::Candidate& candidate : completion.candidates) {
        if (isBash) {
            answer += QuoteForBash(std::string_view(candidate.word).substr(line.kept), line.quote);
        } else {
            answer += candidate.word;
            if (!candidate.help.empty()) answer += "\t" + std::string(candidate.help);
        }
        answer += '\n';
    }
    return answer;
}

}  // namespace quillary
