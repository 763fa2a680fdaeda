// A document whose disk refuses: what stays in memory, what the file holds, what the next save does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/FaultyFiles.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using Texts = std::vector<std::vector<std::string>>;

constexpr const char* kPath = "/db.pdb";

std::string Original() {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    for (int i = 0; i < 40; ++i) parts.Add(2, {"record " + std::to_string(i) + std::string(60, 'x')});
    return parts.Build();
}

// The original, open for editing, on a disk that will refuse call `failAt` of the save that follows.
struct OpenTable {
    explicit OpenTable(bool flushInBackground) {
        disk.Put(kPath, Original());
        EXPECT_TRUE(doc.OpenDatabase(kPath, OpenMode::Edit, questions));
        doc.FlushInBackground(flushInBackground);
    }
    // Removing makes the file shorter, the long record longer again.
    void Change() {
        doc.RemoveRecord(0);
        doc.ReplaceRecord(3, Entries({std::string(2000, 'y')}));
    }
    bool Save() { return doc.SaveDatabase(failure) && doc.FinishSave(failure); }
    /// Runs `save` with its call `failAt` refused. False when it made fewer calls.
    template <class Step>
    bool Refusing(int failAt, FaultyFiles::Fail which, Step save) {
        disk.FailAt(failAt, which);
        save();
        const bool refused = disk.Calls() >= failAt;
        disk.FailAt(0, which);
        return refused;
    }
    Texts Reopened() {
        CQuillaryDoc again(disk);
        EXPECT_TRUE(again.OpenDatabase(kPath, OpenMode::Edit, questions));
        return ShownTexts(again);
    }

    FaultyFiles disk;
    ScriptedQuestions questions;
    CQuillaryDoc doc{disk};
    Failure failure;
};

// The flush on a thread of its own, as in the window, and before SaveDatabase returns, as in commands.
class DocumentSaving : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Flush, DocumentSaving, testing::Bool(),
                         [](const auto& background) { return background.param ? "InBackground" : "AtOnce"; });

constexpr FaultyFiles::Fail kWays[] = {FaultyFiles::Fail::ThisCall, FaultyFiles::Fail::ThisCallAndLater};

TEST_P(DocumentSaving, TheNextSaveSucceedsWhateverFailedBefore) {
    for (const auto which : kWays) {
        bool refused = true;
        for (int failAt = 1; refused && !HasFailure(); ++failAt) {
            SCOPED_TRACE(failAt);
            OpenTable table(GetParam());
            const auto before = table.doc.Snapshot();
            table.Change();
            bool saved = false;
            refused = table.Refusing(failAt, which, [&] { saved = table.Save(); });
            EXPECT_EQ(!saved, table.doc.IsModified());
            const auto texts = ShownTexts(table.doc);
            if (failAt % 2 == 0 && !saved) {
                table.doc.Restore(*before);
                EXPECT_TRUE(table.doc.IsModified() || table.Reopened() == ShownTexts(table.doc));
                table.Change();
            }
            EXPECT_TRUE(table.Save()) << table.failure.text;
            EXPECT_EQ(texts, table.Reopened());
        }
    }
}

TEST_P(DocumentSaving, ClosingOverAFailureLeavesTheOldOrTheNewTable) {
    for (const auto which : kWays) {
        bool refused = true;
        for (int failAt = 1; refused && !HasFailure(); ++failAt) {
            SCOPED_TRACE(failAt);
            OpenTable table(GetParam());
            const Texts before = ShownTexts(table.doc);
            table.Change();
            const Texts after = ShownTexts(table.doc);
            refused = table.Refusing(failAt, which, [&] {
                (void)table.doc.SaveDatabase(table.failure);
                table.doc.Close();
            });
            EXPECT_FALSE(table.doc.IsOpen());
            EXPECT_THAT(table.Reopened(), refused ? testing::AnyOf(before, after) : testing::AnyOf(after, after));
            EXPECT_FALSE(table.disk.BytesOf(table.disk.RecoveryPath(kPath))) << "settled by opening it again";
        }
    }
}

TEST_P(DocumentSaving, SavingElsewhereIsTheWayOut) {
    OpenTable counted(false);
    counted.Change();
    counted.disk.FailAt(0, FaultyFiles::Fail::ThisCall);
    ASSERT_TRUE(counted.Save());
    const int flush = counted.disk.Calls() - 1;  // removing the recovery file comes last

    OpenTable table(GetParam());
    table.Change();
    EXPECT_TRUE(table.Refusing(flush, FaultyFiles::Fail::ThisCall, [&] { EXPECT_FALSE(table.Save()); }));
    EXPECT_EQ(Message::WriteFailed, table.failure.message);
    ASSERT_TRUE(table.doc.SaveDatabaseAs("/other.pdb", "Other", table.failure)) << table.failure.text;
    EXPECT_FALSE(table.doc.IsModified());
    EXPECT_EQ(Original(), table.disk.BytesOf(kPath));
}

struct ReadOnlyFiles : MemoryFiles {
    bool CanWrite(const Path&) override { return false; }
};

TEST(DocumentReadOnly, IsSaidAndKept) {
    ReadOnlyFiles files;
    files.contents[kPath] = Original();
    ScriptedQuestions questions;
    CQuillaryDoc doc(files);
    ASSERT_TRUE(doc.OpenDatabase(kPath, OpenMode::Edit, questions));
    EXPECT_TRUE(doc.IsReadOnly());
    doc.SetStyle(DateStyle::Long);
    Failure failure;
    EXPECT_FALSE(doc.SaveDatabase(failure));
    EXPECT_EQ(Message::ReadOnly, failure.message);
    EXPECT_EQ(Original(), files.contents[kPath]);
    EXPECT_FALSE(doc.OpenDatabase(kPath, OpenMode::EditExclusive, questions));
    EXPECT_THAT(questions.told, testing::ElementsAre(Message::ReadOnly));
}

}  // namespace
}  // namespace quillary
