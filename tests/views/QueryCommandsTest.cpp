// Find, Repeat Find and Show All in the record list.
#include <QAction>
#include <QToolBar>

#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

constexpr char kEnd[] = "The end of the database has been reached. Continue from the top of the database?";

class QueryCommandsTest : public WindowTest {
  protected:
    /// Fills in the find dialog that comes next.
    void ExpectFind(const QString& text, const QString& field = "All Fields") {
        user.ExpectDialog(142, [=](CQuillaryDialog& page) {
            EXPECT_EQ(page.focusWidget(), page.Control<QLineEdit>(1027));
            page.Control<QLineEdit>(1027)->selectAll();
            QTest::keyClicks(page.Control<QLineEdit>(1027), text);
            page.Control<QComboBox>(1028)->setCurrentText(field);
            QTest::keyClick(page.Control<QLineEdit>(1027), Qt::Key_Return);
        });
    }
    [[nodiscard]] QToolButton* Button(int command) {
        auto* bar = app.Frame().findChild<QToolBar*>(QStringLiteral("128"));
        return qobject_cast<QToolButton*>(
            bar->widgetForAction(app.Frame().findChild<QAction*>(QString::number(command))));
    }
};

TEST_F(QueryCommandsTest, FindStartsAtTheTopAndRepeatFindGoesOn) {
    Open(PeopleParts().Build());
    EXPECT_FALSE(Button(ID_RECORD_REPEAT_FIND)->isEnabled()) << "nothing to repeat yet";
    EXPECT_EQ(Button(ID_RECORD_REPEAT_FIND)->toolTip(), "Repeat Find");
    QTest::keyClick(View(), Qt::Key_End);
    ExpectFind("aDA");
    ChooseMenu("Record", "Find...");
    EXPECT_EQ(Counter(), "1 of 3");
    ExpectFind("0");
    QTest::keyClick(View(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Counter(), "1 of 3") << "in 12/07/2003";
    Click(Button(ID_RECORD_REPEAT_FIND));
    EXPECT_EQ(Counter(), "3 of 3") << "what cells show: No Date is not 0";
    user.ExpectMessage(kEnd, "Yes");
    QTest::keyClick(View(), Qt::Key_F3);
    EXPECT_EQ(Counter(), "1 of 3");
    ExpectFind("o", "Age");
    user.ExpectMessage(kEnd, "Yes");
    user.ExpectMessage(kEnd, "No");
    QTest::keyClick(View(), Qt::Key_Down);
    ChooseMenu("Record", "Find...");
    EXPECT_EQ(Counter(), "2 of 3") << "the selection stays";
    InDialog(136, "Database", "Field Definitions...", [](CQuillaryDialog& page) {  // the fields move
        Press(page, ID_FIELD_DOWN);
        Press(page, kOkButton);
    });
    InDialog(142, "Record", "Find...", [](CQuillaryDialog& page) {
        EXPECT_EQ(page.Control<QComboBox>(1028)->currentText(), "Age");
        EXPECT_EQ(page.Control<QLineEdit>(1027)->selectedText(), "o") << "to type another over it";
        QTest::keyClick(&page, Qt::Key_Escape);
    });
}

// Texts that the search can tell from what it looks for only letter by letter, so that a pass takes seconds.
TEST_F(QueryCommandsTest, AFindOverManyRecordsCanBeStopped) {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    const std::string name = std::string(1000, 'a') + "%";
    for (int row = 0; row < 20'000; ++row) parts.Add(2, {row == 1024 || row == 19'999 ? "needle" : name});
    Open(parts.Build());
    ExpectFind("Needle");
    ChooseMenu("Record", "Find...");
    EXPECT_EQ(Counter(), "1025 of 20000");
    QTest::keyClick(View(), Qt::Key_F3);
    EXPECT_EQ(Counter(), "20000 of 20000");
    QTest::keyClick(View(), Qt::Key_Up);
    const QString absent = QString(500, u'a') + "ba";
    ExpectFind(absent);
    user.ExpectMessage("Looking for \"" + absent + "\"...", "Cancel");
    ChooseMenu("Record", "Find...");
    EXPECT_EQ(Counter(), "19999 of 20000") << "and nothing is asked";
}

TEST_F(QueryCommandsTest, ShowAllLiftsTheFilterAndSortsTheHiddenIn) {
    ImageParts parts = PeopleParts();
    parts.Add(3, {"Aaron"});
    CQuillaryDoc* doc = Open(parts.Build());
    doc->SetFilter({{{false, "Age", 0, "5"}}, false, false});
    doc->SetSort({{"Name", false}});
    app.Frame().DocumentChanged();
    const auto* counter = app.Frame().findChild<QLabel*>(QStringLiteral("1039"));
    EXPECT_EQ(counter->toolTip(), "<qt>1 records are hidden</qt>");
    Click(Button(ID_RECORD_SHOW_ALL));
    EXPECT_EQ(Counter(), "1 of 4");
    EXPECT_EQ(Cell(1, 0), "Aaron") << "behind 100% of 0";
    EXPECT_EQ(counter->toolTip(), "");
    EXPECT_FALSE(Button(ID_RECORD_SHOW_ALL)->isEnabled());
    EXPECT_EQ(Stored().Shown().size(), 4U);
    EXPECT_TRUE(Stored().Filter().conditions.empty());
}

}  // namespace
}  // namespace quillary
