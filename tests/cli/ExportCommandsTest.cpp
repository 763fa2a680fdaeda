// The commands that qly hands to its helper program: what they refuse, and that nothing is lost on the way there. What
// they export is tests/stores' matter.
#include <filesystem>

#include "db/Utf.h"
#include "integration/Contact.h"
#include "tests/cli/Qly.h"

namespace quillary {
namespace {

class ExportCommands : public QlyTest {
  protected:
    ExportCommands() {
        ImageParts parts;
        parts.AddSchema({"Name", "Day", "At"}, {"t", "D", "d"});
        Write("empty.pdb", parts);
        parts.Add(2, {"a", "40000", "3600"});
        parts.Add(2, {"b", "", ""});
        parts.Add(3, {"hidden", "40000"});
        Write("t.pdb", parts);
    }
    const std::string m_folder = PathOf(".qly/quillary/");
};

TEST_F(ExportCommands, Calendar) {
    const std::string two = "2 appointments in " + m_folder + "calendar\n";
    const std::string none = "No records are shown, so nothing was exported.\n";
    const std::string dateless = "1 records have no date.";
    Expect({"calendar"}, {{"no date", {"t.pdb"}, 2, "needs a --date"},
                          {"a file that is not there", {"x.pdb", "--date", "Day"}, 1, "Error opening requested file."},
                          {"an unknown field", {"t.pdb", "--date", "Day", "--field", "X"}, 1, "has \"Name\", \"Day\""},
                          {"a day from a text", {"t.pdb", "--date", "Name"}, 1, "\"Name\" holds no dates."},
                          {"a time from a day", {"t.pdb", "--date", "Day", "--end", "Day"}, 1, "holds no times."},
                          {"a record without a date", {"t.pdb", "--date", "Day", "--start", "At"}, 0, dateless, two},
                          {"no record at all", {"empty.pdb", "--date", "Day"}, 0, "", none}});
    // Something else has the name of one item.
    const auto taken = std::filesystem::directory_iterator(m_folder + "calendar")->path();
    std::filesystem::remove(taken);
    std::filesystem::create_directory(taken);
    const QlyResult partly = Qly({"calendar", "t.pdb", "--date", "Day", "--start", "At"});
    EXPECT_EQ("1 1 appointment in " + m_folder + "calendar\n", std::to_string(partly.status) + " " + partly.out);
    EXPECT_THAT(partly.err, HasSubstr("qly: 1 record could not be exported.\n"));
}

TEST_F(ExportCommands, ContactsAndTheirPassword) {
    const std::string two = "2 contacts in " + m_folder + "contacts\n";
    const QlySurroundings noFolder{.environment = {{"XDG_DATA_HOME", PathOf("t.pdb")}}};
    Expect({"contacts", "t.pdb"},
           {{"nothing mapped", {}, 2, "You must select at least one field to export to contacts."},
            {"no mapping", {"--map", "Last Name"}, 2, "\"Last Name\" is no PROPERTY=FIELD."},
            {"an unknown property", {"--map", "Notse=Name"}, 2, "no \"Notse\". Did you mean \"Notes\"?"},
            {"one twice", {"--map", "E-Mail=Name", "--map", "E-Mail=At"}, 2, "\"E-Mail\" is given twice."},
            {"an unknown field", {"--map", "E-Mail=name=x"}, 1, "There is no field \"name=x\"."},
            {"no store", {"--map", "E-Mail=Name"}, 1, "Outlook! (the folder /", "", noFolder},
            {"the shown ones", {"--map", "E-Mail=Name", "--map", "Birthday=Day"}, 0, "", two}});
    Write("secret", "open sesame\n");
    ASSERT_EQ("", Output({"password", "t.pdb", "set", "--new-password-file", "secret"}));
    const QlySurroundings known{.environment = {{"QLY_PASSWORD", "open sesame"}}};
    const QlySurroundings full{.environment = known.environment, .output = "/dev/full"};
    Expect({"contacts", "t.pdb", "--map", "E-Mail=Name"},
           {{"no password", {}, 1, "does not match the database password"},
            {"from a file", {"--password-file", "secret"}, 0, "", two},
            {"from the environment", {}, 0, "", two, known},
            {"nothing can be written", {}, 1, "The output cannot be written", "", full}});
}

TEST_F(ExportCommands, AnInstallationWithoutTheHelperSaysSoAndHasItsHelp) {
    const std::string lone = PathOf("qly");
    std::filesystem::copy_file(QLY_PROGRAM, lone);
    const auto run = [&](const std::string& arguments) {
        const int state = std::system((lone + " " + arguments + " >" + PathOf("out") + " 2>&1").c_str());
        return std::to_string(WEXITSTATUS(state)) + " " + Read("out");
    };
    EXPECT_THAT(run("contacts t.pdb --map E-Mail=Name"), HasSubstr("1 qly: The helper program quillary-services, "));
    EXPECT_THAT(run("contacts --maps x"), HasSubstr("2 qly: There is no option \"--maps\" here."));
    const std::string help = run("help contacts");
    for (const ContactPropertyInfo& row : kContactPropertyTable) {
        std::string name = WideToUtf8(row.label);
        if (name.ends_with(':')) name.pop_back();
        EXPECT_TRUE(help.find(name + ",") != help.npos || help.find(name + "\n") != help.npos) << name;
    }
}

}  // namespace
}  // namespace quillary
