#include <QCheckBox>
#include <QTest>

#include "db/Layout.h"
#include "tests/ui/WindowTest.h"
#include "views/QuillaryView.h"

namespace quillary {
namespace {

using OptionsTest = WindowTest;

// The two bytes of the file that the dialog is about: long dates, edit on select.
std::string OptionBytes(const std::string& image) {
    const std::size_t appInfo = 78 + 8 * 7 + 2;  // four schema records and three people
    return {image.at(appInfo + 283), image.at(appInfo + 282)};
}

TEST_F(OptionsTest, StoresBothAndRedrawsTheDates) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_Down);
    user.ExpectDialog(149, [](CQuillaryDialog& page) {
        EXPECT_FALSE(page.Control<QCheckBox>(1003)->isChecked());
        EXPECT_TRUE(page.Control<QCheckBox>(1003)->hasFocus());
        QTest::keyClick(page.Control<QCheckBox>(1003), Qt::Key_Space);
        QTest::keyClick(page.Control<QCheckBox>(1003), Qt::Key_Tab);
        EXPECT_TRUE(page.Control<QCheckBox>(1013)->hasFocus());
        QTest::keyClick(page.Control<QCheckBox>(1013), Qt::Key_Space);
        QTest::keyClick(page.Control<QCheckBox>(1013), Qt::Key_Return);
    });
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Cell(0, 2), "December 07, 2003");
    EXPECT_EQ(Counter(), "2 of 3") << "the selected row stays";
    EXPECT_EQ(app.Frame().focusWidget(), View());
    user.ExpectDialog(149, [](CQuillaryDialog& page) {
        EXPECT_TRUE(page.Control<QCheckBox>(1003)->isChecked());
        Click(page.Control<QCheckBox>(1003));
        Click(page.Control<QWidget>(kOkButton));
    });
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Cell(0, 2), "12/07/2003");
    EXPECT_EQ(OptionBytes(CloseAndReadFile()), std::string("\0\1", 2));
}

TEST_F(OptionsTest, CtrlSWritesWhatIsUnsaved) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    doc->SetStyle(DateStyle::Long);
    app.Frame().DocumentChanged();
    EXPECT_EQ(Title(), "People*");
    QTest::keyClick(View(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(OptionBytes(CloseAndReadFile()), std::string("\1\0", 2));
}

TEST_F(OptionsTest, AFailedSaveTakesTheChangeBack) {
    const std::string before = PeopleParts().Build();
    CQuillaryDoc* doc = Open(before);
    const auto tick = [this](CQuillaryDialog& page) {
        Click(page.Control<QCheckBox>(1003));
        Click(page.Control<QWidget>(kOkButton));
        EXPECT_TRUE(page.isVisible());
        EXPECT_EQ(Title(), "People") << "it goes back";
        page.reject();
    };
    files.full = "/people.pdb";
    user.ExpectDialog(149, tick);
    user.ExpectMessage(kDiskFull);
    ChooseMenu("Tools", "Options...");
    files.full.clear();
    files.contents["/people.pdb"] += "x";
    user.ExpectDialog(149, tick);
    user.ExpectMessage(kChangedByAnother, "Cancel");
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Cell(0, 2), "12/07/2003");
    EXPECT_FALSE(doc->IsModified());
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(CloseAndReadFile(), before + "x");
}

TEST_F(OptionsTest, RecordsOfOtherProgramsAreLostOnlyWithTheUsersWord) {
    ImageParts parts = PeopleParts();
    parts.Add(9, {"not ours"});
    const std::string before = parts.Build();
    const QString question =
        "Of the records in this file, 1 would not come back when it is written, being of other programs or kinds.";
    const auto tick = [this](CQuillaryDialog& page) {
        Click(page.Control<QCheckBox>(1003));
        Click(page.Control<QWidget>(kOkButton));
        if (page.isVisible()) page.reject();  // it waits, as nothing was saved
    };
    Open(before);
    user.ExpectDialog(149, tick);
    user.ExpectMessage(question, "Cancel");
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Cell(0, 2), "12/07/2003");
    user.ExpectDialog(149, tick);
    user.ExpectMessage(question, "Save a Copy First");
    files.contents["/people (copy).pdb"] = "taken";
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(Cell(0, 2), "December 07, 2003");
    user.ExpectDialog(149, tick);  // asked once
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(files.contents["/people (copy).pdb"], "taken");
    EXPECT_EQ(files.contents["/people (copy 2).pdb"], before);
    EXPECT_NE(CloseAndReadFile(), before);
}

}  // namespace
}  // namespace quillary
