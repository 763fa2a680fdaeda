#include "cli/Command.h"
#include "db/RecoveryFile.h"
#include "tests/cli/Qly.h"

namespace quillary {
namespace {

using ::testing::StartsWith;

class CommandLine : public QlyTest {
  protected:
    void SetUp() override {
        Write("t.csv", "Name,Due\nAnn,2004-03-07\nBob,\n");
        Output({"import", "t.csv", "t.pdb"});
    }
};

const std::vector<Call> kCalls = {
    {"no command", {}, 2, "qly --help"},
    {"an unknown command", {"lits", "t.pdb"}, 2, "\"list\"?"},
    {"an unknown option", {"list", "t.pdb", "--formta", "csv"}, 2, "\"--format\"?"},
    {"an unknown choice", {"list", "t.pdb", "--format", "xml"}, 2, "csv|tsv|json|jsonl"},
    {"an option without its value", {"list", "t.pdb", "--format"}, 2, "needs a value"},
    {"an empty value is one", {"list", "t.pdb", "--format="}, 2, "not \"\""},
    {"a value for a flag", {"info", "t.pdb", "--json=no"}, 2, "The option \"--json\" takes no value."},
    {"an option that is like none", {"list", "t.pdb", "-x"}, 2, "\"-x\" here. \"qly help list\" lists them."},
    {"a command that is like none", {"xyzzy"}, 2, "\"xyzzy\". \"qly --help\" lists them."},
    {"a word behind the version", {"--version", "t.pdb"}, 2, "Too many words"},
    {"one standard input for two", {"import", "-", "n.pdb", "--password-file", "-"}, 2, "both"},
    {"an option given twice", {"list", "t.pdb", "--format", "csv", "--format", "csv"}, 2, "twice"},
    {"two options that exclude one another", {"list", "t.pdb", "--iso", "--cells"}, 2, "exclude"},
    {"too few words", {"find", "t.pdb"}, 2, "Too few words"},
    {"too many words", {"list", "t.pdb", "t.pdb"}, 2, "Too many words"},
    {"a schema that is not there", {"fields", "t.pdb", "s.json"}, 1, "schema s.json cannot be read (No such file"},
    {"lenience where nothing is applied", {"fields", "t.pdb", "--lenient"}, 2, "--lenient"},
    {"no number where one is due", {"find", "t.pdb", "x", "--after", "1x"}, 2, "1x"},
    {"a row before the first", {"find", "t.pdb", "x", "--after", "-3"}, 2, "\"-3\" is no number of a row."},
    {"an unknown code page", {"list", "t.pdb", "--code-page", "klingon"}, 2, "klingon"},
    {"a code page that cannot be stored in bytes without NUL", {"list", "t.pdb", "--code-page", "utf-16"}, 2, "utf-16"},
    {"help on an unknown command", {"help", "lits"}, 2, "\"list\"?"},
    {"neither of two hashes", {"hash"}, 2, "--lock"},
    {"a word that begins with a dash", {"find", "t.pdb", "-Ann"}, 2, "\"-A"},
    {"the same behind the end of the options", {"find", "t.pdb", "--", "-Ann"}, 1, ""},
    {"options end only once", {"find", "t.pdb", "--", "--"}, 1, ""},
    {"a file that is not there", {"list", "x.pdb"}, 1, "Error opening requested file. (No such file or directory)"},
    {"a folder", {"list", "."}, 1, "Invalid database file. Error opening requested file. (Is a directory)"},
    {"no file to list", {"list", ""}, 1, "Invalid database file. No filename specified."},
    {"no file to check", {"check", ""}, 3, "Invalid database file. No filename specified."},
    {"a folder to fill", {"import", "t.csv", "."}, 1, "Error opening requested file. (Is a directory)"},
    {"a device", {"list", "/dev/null"}, 1, "Error opening requested file. (Not a regular file)"},
    {"a file that is no database", {"list", "t.csv"}, 1, "qly: Invalid database file.\n"},
    {"the same, where 1 is an answer", {"find", "t.csv", "x"}, 3, "qly: Invalid database file.\n"},
    {"an unknown field, with the fields", {"find", "t.pdb", "x", "--field", "due"}, 3, "\"Name\" and \"Due\""},
    {"an argument that is no text", {"find", "t.pdb", "\xFF"}, 3, "UTF-8"},
};

TEST_F(CommandLine, RefusesWithAStatusAndOneLine) { Expect({}, kCalls); }

TEST_F(CommandLine, NoLineForPeopleHoldsAControlCharacter) {
    EXPECT_THAT(Qly({"find", "t.pdb", "x", "--field", "a\nb\x1B[31m\u009B"}).err,
                HasSubstr("\"aU+000AbU+001B[31mU+009B\""));
    ImageParts parts;
    parts.name = "N\x1B[31m";
    parts.AddSchema({"F\x07"}, {"t"}, {}, "one\x90\r\ntw\to\x08");
    parts.tail = "\x0E" + std::string(39, '\0') + FromHex("02 00") + std::string(84, '\0') +
                 FromHex("00000000 FF000000 FF000000");
    Write("hostile.pdb", parts);
    const std::string info = Output({"info", "hostile.pdb"});
    for (const char* line : {"NU+001B[31m\n", "  FU+0007, Text, 80 pixels\n", "  FU+0007, ascending\n",
                             "  FU+0007 is \"U+000E\"\n", "oneU+0090\ntw\toU+0008\n"}) {
        EXPECT_THAT(info, HasSubstr(line));
    }
}

TEST_F(CommandLine, HelpNamesEveryCommandAndOption) {
    const std::string help = Output({"--help"});
    EXPECT_EQ(help, Output({"help"}));
    EXPECT_THAT(Output({"--version"}), StartsWith("qly "));
    for (const Command& command : AllCommands()) {
        const std::string name(command.name);
        EXPECT_THAT(help, HasSubstr("\n  " + name + " "));
        const std::string own = Output({"help", name});
        EXPECT_EQ(own, Output({name, "--help"}));
        for (const CommandOption& option : command.options) EXPECT_THAT(own, HasSubstr(std::string(option.name)));
    }
}

TEST_F(CommandLine, OneLineTellsOfACopyThatIsNotUsed) {
    const std::tuple<std::string, const char*, const char*> kCases[] = {
        {RecoveryFile::Head(PathOf("t.pdb"), {1, 1, 0, 0, false}, "old", "new") + "new",
         "The file is used as it is; opening it in Quillary's window offers the copy.", "Open it in Quillary's window"},
        {std::string("QlyRecov\2\0\0\0", 12) + "in a layout of their own",
         "Open the database in that version, or move the copy away. The file is used as it is.",
         "Another version of Quillary left the recovery copy"},
    };
    for (const auto& [copy, told, refusal] : kCases) {
        WriteRecovery("t.pdb", copy);
        Expect({}, {{"a command that reads", {"find", "t.pdb", "ann"}, 0, told, "1\n"},
                    {"a check", {"check", "t.pdb"}, 0, told},
                    {"a command that would write", {"options", "t.pdb", "--long-dates", "on"}, 1, refusal}});
    }
}

QlySurroundings To(const std::string& output) { return {.output = output}; }

TEST_F(CommandLine, OutputThatCannotBeWritten) {
    const std::string full = "No space left on device";
    Expect({}, {
                   {"a full disk", {"list", "t.pdb"}, 1, full, "", To("/dev/full")},
                   {"a full disk, where 1 is an answer", {"find", "t.pdb", "ann"}, 3, full, "", To("/dev/full")},
                   {"a closed output", {"list", "t.pdb"}, 1, "Bad file descriptor", "", To("-")},
                   {"a reader that left", {"list", "t.pdb"}, 0, "", "", To("|")},
                   {"nothing to print", {"options", "t.pdb", "--long-dates", "off"}, 0, "", "", To("/dev/full")},
                   {"an import to append", {"import", "t.csv", "t.pdb", "--lenient"}, 1, full, "", To("/dev/full")},
                   {"a new database", {"import", "t.csv", "new.pdb", "--lenient"}, 1, full, "", To("/dev/full")},
                   {"an import nobody reads", {"import", "t.csv", "t.pdb", "--lenient"}, 0, "", "", To("|")},
               });
    EXPECT_THAT(Output({"info", "t.pdb"}), HasSubstr("4 shown"));
}

TEST_F(CommandLine, LockedDatabase) {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    parts.Add(2, {"Ann"});
    parts.lockWord = std::stoul(Output({"hash", "--database"}, {"open sesame\r\nmore\n", {}, {}}));
    Write("locked.pdb", parts);
    Write("right", "open sesame\nmore\n");
    Write("right-crlf", "open sesame\r\n");
    Write("wrong", " open sesame\n");
    Write("empty", "\nopen sesame\n");

    const std::string wrong = "The password you have entered does not match the database password.";
    const auto variable = [](const std::string& password) {
        return QlySurroundings{.environment = {{"QLY_PASSWORD", password}}};
    };
    const std::string file = "--password-file";
    const std::vector<Call> calls = {
        {"none", {}, 3, wrong},
        {"the variable", {}, 0, "", "1\n", variable("open sesame")},
        {"its first line", {}, 0, "", "1\n", variable("open sesame\r\nmore")},
        {"a wrong variable", {}, 3, wrong, "", variable("Open sesame")},
        {"the file's first line", {file, "right"}, 0, "", "1\n"},
        {"up to CR LF", {file, "right-crlf"}, 0, "", "1\n"},
        {"from standard input", {file, "-"}, 0, "", "1\n", {"open sesame\nmore", {}, {}}},
        {"with its spaces", {file, "wrong"}, 3, wrong},
        {"the file wins", {file, "wrong"}, 3, wrong, "", variable("open sesame")},
        {"an empty first line is none, and still wins", {file, "empty"}, 3, wrong, "", variable("open sesame")},
        {"a file that is not there", {file, "missing"}, 3, "No such file"},
    };
    Expect({"find", "locked.pdb", "ann"}, calls);
    EXPECT_EQ(1, Qly({"list", "locked.pdb"}).status);
    EXPECT_EQ("", Output({"check", "locked.pdb"}));
    EXPECT_THAT(Output({"list", "t.pdb", "--password-file", "missing"}), StartsWith("Name,"));
}

}  // namespace
}  // namespace quillary
