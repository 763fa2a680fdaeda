#include "cli/BashWords.h"
#include "tests/cli/Qly.h"

namespace quillary {
namespace {

// Why, the words, and the answer with "|" for a line end.
const std::tuple<const char*, std::vector<std::string>, std::string> kCompletions[] = {
    {"a command begun", {"he"}, "words|help\tTell about a command|"},
    {"help on one", {"help", "im"}, "words|import\tMake a database from a CSV table, or append the table to one|"},
    {"an unknown command", {"lits", ""}, "words|"},
    {"a database", {"list", ""}, "files .pdb|"},
    {"a table, then a database", {"import", "t.csv", ""}, "files .pdb|"},
    {"a file behind the option's name", {"list", "--password-file=x"}, "files |"},
    {"no word too many", {"list", "t.pdb", ""}, "words|"},
    {"choices behind the option's name", {"list", "--records=h"}, "words|--records=hidden|"},
    {"no value for a flag", {"list", "--iso="}, "words|"},
    {"an option that was not given", {"find", "--after", "3", "t.pdb", "--a"}, "words|--all\tevery matching row|"},
    {"one that repeats", {"filter", "--where", "Due", "is", "", "--wh"}, "words|--where\ta condition; up to three|"},
    {"no option behind --", {"find", "t.pdb", "--", "--a"}, "words|"},
    {"a name that is no field", {"import", "t.csv", "t.pdb", "--name", ""}, "words|"},
    {"a field", {"find", "--after", "1", "t.pdb", "x", "--field", "Du"}, "words|Due|"},
    {"a type for a new field", {"new", "n.pdb", "--field", "A:t"}, "words|A:text|A:time|"},
    {"a field of the type that it must have, behind the option's name",
     {"calendar", "t.pdb", "--date="},
     "words|--date=Due|"},
    {"a field or all", {"filter", "t.pdb", "--where", ""}, "words|*|Kind|Kind=a|Due|Done|"},
    {"an operator", {"filter", "t.pdb", "--where", "Due", "is b"}, "words|is before|"},
    {"an operator of all fields", {"filter", "t.pdb", "--where", "*", ""}, "words|is|contains|"},
    {"a value", {"filter", "t.pdb", "--where", "Done", "is", ""}, "words|true|false|"},
    {"a sort key", {"sort", "t.pdb", "Due", "Do"}, "words|Done|"},
    {"its order", {"sort", "t.pdb", "Due:"}, "words|Due:asc|Due:desc|"},
    {"an action", {"record", "t.pdb", "d"}, "words|delete|duplicate|"},
    {"no field in a row's place", {"record", "t.pdb", "set", ""}, "words|"},
    {"a field's value", {"record", "t.pdb", "set", "1", "Due=", "Kind=b"}, "words|Kind=big|"},
    {"of the longer name", {"record", "t.pdb", "add", "Kind=a="}, "words|Kind=a=x|"},
    {"a property", {"contacts", "t.pdb", "--map", "Anni"}, "words|Anniversary=|"},
    {"its field", {"contacts", "t.pdb", "--map", "Notes=D"}, "words|Notes=Due|Notes=Done|"},
    {"a server's file is none of ours", {"catalogue", "details", "1", ""}, "words|"},
    {"a download's place is", {"catalogue", "download", "1", ""}, "files |"},
};

class CompletionOfWords : public QlyTest {
  protected:
    std::string Answer(std::vector<std::string> words) {
        words.insert(words.begin(), {"__complete", "--"});
        std::string answer = Output(words);
        std::replace(answer.begin(), answer.end(), '\n', '|');
        return answer;
    }
};

TEST_F(CompletionOfWords, FollowsTheCommandAndTheFile) {
    ImageParts parts;  // with a name that would be two lines
    parts.AddSchema({"Kind", "Kind=a", "Due", "Done", "a\nb"}, {"Lbig;small", "Lx", "D", "B", "t"});
    Write("t.pdb", parts);
    for (const auto& [why, words, answer] : kCompletions) EXPECT_EQ(answer, Answer(words)) << why;

    parts.lockWord = 1;
    Write("locked.pdb", parts);
    Write("damaged.pdb", parts.Build().substr(0, 200));
    const auto before = Files();
    for (const char* file : {"locked.pdb", "damaged.pdb", "missing.pdb", "."}) {
        EXPECT_EQ("words|", Answer({"sort", file, ""})) << file;
    }
    EXPECT_EQ(before, Files());
}

TEST(BashWords, WhatIsPutInGivesTheWordAgain) {
    const std::tuple<const char*, std::string, std::size_t, char> kCases[] = {
        {"qly a\\ b", "a b", 0, 0},           {"qly 'a \"b", "a \"b", 0, '\''},
        {"qly \"a\\\"\\b", "a\"\\b", 0, '"'}, {"qly a=b:c", "a=b:c", 4, 0},
        {"qly a\\=b", "a=b", 0, 0},           {"qly --map=\"Last N", "--map=Last N", 6, '"'},
        {"qly \"a=b\"c", "a=bc", 0, 0},       {"qly a\\", "a", 0, 0},
    };
    for (const auto& [line, word, kept, open] : kCases) {
        const BashLine read = ReadBashLine(line, " \t\n\"'><=;|&(:");
        EXPECT_EQ((std::vector<std::string>{"qly", word}), read.words) << line;
        EXPECT_EQ(kept, read.kept) << line;
        EXPECT_EQ(open, read.quote) << line;
    }
    for (const char quote : {'\0', '\'', '"'}) {
        std::string all;
        for (char c = ' '; c <= '~'; ++c) all += c;
        const std::string begun = quote != 0 ? std::string("qly ") + quote : "qly ";
        EXPECT_EQ(all, ReadBashLine(begun + QuoteForBash(all, quote), "").words.at(1));
    }
}

}  // namespace
}  // namespace quillary
