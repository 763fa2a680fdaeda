// A document whose disk refuses: what stays in memory, what the file holds, what the next save does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/FaultyFiles.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";

std::string Original() {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    for (int i = 0; i < 40; ++i) parts.Add(2, {"record " + std::to_string(i) + std::string(60, 'x')});
    return parts.Build();
}

std::vector<std::vector<std::string>> Reopened(FaultyFiles& disk) {
    ScriptedQuestions questions;
    CQuillaryDoc doc(disk);
    EXPECT_TRUE(doc.OpenDatabase(kPath, OpenMode::Edit, questions));
    return ShownTexts(doc);
}

// The flush on a thread of its own, as in the window, and before SaveDatabase returns, as in commands.
class DocumentSaving : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Flush, DocumentSaving, testing::Bool(),
                         [](const auto& background) { return background.param ? "InBackground" : "AtOnce"; });

TEST_P(DocumentSaving, TheNextSaveSucceedsWhateverFailedBefore) {
    for (const auto which : {FaultyFiles::Fail::ThisCall, FaultyFiles::Fail::ThisCallAndLater}) {
        for (int failAt = 1;; ++failAt) {
            SCOPED_TRACE(failAt);
            FaultyFiles disk;
            disk.Put(kPath, Original());
            ScriptedQuestions questions;
            CQuillaryDoc doc(disk);
            ASSERT_TRUE(doc.OpenDatabase(kPath, OpenMode::Edit, questions));
            doc.FlushInBackground(GetParam());
            const auto before = doc.Snapshot();
            Failure failure;
            // Removing makes the file shorter, the long record longer again.
            doc.RemoveRecord(0);
            doc.ReplaceRecord(3, Entries({std::string(2000, 'y')}));
            disk.FailAt(failAt, which);
            const bool saved = doc.SaveDatabase(failure) && doc.FinishSave(failure);
            const bool ended = disk.Calls() < failAt;
            disk.FailAt(0, which);
            EXPECT_EQ(!saved, doc.IsModified());
            const auto texts = ShownTexts(doc);
            if (failAt % 2 == 0 && !saved) {
                doc.Restore(*before);
                EXPECT_TRUE(doc.IsModified() || Reopened(disk) == ShownTexts(doc));
                doc.RemoveRecord(0);
                doc.ReplaceRecord(3, Entries({std::string(2000, 'y')}));
            }
            EXPECT_TRUE(doc.SaveDatabase(failure) && doc.FinishSave(failure)) << failure.text;
            EXPECT_EQ(texts, Reopened(disk));
            if (ended || HasFailure()) break;
        }
    }
}

TEST_P(DocumentSaving, SavingElsewhereIsTheWayOut) {
    FaultyFiles disk;
    disk.Put(kPath, Original());
    ScriptedQuestions questions;
    CQuillaryDoc doc(disk);
    ASSERT_TRUE(doc.OpenDatabase(kPath, OpenMode::Edit, questions));
    doc.FlushInBackground(GetParam());
    Failure failure;
    int calls = 0;
    doc.RemoveRecord(0);
    {
        FaultyFiles counted;
        counted.Put(kPath, Original());
        CQuillaryDoc twin(counted);
        ASSERT_TRUE(twin.OpenDatabase(kPath, OpenMode::Edit, questions));
        twin.RemoveRecord(0);
        counted.FailAt(0, FaultyFiles::Fail::ThisCall);
        ASSERT_TRUE(twin.SaveDatabase(failure));
        calls = counted.Calls();
    }
    disk.FailAt(calls - 1, FaultyFiles::Fail::ThisCall);  // the flush; removing the recovery file comes last
    EXPECT_FALSE(doc.SaveDatabase(failure) && doc.FinishSave(failure));
    EXPECT_EQ(Message::WriteFailed, failure.message);
    disk.FailAt(0, FaultyFiles::Fail::ThisCall);
    ASSERT_TRUE(doc.SaveDatabaseAs("/other.pdb", "Other", failure)) << failure.text;
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(Original(), disk.BytesOf(kPath));
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
