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
        parts.AddSchema({"Name", "Day", "At", "No"}, {"t", "D", "d", "F"});
        parts.Add(2, {"a", "40000", "3600", "1"});
        parts.Add(2, {"b", "", "", "2"});
        parts.Add(3, {"hidden", "40000"});
        Write("t.pdb", parts);
        parts.records.pop_back();
        parts.records.pop_back();
        parts.records.pop_back();
        Write("empty.pdb", parts);
    }
};

TEST_F(ExportCommands, Calendar) {
    const std::string place = " in " + PathOf(".qly/quillary/calendar") + "\n";
    Expect({"calendar"},
           {
               {"no date", {"t.pdb"}, 2, "needs a --date"},
               {"two dates", {"t.pdb", "--date", "Day", "--date", "Day"}, 2, "given twice"},
               {"an unknown option", {"t.pdb", "--dates", "Day"}, 2, "Did you mean \"--date\"?"},
               {"no file", {"--date", "Day"}, 2, "Too few words"},
               {"a file that is not there", {"x.pdb", "--date", "Day"}, 1, "Error opening requested file."},
               {"an unknown field", {"t.pdb", "--date", "Days"}, 1, "The database has \"Name\", \"Day\""},
               {"an unknown field of the text", {"t.pdb", "--date", "Day", "--field", "X"}, 1, "no field \"X\""},
               {"a day from a text", {"t.pdb", "--date", "Name"}, 1, "The field \"Name\" holds no dates."},
               {"a time from a day", {"t.pdb", "--date", "Day", "--end", "Day"}, 1, "\"Day\" holds no times."},
               {"a record without a date",
                {"t.pdb", "--date", "Day", "--start", "At", "--field", "Name"},
                0,
                "1 records have no date.",
                "2 appointments" + place},
               {"no record at all",
                {"empty.pdb", "--date", "Day"},
                0,
                "",
                "No records are shown, so nothing was exported.\n"},
           });
    // Something else has the name of one item.
    const Path taken = std::filesystem::directory_iterator(PathOf(".qly/quillary/calendar"))->path();
    std::filesystem::remove(taken);
    std::filesystem::create_directory(taken);
    const QlyResult partly = Qly({"calendar", "t.pdb", "--date", "Day", "--start", "At", "--field", "Name"});
    EXPECT_EQ(1, partly.status);
    EXPECT_EQ("1 appointment" + place, partly.out);
    EXPECT_THAT(partly.err, HasSubstr("qly: 1 record could not be exported.\n"));

    const QlyResult unwritable =
        Qly({"calendar", "t.pdb", "--date", "Day"}, {.environment = {{"XDG_DATA_HOME", PathOf("t.pdb")}}});
    EXPECT_EQ(1, unwritable.status);
    EXPECT_EQ("qly: 1 records have no date.\nqly: Could not log on to Pocket Outlook!\n", unwritable.err);
    EXPECT_EQ("", unwritable.out);
}

TEST_F(ExportCommands, ContactsAndTheirPassword) {
    const std::string place = " in " + PathOf(".qly/quillary/contacts") + "\n";
    Expect(
        {"contacts", "t.pdb"},
        {
            {"nothing mapped", {}, 2, "You must select at least one field to export to contacts."},
            {"no mapping", {"--map", "Last Name"}, 2, "\"Last Name\" is no PROPERTY=FIELD."},
            {"an unknown property", {"--map", "Notse=Name"}, 2, "A contact has no \"Notse\". Did you mean \"Notes\"?"},
            {"one twice", {"--map", "E-Mail=Name", "--map", "E-Mail=No"}, 2, "\"E-Mail\" is given twice."},
            {"an unknown field", {"--map", "E-Mail=name=x"}, 1, "There is no field \"name=x\"."},
            {"both records that are shown",
             {"--map", "E-Mail=Name", "--map", "Birthday=Day"},
             0,
             "",
             "2 contacts" + place},
        });

    Write("secret", "open sesame\n");
    ASSERT_EQ("", Output({"password", "t.pdb", "set", "--new-password-file", "secret"}));
    const std::vector<std::string> kMap = {"--map", "E-Mail=Name"};
    Expect({"contacts", "t.pdb", "--map", "E-Mail=Name"},
           {
               {"no password", {}, 1, "does not match the database password"},
               {"from a file", {"--password-file", "secret"}, 0, "", "2 contacts" + place},
               {"from the environment",
                {},
                0,
                "",
                "2 contacts" + place,
                {.environment = {{"QLY_PASSWORD", "open sesame"}}}},
               {"nobody reads", {"--password-file", "secret"}, 0, "", "", {.output = "|"}},
               {"nothing can be written",
                {"--password-file", "secret"},
                1,
                "The output cannot be written",
                "",
                {.output = "/dev/full"}},
           });
}

// An installation without the helper still has its help, and says what is missing.
TEST_F(ExportCommands, WithoutTheHelper) {
    const std::string lone = PathOf("qly");
    std::filesystem::copy_file(QLY_PROGRAM, lone);
    const auto run = [&](const std::string& arguments) {
        const int state = std::system((lone + " " + arguments + " >" + PathOf("out") + " 2>&1").c_str());
        return std::to_string(WEXITSTATUS(state)) + " " + Read("out");
    };
    EXPECT_THAT(run("contacts " + PathOf("t.pdb") + " --map E-Mail=Name"),
                HasSubstr("1 qly: The helper program quillary-services, which this command needs, is not installed."));
    EXPECT_THAT(run("help calendar"), HasSubstr("0 Usage: qly calendar FILE --date FIELD"));
    EXPECT_THAT(run("contacts --maps x"), HasSubstr("2 qly: There is no option \"--maps\" here."));
}

TEST_F(ExportCommands, TheHelpNamesEveryProperty) {
    const std::string help = Output({"help", "contacts"});
    for (const ContactPropertyInfo& row : kContactPropertyTable) {
        std::string name = WideToUtf8(row.label);
        if (name.ends_with(':')) name.pop_back();
        EXPECT_TRUE(help.find(name + ",") != help.npos || help.find(name + "\n") != help.npos) << name;
    }
}

}  // namespace

}  // namespace quillary
