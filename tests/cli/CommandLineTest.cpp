#include "tests/cli/Qly.h"

#include <gmock/gmock.h>

#include "cli/Command.h"

namespace quillary {

namespace {

using ::testing::HasSubstr;
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
    {"an unknown option in a command's place", {"--verison"}, 2, "\"--version\"?"},
    {"an unknown option", {"list", "t.pdb", "--formta", "csv"}, 2, "\"--format\"?"},
    {"an option of another command", {"list", "t.pdb", "--fit"}, 2, "no option \"--fit\""},
    {"an unknown choice", {"list", "t.pdb", "--format", "xml"}, 2, "csv|tsv|json|jsonl"},
    {"an option without its value", {"list", "t.pdb", "--format"}, 2, "needs a value"},
    {"an empty value is one", {"list", "t.pdb", "--format="}, 2, "not \"\""},
    {"a value for a flag", {"info", "t.pdb", "--json=no"}, 2, "json"},
    {"an option given twice", {"list", "t.pdb", "--format", "csv", "--format", "csv"}, 2, "twice"},
    {"two options that exclude one another", {"list", "t.pdb", "--iso", "--cells"}, 2, "exclude"},
    {"too few words", {"find", "t.pdb"}, 2, "Too few words"},
    {"too many words", {"list", "t.pdb", "t.pdb"}, 2, "Too many words"},
    {"a schema to apply, which is not there yet", {"fields", "t.pdb", "s.json"}, 2, "Too many words"},
    {"no number where one is due", {"find", "t.pdb", "x", "--after", "1x"}, 2, "1x"},
    {"an unknown code page", {"list", "t.pdb", "--code-page", "klingon"}, 2, "klingon"},
    {"a code page that cannot be stored in bytes without NUL", {"list", "t.pdb", "--code-page", "utf-16"}, 2, "utf-16"},
    {"help on an unknown command", {"help", "lits"}, 2, "\"list\"?"},
    {"neither of two hashes", {"hash"}, 2, "--lock"},
    {"both of two hashes", {"hash", "--lock", "--database"}, 2, "--lock"},
    {"a word that begins with a dash", {"find", "t.pdb", "-Ann"}, 2, "\"-A"},
    {"the same behind the end of the options", {"find", "t.pdb", "--", "-Ann"}, 1, ""},
    {"options end only once", {"find", "t.pdb", "--", "--"}, 1, ""},
    {"a file that is not there", {"list", "x.pdb"}, 1, "Invalid database file. (Error opening requested file.)"},
    {"a folder", {"list", "."}, 1, "Invalid database file. (Error opening requested file.)"},
    {"a file that is no database", {"list", "t.csv"}, 1, "qly: Invalid database file.\n"},
    {"the same, where 1 is an answer", {"find", "t.csv", "x"}, 3, "qly: Invalid database file.\n"},
    {"the same, where 1 is an answer too", {"check", "t.csv"}, 3, "qly: Invalid database file.\n"},
    {"an unknown field, with the fields", {"find", "t.pdb", "x", "--field", "due"}, 3, "\"Name\" and \"Due\""},
    {"an argument that is no text", {"find", "t.pdb", "\xFF"}, 3, "UTF-8"},
};

TEST_F(CommandLine, RefusesWithAStatusAndOneLine) { Expect({}, kCalls); }

TEST_F(CommandLine, AMessageNeverHoldsAControlCharacter) {
    const std::string err = Qly({"find", "t.pdb", "x", "--field", "a\nb\x1B[31m"}).err;
    EXPECT_THAT(err, HasSubstr("\"a b?[31m\""));
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

TEST_F(CommandLine, CommonOptionsStandAnywhereBehindTheCommand) {
    const std::string list = Output({"list", "t.pdb"});
    EXPECT_EQ(list, Output({"list", "--quiet", "t.pdb", "--date-order", "dmy", "--password-file=nothing"}));
    EXPECT_EQ("1\n", Output({"find", "--code-page=windows-1250", "t.pdb", "ann"}));
}

TEST_F(CommandLine, OutputThatCannotBeWritten) {
    struct Case {
        const char* why;
        std::vector<std::string> arguments;
        const char* output;
        int status;
        const char* message;
    };
    const Case kCases[] = {
        {"a full disk", {"list", "t.pdb"}, "/dev/full", 1, "No space left on device"},
        {"a full disk, where 1 is an answer", {"find", "t.pdb", "ann"}, "/dev/full", 3, "No space left on device"},
        {"a full disk for help", {"--help"}, "/dev/full", 1, "No space left on device"},
        {"a closed output", {"list", "t.pdb"}, "-", 1, "Bad file descriptor"},
        {"a reader that left", {"list", "t.pdb"}, "|", 0, ""},
        {"nothing to print", {"options", "t.pdb", "--long-dates", "off"}, "/dev/full", 0, ""},
    };
    const std::string before = Read("t.pdb");
    for (const Case& c : kCases) {
        QlySurroundings surroundings;
        surroundings.output = c.output;
        const QlyResult result = Qly(c.arguments, surroundings);
        EXPECT_EQ(c.status, result.status) << c.why;
        EXPECT_THAT(result.err, HasSubstr(c.message)) << c.why;
        EXPECT_EQ(*c.message == '\0', result.err.empty()) << c.why << result.err;
    }
    EXPECT_EQ(before, Read("t.pdb"));
}

TEST_F(CommandLine, ImportWhoseAnswerCannotBeWrittenImportsNothing) {
    const std::string before = Read("t.pdb");
    QlySurroundings full;
    full.output = "/dev/full";
    EXPECT_EQ(1, Qly({"import", "t.csv", "t.pdb", "--lenient"}, full).status);
    EXPECT_EQ(1, Qly({"import", "t.csv", "new.pdb", "--lenient"}, full).status);
    EXPECT_EQ(before, Read("t.pdb"));
    EXPECT_FALSE(Exists("new.pdb"));
    full.output = "|";  // a reader that left is no reason
    EXPECT_EQ(0, Qly({"import", "t.csv", "t.pdb", "--lenient"}, full).status);
    EXPECT_THAT(Output({"info", "t.pdb"}), HasSubstr("4 shown"));
}

TEST_F(CommandLine, LockedDatabase) {
    // The lock word, at 278 in the application-info block; the hash of "open sesame", lower than 3 as a signed number
    // or not, comes from the program that is tested elsewhere.
    const auto hash =
        static_cast<std::uint32_t>(std::stoul(Output({"hash", "--database"}, {"open sesame\r\nmore\n", {}, {}})));
    std::string image = Read("t.pdb");
    const auto byteAt = [&image](std::size_t at) { return static_cast<unsigned char>(image[at]); };
    const std::size_t block = byteAt(54) << 8 | byteAt(55);
    for (int i = 0; i < 4; ++i) image[block + 278 + i] = static_cast<char>(hash >> (24 - 8 * i));
    Write("locked.pdb", image);
    Write("right", "open sesame\nmore\n");
    Write("right-crlf", "open sesame\r\n");
    Write("wrong", " open sesame\n");
    Write("empty", "\nopen sesame\n");

    struct Case {
        const char* why;
        const char* file;      // --password-file
        const char* variable;  // QLY_PASSWORD
        int status;
        const char* message;
    };
    const char* const kWrong = "The password you have entered does not match the database password.";
    const Case kCases[] = {
        {"none", "", "", 1, kWrong},
        {"the variable", "", "open sesame", 0, ""},
        {"a wrong variable", "", "Open sesame", 1, kWrong},
        {"the file's first line", "right", "", 0, ""},
        {"up to CR LF", "right-crlf", "", 0, ""},
        {"with its spaces", "wrong", "", 1, kWrong},
        {"the file wins", "wrong", "open sesame", 1, kWrong},
        {"an empty first line is none, and still wins", "empty", "open sesame", 1, kWrong},
        {"a file that is not there", "missing", "open sesame", 1, "No such file"},
    };
    for (const Case& c : kCases) {
        QlySurroundings surroundings;
        if (*c.variable) surroundings.environment["QLY_PASSWORD"] = c.variable;
        std::vector<std::string> arguments = {"find", "locked.pdb", "ann"};
        if (*c.file) arguments.insert(arguments.end(), {"--password-file", c.file});
        const QlyResult result = Qly(arguments, surroundings);
        EXPECT_EQ(c.status == 1 ? 3 : 0, result.status) << c.why;
        EXPECT_THAT(result.err, HasSubstr(c.message)) << c.why;
        arguments[0] = "list";
        arguments.erase(arguments.begin() + 2);
        EXPECT_EQ(c.status, Qly(arguments, surroundings).status) << c.why;
    }
    EXPECT_EQ("", Output({"check", "locked.pdb"}));
    EXPECT_THAT(Output({"list", "t.pdb", "--password-file", "missing"}), StartsWith("Name,"));
}

}  // namespace

}  // namespace quillary
