// The dialogs that choose a place, and the preferences.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "admin/SaveToPathDlg.h"
#include "tests/ui/WindowTest.h"
#include "ui/ColorButton.h"
#include "views/QuillaryView.h"

namespace quillary {
namespace {

using PreferencesTest = WindowTest;

QStringList Entries(CQuillaryDialog& page, int id) {
    QStringList texts;
    const auto* box = page.Control<QComboBox>(id);
    for (int i = 0; i < box->count(); ++i) texts << box->itemText(i);
    return texts;
}

void Replace(QLineEdit& edit, const QString& text) {
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

TEST_F(PreferencesTest, StoresAllOrNoneAndTheColorActsAtOnce) {
    settings.numbers["LocationNdx"] = 2;
    settings.whyNot = "Read-only file system";
    locations.cards = {"/media/ann/CARD/"};
    Open(PeopleParts().Build());
    user.ExpectDialog(133, [this](CQuillaryDialog& page) {
        EXPECT_EQ(Entries(page, 1009), QStringList({"Main Memory", "Storage card 1(if available)"}));
        EXPECT_EQ(page.Control<QComboBox>(1009)->currentIndex(), 0) << "the second card has gone";
        EXPECT_TRUE(page.Control<QCheckBox>(1003)->isChecked());
        auto* results = page.Control<QLineEdit>(1005);
        EXPECT_EQ(results->text(), "25");
        for (const char* refused : {"", "0", "-5", "5.", "2 5", "4294967297", "101"}) {
            user.ExpectMessage("Enter an integer between 1 and 100.");
            Replace(*results, refused);
            Click(page.Control<QWidget>(kOkButton));
            EXPECT_EQ(page.focusWidget(), page.Control<QWidget>(1057));
        }
        Replace(*results, "500");
        QTest::keyClick(page.Control<QWidget>(1057), Qt::Key_Down);
        EXPECT_EQ(results->text(), "100");
        QTest::keyClick(page.Control<QComboBox>(1009), Qt::Key_Down);
        Click(page.Control<QWidget>(1003));
        auto* color = page.Control<CColorButton>(1006);
        Click(color);
        QApplication::setActiveWindow(&app.Frame());  // as a window manager does
        auto* table = page.findChild<QTableWidget*>();
        table->setFocus();
        QTest::keyClick(table, Qt::Key_Right);
        QTest::mouseClick(table->parentWidget(), Qt::LeftButton, {}, QPoint(1, 1));
        EXPECT_TRUE(table->isVisible()) << "a click between its parts";
        QTest::keyClick(table, Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&page] { return !page.findChild<QTableWidget*>(); }));
        EXPECT_TRUE(color->accessibleName().startsWith("Alternating Row Color: Pale red, #"));
        Click(color);
        auto* typed = page.findChild<QTableWidget*>()->parentWidget()->findChild<QLineEdit*>();
        typed->setFocus();
        Replace(*typed, "12345");
        QTest::keyClick(typed, Qt::Key_Return);
        EXPECT_EQ(color->text(), "Pale red") << "half a colour";
        QTest::keyClick(typed, Qt::Key_Escape);
        user.ExpectMessage("The preferences could not be stored (Read-only file system).");
        Click(page.Control<QWidget>(kOkButton));
        EXPECT_TRUE(page.isVisible());
        settings.whyNot.clear();
        Click(page.Control<QWidget>(kOkButton));
    });
    ChooseMenu("Database", "Preferences...");
    EXPECT_EQ(settings.numbers["LocationNdx"], 1);
    EXPECT_EQ(settings.numbers["ConfirmRecDelete"], 0);
    EXPECT_EQ(settings.numbers["MaxRemoteResults"], 100);
    const int pale = settings.numbers["AlternatingRowColor"];
    EXPECT_GT(pale & 0xFF, pale >> 16) << "red stands in the lowest byte";
    const QPoint second(View()->width() - 3, View()->rowViewportPosition(1) + 30);
    EXPECT_EQ(View()->grab().toImage().pixelColor(second).red(), pale & 0xFF);
}

TEST_F(PreferencesTest, AFolderForDownloadsInTheHandheldsOwnStrings) {
    locations = Handheld(3);
    locations.folders = {
        {"\\Card 1\\", {"Pictures"}},  // no documents folder there
        {"\\Card 2\\", {"My Documents", "Music"}},
        {"\\My Documents\\", {".", "..", "Business", "Personal"}},
        {"\\My Documents\\Business\\", {"2004", "Mail"}},
        {"\\My Documents\\Business\\2004\\", {"March"}},
    };
    const struct {
        int down;  // presses of the key in each list
        int downLocation;
        const char* path;
    } kRows[] = {{0, 0, "\\My Documents\\"},
                 {3, 0, "\\My Documents\\March\\"},  // by its bare name
                 {0, 1, "\\Card 2\\My Documents\\"}};
    for (const auto& row : kRows) {
        user.ExpectDialog(214, [&](CQuillaryDialog& page) {
            EXPECT_EQ(Entries(page, 1003), QStringList({"Main Memory", "Card 2"}));
            EXPECT_EQ(Entries(page, 1002), QStringList({".", "Business", "2004", "March", "Mail", "Personal"}));
            for (int i = 0; i < row.down; ++i) QTest::keyClick(page.Control<QWidget>(1002), Qt::Key_Down);
            for (int i = 0; i < row.downLocation; ++i) QTest::keyClick(page.Control<QWidget>(1003), Qt::Key_Down);
            EXPECT_EQ(page.Control<QWidget>(1011)->accessibleName(), row.path);
            QTest::keyClick(page.Control<QWidget>(1003), Qt::Key_Return);
        });
        CSaveToPathDlg dialog(locations, app.Frame());
        EXPECT_EQ(dialog.exec(), QDialog::Accepted);
        EXPECT_EQ(dialog.ResultPath(), row.path);
    }
}

}  // namespace
}  // namespace quillary
