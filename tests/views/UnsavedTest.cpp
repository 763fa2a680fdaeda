// Changes that cannot simply be saved: another program wrote the file, or the disk refuses.
#include "platform/posix/PosixFileAccess.h"
#include "tests/posix/TestFolder.h"
#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

constexpr char kChangedLeaving[] =
    "Another program has changed this database since it was read. It was not overwritten. "
    "The changes to \"People\" are not saved.";

class UnsavedTest : public WindowTest {
  protected:
    void ChooseLongDates() {
        user.ExpectDialog(149, [](CQuillaryDialog& page) {
            page.Control<QCheckBox>(1003)->setChecked(true);
            Press(page, kOkButton);
            QTest::qWait(0);                      // a reload ends it
            if (page.isVisible()) page.reject();  // it waits, as nothing was saved
        });
    }
    /// The file as another program wrote it: with a record less.
    std::string Other() {
        ImageParts parts = PeopleParts();
        parts.records.pop_back();
        return parts.Build();
    }
    bool HoldsLongDates(const Path& path) { return Stored(path).Style() == DateStyle::Long; }
    /// A change in memory that no save has written.
    void Change(CQuillaryDoc* doc) {
        doc->SetStyle(DateStyle::Long);
        app.Frame().DocumentChanged();
    }
    bool Close() {
        app.Frame().close();
        QTest::qWait(0);
        return !app.Frame().isVisible();
    }
};

TEST_F(UnsavedTest, AnotherProgramsChangeIsOverwrittenOnRequestOrReloadedWhereTheUserWas) {
    for (const char* const answer : {"Overwrite", "Reload"}) {
        Open(PeopleParts().Build());
        QTest::keyClick(View(), Qt::Key_Down);
        files.contents["/people.pdb"] = Other();
        ChooseLongDates();
        user.ExpectMessage(kChangedByAnother, answer);
        ChooseMenu("Tools", "Options...");
        QTest::qWait(0);
        const bool reloads = *answer == 'R';
        EXPECT_EQ(Counter(), reloads ? "2 of 2" : "2 of 3");
        EXPECT_EQ(Cell(0, 2), reloads ? "12/07/2003" : "December 07, 2003");
        EXPECT_EQ(Title(), "People");
        app.CloseDocument();
        EXPECT_EQ(HoldsLongDates("/people.pdb"), !reloads);
    }
    EXPECT_EQ(files.contents["/people.pdb"], Other());
}

TEST_F(UnsavedTest, AChangeOnDiskShowsByItselfWhenNothingIsUnsaved) {
    Open(PeopleParts().Build());
    const CQuillaryView* view = View();
    EXPECT_EQ(fileWatcher.watched, std::vector<Path>{"/"});
    QTest::keyClick(View(), Qt::Key_Down);
    fileWatcher.TellChange();
    QTest::qWait(150);
    EXPECT_EQ(View(), view) << "another file in the folder";
    files.contents["/people.pdb"] = Other();
    InDialog(149, "Tools", "Options...", [this](CQuillaryDialog& page) {
        fileWatcher.TellChange();
        QTest::qWait(150);
        EXPECT_TRUE(page.isVisible());
        QTest::keyClick(page.Control<QWidget>(1003), Qt::Key_Escape);
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return Counter() == "2 of 2"; })) << "after the dialog";
}

TEST_F(UnsavedTest, TheFolderBehindALinkIsWatchedToo) {
    const TestFolder folder;
    const Path file = folder.Write("real/people.pdb", PeopleParts().Build());
    std::filesystem::create_symlink(file, folder / "people.pdb");
    PosixFileAccess disk;
    CQuillaryApp onDisk(DesktopOn(disk));
    ASSERT_TRUE(onDisk.OpenDocumentFile(folder / "people.pdb"));
    EXPECT_EQ(fileWatcher.watched, (std::vector<Path>{folder.Root(), file.parent_path()}));
}

TEST_F(UnsavedTest, AReadOnlyDatabaseFollowsItsFileWhateverItsFieldsBecome) {
    files.writable = false;
    Open(PeopleParts().Build())->SetFieldWidth(0, 99);  // in memory only
    View()->setCurrentIndex(View()->model()->index(1, 3));
    ImageParts parts;
    parts.AddSchema({"Name"}, {"T"});
    for (const char* name : {"Ann", "Ben"}) parts.Add(2, {name});
    files.contents["/people.pdb"] = parts.Build();
    fileWatcher.TellChange();
    EXPECT_TRUE(QTest::qWaitFor([this] { return Counter() == "2 of 2"; }));
}

TEST_F(UnsavedTest, WhatIsShownIsKeptWhenTheFileBecomesUnreadable) {
    Open(PeopleParts().Build());
    for (const std::string& now : {std::string("noise"), Other(), std::string("noise again")}) {  // while it is copied
        files.contents["/people.pdb"] = now;
        fileWatcher.TellChange();
        EXPECT_TRUE(QTest::qWaitFor([&] { return now[0] == 'n' ? Title() == "People*" : Counter() == "1 of 2"; }));
    }
    user.ExpectMessage(kChangedLeaving, "Overwrite");
    EXPECT_TRUE(Close());
    app.CloseDocument();
    EXPECT_EQ(Open(files.contents["/people.pdb"])->Shown().size(), 2U);
}

