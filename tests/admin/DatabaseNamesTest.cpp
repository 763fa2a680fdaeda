// From a typed name to a new file, or to another name for one.
#include <gtest/gtest.h>

#include "admin/NewDatabase.h"
#include "admin/RenameDatabase.h"
#include "tests/fakes/MemoryFiles.h"
#include "tests/fakes/TestLocations.h"
#include "tests/fakes/TestSettings.h"

namespace quillary {
namespace {

class FolderFiles : public MemoryFiles {
  public:
    std::vector<Path> made;
    bool refuses = false;

    bool MakeFolder(const Path& folder, FileError& error) override {
        made.push_back(folder);
        error = {FileError::Kind::Denied, "Permission denied"};
        return !refuses;
    }
};

class NewDatabaseTest : public ::testing::Test {
  protected:
    FolderFiles files;
    TestLocations locations = Handheld(1);
    TestSettings settings;
    NewDatabase database{{files, locations, settings}};
    std::vector<Field> fields = std::vector<Field>(1, Field{"Name", FieldType::Text, {}});
    Failure failure;
    Path path;
};

TEST_F(NewDatabaseTest, RefusesWhatCannotBeAName) {
    files.contents["\\My Documents\\Taken.pdb"] = "any file";
    const struct {
        std::u16string typed;
        std::string_view text;  // the end of the message
    } kRows[] = {
        {u"   ", "You must provide a database name before continuing."},
        {u"a/b", "\"a/b\" cannot be the name of a database file."},
        {u" . ", "\".\" cannot be the name of a database file."},
        {u"a\u0085", "cannot be the name of a database file."},
        {u"\u0160\u0142od", "in the database's name: \u0142"},
        {u"\u00FF", "in the database's name: \u00FF"},
        {std::u16string(29, u'a'), "is longer than 28 characters."},
        {u"  " + std::u16string(28, u'a') + u"  ", ""},
        {u"Taken", "already exists at this location."},
        {u" Taken.pdb", "already exists at this location."},
    };
    for (const auto& row : kRows) {
        failure = {};
        EXPECT_EQ(database.SetName(row.typed, failure), row.text.empty()) << row.text;
        EXPECT_TRUE(failure.text.ends_with(row.text)) << failure.text;
    }
}

TEST_F(NewDatabaseTest, TheFileLiesWhereThePreferenceSaysByThen) {
    for (const auto& [location, folder] : {std::pair{-1, "\\My Documents\\"}, std::pair{0, "\\My Documents\\"},
                                           std::pair{2, "\\My Documents\\"}, std::pair{1, "\\Card 1\\"}}) {
        settings.numbers["LocationNdx"] = location;
        EXPECT_EQ(database.PathFor(u"", failure), folder);
    }
    EXPECT_EQ(database.PathFor(u" T\u00E9", failure), "\\Card 1\\T\u00E9.pdb");
    ASSERT_TRUE(database.SetName(u" T\u00E9 ", failure));
    ASSERT_TRUE(database.Write(fields, path, failure)) << failure.text;
    EXPECT_EQ(path, "\\Card 1\\T\u00E9.pdb");
    EXPECT_TRUE(files.made.empty()) << "a card that was taken out must not come back as a folder";
    EXPECT_EQ(files.contents[path.string()].substr(0, 3), std::string("T\xE9\0", 3));
    EXPECT_FALSE(database.Write(fields, path, failure));
    EXPECT_EQ(failure.message, Message::NameExists) << "made by another program meanwhile";
    locations.cards.clear();
    files.refuses = true;
    EXPECT_FALSE(database.Write(fields, path, failure));
    EXPECT_EQ(failure.text, "The folder \\My Documents\\ could not be made (Permission denied).");
    files.refuses = false;
    ASSERT_TRUE(database.Write(fields, path, failure)) << failure.text;
    EXPECT_EQ(path, "\\My Documents\\T\u00E9.pdb");
    EXPECT_EQ(files.made, std::vector<Path>(2, "\\My Documents\\"));
}

TEST(RenameDatabase, KeepsTheEndingAndTakesNoOthersPlace) {
    const struct {
        const char* name;
        const char* typed;
        const char* renamed;  // empty: refused
        Message why;
    } kRows[] = {
        {"the file keeps its own ending", "Friends", "/lists/Friends.PDB", Message::None},
        {"blanks around a name are no part of it", "  Friends ", "/lists/Friends.PDB", Message::None},
        {"an ending that was typed is the ending", "Friends.pdb", "/lists/Friends.pdb", Message::None},
        {"another ending is a part of the name", "Friends.2026", "/lists/Friends.2026.PDB", Message::None},
        {"its own name", "People", "/lists/People.PDB", Message::None},
        {"nothing", " ", "", Message::NameMissing},
        {"the folder above", "..", "", Message::ImpossibleName},
        {"a file elsewhere", "../Friends", "", Message::ImpossibleName},
        {"a taken name", "Others", "", Message::NameExists},
    };
    for (const auto& row : kRows) {
        MemoryFiles files;
        files.contents = {{"/lists/People.PDB", "people"}, {"/lists/Others.PDB", "others"}};
        Path renamed;
        Failure failure;
        const bool done = RenameDatabase(files, "/lists/People.PDB", row.typed, renamed, failure);
        EXPECT_EQ(failure.message, row.why) << row.name;
        EXPECT_EQ(done ? renamed.string() : "", row.renamed) << row.name;
        EXPECT_EQ(files.contents[done ? row.renamed : "/lists/People.PDB"], "people") << row.name;
        EXPECT_EQ(files.contents["/lists/Others.PDB"], "others") << row.name;
    }
}

struct CopyFiles : MemoryFiles {
    bool isUnreadable = false;
    bool ReadRecovery(const Path& path, Image& image, FileError& error) override {
        error.kind = FileError::Kind::Denied;
        return !isUnreadable && MemoryFiles::ReadRecovery(path, image, error);
    }
};

TEST(RenameDatabase, ADatabaseWithARecoveryCopyKeepsTheNameByWhichItIsFound) {
    CopyFiles files;
    files.contents = {{"/People.pdb", "torn"}, {"/People.pdb.recovery", "copy"}};
    Path renamed;
    Failure failure;
    for (const bool isUnreadable : {false, true}) {
        files.isUnreadable = isUnreadable;
        EXPECT_FALSE(RenameDatabase(files, "/People.pdb", "Friends", renamed, failure));
        EXPECT_EQ(failure.message, Message::RecoveryCopyKeepsName);
        EXPECT_EQ(files.contents["/People.pdb"], "torn");
    }
    EXPECT_FALSE(RenameDatabase(files, "/Gone.pdb", "Friends", renamed, failure));
    EXPECT_EQ(failure.message, Message::NotRenamed);
}

}  // namespace
}  // namespace quillary
