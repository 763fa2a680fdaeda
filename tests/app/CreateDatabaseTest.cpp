// New in the list of databases: name, fields, file.
#include "app/CreateDatabase.h"

#include <QAbstractButton>

#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

class CreateDatabaseTest : public WindowTest {
  protected:
    std::optional<Path> Create() {
        return CreateDatabase({files, locations, settings}, app.Frame(), [this]() -> std::optional<std::vector<Field>> {
            if (++timesDefined > 1) return std::nullopt;
            return std::vector<Field>{{"Kind", FieldType::Text, {}}, {"Since", FieldType::Date, {}}};
        });
    }
    static void Type(CQuillaryDialog& page, const QString& name, Qt::Key end) {
        auto* edit = page.Control<QLineEdit>(1010);
        edit->selectAll();
        QTest::keyClicks(edit, name);
        QTest::keyClick(edit, end);
    }
    static QString Shown(CQuillaryDialog& page) { return page.Control<QLabel>(1011)->text(); }

    int timesDefined = 0;
};

TEST_F(CreateDatabaseTest, ShowsThePathRefusesATakenNameAndLosesNoFieldToAFullDisk) {
    files.contents["/nowhere/Tea.pdb"] = "any file";
    files.full = "/nowhere/Green Tea.pdb";
    const QString full =
        "The recovery copy /nowhere/Green Tea.pdb.recovery could not be written (No space left on device). "
        "No file was made.";
    user.ExpectDialog(135, [&](CQuillaryDialog& page) {
        EXPECT_EQ(Shown(page), "The file will be: /nowhere/");
        Type(page, "Te/", Qt::Key_Home);
        EXPECT_EQ(Shown(page), "\"Te/\" cannot be the name of a database file.");
        user.ExpectMessage("A database with this name already exists at this location.");
        Type(page, "Tea", Qt::Key_Return);
        EXPECT_EQ(Shown(page), "The file will be: /nowhere/Tea.pdb");
        Type(page, QString(30, u'x'), Qt::Key_Home);
        EXPECT_EQ(page.Control<QLineEdit>(1010)->text().size(), 28);
        EXPECT_FALSE(page.IsChanged()) << "a name alone is not asked about";
        user.ExpectMessage(full);
        user.ExpectDialog(135, [&](CQuillaryDialog& again) {
            EXPECT_EQ(again.Control<QLineEdit>(1010)->selectedText(), "Green Tea") << "to be typed over";
            EXPECT_TRUE(again.IsChanged()) << "the fields would be lost";
            user.ExpectMessage(full);
            Type(again, "Green Tea", Qt::Key_Return);
            EXPECT_TRUE(again.isVisible());
            Type(again, "Coffee", Qt::Key_Return);
        });
        Type(page, "Green Tea", Qt::Key_Return);
    });
    EXPECT_EQ(Create(), "/nowhere/Coffee.pdb");
    CQuillaryDoc* doc = app.OpenDocumentFile("/nowhere/Coffee.pdb");
    ASSERT_TRUE(doc);
    EXPECT_EQ(Title(), "Coffee");
    EXPECT_EQ(doc->FieldName(1), u"Since");
    EXPECT_EQ(files.contents["/nowhere/Tea.pdb"], "any file");
}

TEST_F(CreateDatabaseTest, NewInTheListStartsItByEveryWayAndCancelMakesNothing) {
    app.InitInstance({});
    QApplication::setActiveWindow(&app.Frame());
    app.Frame().resize(240, 320);
    EXPECT_EQ(app.Frame().width(), 240) << "all of it shows on a small screen";
    const auto cancel = [](CQuillaryDialog& page) { Type(page, "Tea", Qt::Key_Escape); };
    user.ExpectDialog(135, cancel);
    QTest::keyClick(&app.Frame(), Qt::Key_N, Qt::ControlModifier);
    for (auto* button : app.Frame().findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || !button->text().startsWith(QLatin1String("&New"))) continue;
        user.ExpectDialog(135, cancel);
        Click(button);
    }
    timesDefined = 1;  // the fields are not defined then
    user.ExpectDialog(135, [](CQuillaryDialog& page) { Type(page, "Tea", Qt::Key_Return); });
    EXPECT_EQ(Create(), std::nullopt);
    EXPECT_TRUE(files.contents.empty());
}

}  // namespace
}  // namespace quillary