TEST_F(UnsavedTest, NeitherAChangeOnDiskNorAReloadThatFailsTakesWhatIsUnsavedAway) {
    Change(Open(PeopleParts().Build()));
    for (const std::string& now : {Other(), std::string("noise")}) {
        files.contents["/people.pdb"] = now;
        fileWatcher.TellChange();
        QTest::qWait(150);
        EXPECT_EQ(Title(), "People*");
    }
    user.ExpectMessage(kChangedByAnother, "Reload");
    user.ExpectMessage("Invalid database file.");
    QTest::keyClick(View(), Qt::Key_S, Qt::ControlModifier);
    QTest::qWait(0);
    EXPECT_EQ(Title() + Counter(), "People*1 of 3");
    user.ExpectMessage(kChangedLeaving, "Discard the Changes");
    EXPECT_TRUE(Close());
    EXPECT_EQ(CloseAndReadFile(), "noise");
}

TEST_F(UnsavedTest, OptionsThatCannotBeSavedGoBack) {
    const std::string before = PeopleParts().Build();
    const CQuillaryDoc* doc = Open(before);
    for (const bool isFull : {true, false}) {
        files.full = isFull ? "/people.pdb" : "";
        if (!isFull) files.contents["/people.pdb"] += "x";
        ChooseLongDates();
        user.ExpectMessage(isFull ? kDiskFull : kChangedByAnother, isFull ? "OK" : "Cancel");
        ChooseMenu("Tools", "Options...");
        EXPECT_EQ(Cell(0, 2), "12/07/2003");
        EXPECT_FALSE(doc->IsModified());
        EXPECT_EQ(Title(), "People");
    }
    EXPECT_EQ(CloseAndReadFile(), before + "x");
}

TEST_F(UnsavedTest, RecordsOfOtherProgramsAreLostOnlyWithTheUsersWord) {
    ImageParts parts = PeopleParts();
    parts.Add(9, {"not ours"});
    const std::string before = parts.Build();
    files.contents["/people (copy).pdb"] = "taken";
    Open(before);
    for (const char* const answer : {"Cancel", "Save a Copy First", ""}) {  // asked once
        ChooseLongDates();
        if (*answer) {
            user.ExpectMessage(
                "Of the records in this file, 1 would not come back when it is written, being of other programs or "
                "kinds.",
                answer);
        }
        ChooseMenu("Tools", "Options...");
        EXPECT_EQ(files.contents["/people.pdb"] == before, *answer == 'C');
    }
    EXPECT_EQ(files.contents["/people (copy).pdb"], "taken");
    EXPECT_EQ(files.contents["/people (copy 2).pdb"], before);
}

TEST_F(UnsavedTest, SavingElsewhereLeavesTheOthersFileAlone) {
    Open(PeopleParts().Build());
    files.contents["/people.pdb"] = Other();
    files.contents["/taken.pdb"] = "taken";
    ChooseLongDates();
    user.ExpectMessage(kChangedByAnother, "Save Elsewhere...");
    user.ExpectFileChooser("/taken.pdb");
    user.ExpectMessage("A database with this name already exists at this location.");
    user.ExpectFileChooser(u"/\u017b.pdb"_qs);
    user.ExpectMessage(u"These characters cannot be stored in the database's name: \u017b"_qs);
    user.ExpectFileChooser("/new/Friends");
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Title(), "Friends");
    QTest::qWait(0);
    EXPECT_EQ(recentFiles.paths.back(), "/new/Friends.pdb");
    EXPECT_EQ(fileWatcher.watched, std::vector<Path>{"/new"});
    EXPECT_EQ(Cell(0, 2), "December 07, 2003");
    EXPECT_EQ(files.contents["/taken.pdb"], "taken");
    EXPECT_EQ(CloseAndReadFile(), Other());
    EXPECT_TRUE(HoldsLongDates("/new/Friends.pdb"));
}

TEST_F(UnsavedTest, LeavingAsksOnlyWhenSavingFails) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    Change(doc);
    files.full = "/people.pdb";
    user.ExpectMessage(kDiskFullLeaving, "Cancel");
    EXPECT_FALSE(Close());
    EXPECT_EQ(Title(), "People*") << "the change is still there";
    files.contents["/other.pdb"] = Other();
    user.ExpectMessage(kDiskFullLeaving, "Cancel");
    EXPECT_EQ(app.OpenDocumentFile("/other.pdb"), nullptr);
    EXPECT_EQ(doc->FilePath(), "/people.pdb") << "and the database still open";
    files.full.clear();
    EXPECT_TRUE(Close());
    EXPECT_TRUE(HoldsLongDates("/people.pdb"));
}

TEST_F(UnsavedTest, AFileThatIsGoneIsSaidAndCanBeSavedElsewhere) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    files.contents.erase("/people.pdb");
    ChooseLongDates();
    user.ExpectMessage("The file /people.pdb is no longer there.", "Cancel");
    ChooseMenu("Tools", "Options...");
    EXPECT_FALSE(doc->IsModified());
    user.ExpectMessage("The file /people.pdb is no longer there.", "Save Elsewhere...");
    user.ExpectFileChooser("/Friends.pdb");
    EXPECT_TRUE(Close());
    EXPECT_TRUE(files.contents.contains("/Friends.pdb"));
}

}  // namespace
}  // namespace quillary
