// Another name for a database's file.
#include "admin/RenameDatabase.h"

#include <gtest/gtest.h>

#include "tests/fakes/MemoryFiles.h"

namespace quillary {
namespace {

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

TEST(RenameDatabase, ADatabaseWithARecoveryCopyKeepsTheNameByWhichItIsFound) {
    MemoryFiles files;
    files.contents = {{"/People.pdb", "torn"}, {"/People.pdb.recovery", "copy"}};
    Path renamed;
    Failure failure;
    EXPECT_FALSE(RenameDatabase(files, "/People.pdb", "Friends", renamed, failure));
    EXPECT_EQ(failure.message, Message::RecoveryCopyKeepsName);
    EXPECT_EQ(files.contents["/People.pdb"], "torn");
    EXPECT_FALSE(RenameDatabase(files, "/Gone.pdb", "Friends", renamed, failure));
    EXPECT_EQ(failure.message, Message::NotRenamed);
}

}  // namespace
}  // namespace quillary
