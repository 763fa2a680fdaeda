#include "tests/cli/Qly.h"

namespace quillary {

using TextAndPassword = QlyTest;

TEST_F(TextAndPassword, AreSetLockedAndAskedFor) {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"}, {}, "Caf\xE9\r\nnote", "494665641");  // locked by "a"
    Write("t.pdb", parts);
    for (const char* password : {"a", "b", "", "\xFF"})
        Write(std::string("is ") + password, password + std::string("\nx"));
    const std::string lock = "--lock-password-file", file = "--new-password-file";
    const QlySurroundings text = {"é \n\nz\r\n\r\n", {}, {}};
    const std::string wrong = "The password you have entered does not match the database password.";
    Expect({"text", "t.pdb"},
           {{"can be read", {}, 0, "", "Café\r\nnote\n"},
            {"not set", {"--set", "-"}, 1, "The info text is locked. --unlock", "", text},
            {"nor locked", {"--lock", lock, "is b"}, 1, "locked already"},
            {"a wrong password", {"--unlock", lock, "is "}, 1, "You have entered an incorrect password."},
            {"no password", {"--unlock"}, 2, "need --lock-password-file"},
            {"no lock", {lock, "is a"}, 2, "goes with --lock or --unlock"},
            {"one input for two", {"--set", "-", "--unlock", lock, "-"}, 2, "together", "", text},
            {"left open", {"--set", "-", "--unlock", lock, "is a"}, 0, "", "", text},
            {"all but one line end", {}, 0, "", "é \r\n\r\nz\r\n\n"},
            {"open already", {"--unlock", lock, "is b"}, 0, ""},
            {"no UTF-8", {"--set", "is \xFF"}, 1, "is no UTF-8."},
            {"what no text holds", {"--set", "-"}, 1, "the info text: ж U+0001", "", {"ж\x01", {}, {}}},
            {"locks nothing", {"--set", "-", "--lock", lock, "is "}, 0, "", "", {"\xEF\xBB\xBFtwo", {}, {}}},
            {"with a new text", {"--set", "-", "--lock", lock, "is a"}, 0, "", "", {"one\n", {}, {}}}});
    EXPECT_THAT(Read("t.pdb"), HasSubstr(Entries({"one", "494665641", ""})));
    Expect({"password", "t.pdb"},
           {{"an unknown word", {"sett", file, "is a"}, 2, "\"set\"?"},
            {"one too many", {"clear", file, "is a"}, 2, "clear takes no"},
            {"one input for two", {"set", file, "-", "--password-file", "-"}, 2, "both"},
            {"no UTF-8", {"set", file, "is \xFF"}, 1, "is no UTF-8 text."},
            {"none before", {"set", file, "is a", "--password-file", "no"}, 0, ""},
            {"the old one is asked for", {"clear"}, 1, wrong, "", {"", {{"QLY_PASSWORD", "b"}}, {}}},
            {"another one", {"set", file, "-"}, 0, "", "", {"b\r\n", {{"QLY_PASSWORD", "a"}}, {}}},
            {"an empty one clears", {"set", file, "is ", "--password-file", "is b"}, 0, ""},
            {"nothing to clear", {"clear"}, 0, ""}});
    EXPECT_EQ(false, JsonOf({"info", "t.pdb", "--json"})["locked"]);
}

}  // namespace quillary
