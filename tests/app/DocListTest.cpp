// The document list over real folders, used through real events.
#include <QMenu>
#include <QPushButton>
#include <QTreeView>
#include <algorithm>

#include "platform/posix/PosixFileAccess.h"
#include "tests/posix/TestFolder.h"
#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

class DocListTest : public WindowTest {
  protected:
    DocListTest() {
        app.Frame().hide();
        locations.mainFolder = (m_folder / "Documents/").string();
        AddDatabase("Documents/List 10.pdb");
        AddDatabase("Documents/list 9.PDB");
        AddDatabase("Documents/Work/Deep/Birds.pdb");
    }
    void AddDatabase(const char* name, const std::string& more = {}) {
        m_folder.Write(name, PeopleParts().Build() + more);
    }
    /// Starts the program without a file, and waits until the list is complete.
    void Start() {
        m_app = std::make_unique<CQuillaryApp>(DesktopOn(m_files));
        m_app->InitInstance({});
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_app->Frame()));
        WaitForScan();
    }
    void WaitForScan() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return folderWatcher.isTold; }));
        folderWatcher.isTold = false;
    }
    /// As the desktop tells it.
    void FoldersChange() {
        folderWatcher.TellChange();
        WaitForScan();
    }

    [[nodiscard]] QTreeView* List() { return m_app->Frame().findChild<QTreeView*>(QStringLiteral("58378")); }
    /// The names, the current one with a star.
    [[nodiscard]] QString Names() {
        QStringList names;
        for (int row = 0; row < List()->model()->rowCount(); ++row) names << Cell(row, 0);
        if (List()->currentIndex().isValid()) names[List()->currentIndex().row()].prepend(u'*');
        return names.join(QStringLiteral(", "));
    }
    [[nodiscard]] QString Cell(int row, int column) { return List()->model()->index(row, column).data().toString(); }
    [[nodiscard]] QString Current() { return Cell(List()->currentIndex().row(), 0); }
    [[nodiscard]] QString Title() { return m_app->Frame().windowTitle(); }
    [[nodiscard]] bool Shows(const QString& text) {
        const auto labels = m_app->Frame().findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->isVisible() && label->text().contains(text); });
    }
    [[nodiscard]] QPoint CellCenter(int row, int column) {
        return List()->visualRect(List()->model()->index(row, column)).center();
    }
    void ClickCell(int row, int column) {
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, {}, CellCenter(row, column));
    }
    void ClickHeading(int column) {
        QHeaderView* header = List()->header();
        const QPoint middle(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                            header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
    }
    void ChooseFolder(const QString& name) {
        auto* folders = m_app->Frame().findChild<QComboBox*>();
        folders->setFocus();
        QTest::keyClicks(folders, name);
    }
    /// Of the current row's name; null while there is none.
    [[nodiscard]] QLineEdit* Editor() { return qobject_cast<QLineEdit*>(m_app->Frame().focusWidget()); }
    void ChooseFromMenu(const QString& item) {
        auto* menu = List()->parentWidget()->parentWidget()->findChild<QMenu*>();
        ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); })) << item.toStdString();
        for (QAction* action : menu->actions()) {
            if (action->text().remove(u'&') == item) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                return;
            }
        }
        ADD_FAILURE() << "no " << item.toStdString();
    }

    TestFolder m_folder;
    PosixFileAccess m_files{m_folder / "state"};
    std::unique_ptr<CQuillaryApp> m_app;
};

TEST_F(DocListTest, ListsDatabasesInNaturalOrderAndSortsByHeading) {
    m_folder.Write("Documents/noise.pdb", "noise");
    AddDatabase("Documents/Large.pdb", std::string(2000, 'x'));
    std::filesystem::last_write_time(m_folder / "Documents/list 9.PDB", {});  // the oldest, or the newest
    Start();
    EXPECT_EQ(Names(), "*Birds, Large, list 9, List 10");
    EXPECT_EQ(Cell(0, 1) + ' ' + Cell(1, 3), "Documents/Work/Deep 2.9 kB");
    EXPECT_TRUE(Shows("4 databases"));
    for (const bool rises : {true, false}) {
        ClickHeading(3);
        EXPECT_TRUE(rises ? Names().endsWith("Large") : Names().startsWith("Large")) << Names().toStdString();
    }
    FoldersChange();
    EXPECT_TRUE(Names().startsWith("Large") && Current() == "Birds") << "the selection goes with its row";
    m_app.reset();
    Start();
    EXPECT_TRUE(Names().startsWith("*Large")) << "kept for the next start";
    ClickHeading(1);
    EXPECT_TRUE(Names().endsWith("Birds"));
    for (const bool rises : {true, false}) {
        QTest::keyClick(List(), Qt::Key_4, Qt::ControlModifier);
        EXPECT_TRUE(rises ? Names().endsWith("*Large") : Names().startsWith("*Large")) << "without a mouse";
    }
}

TEST_F(DocListTest, AFolderCanBeChosen) {
    Start();
    ChooseFolder("Documents/Work");
    EXPECT_EQ(Names(), "*Birds") << "for Return";
    EXPECT_TRUE(Shows("1 database"));
    AddDatabase("Documents/Work/Deep/More.pdb");
    AddDatabase("Documents/New.pdb");
    FoldersChange();
    EXPECT_EQ(Names(), "*Birds, More");
    std::filesystem::remove_all(m_folder / "Documents/Work");
    FoldersChange();
    EXPECT_EQ(Names(), "*list 9, List 10, New") << "a folder without databases cannot be chosen";
    EXPECT_EQ(m_app->Frame().findChild<QComboBox*>()->currentText(), "All Folders");
}

TEST_F(DocListTest, TheListLivesOnWhenTheRowThatIsEditedGoesAway) {
    Start();
    QTest::keyClick(List(), Qt::Key_F2);
    std::filesystem::remove(m_folder / "Documents/Work/Deep/Birds.pdb");
    FoldersChange();
    QTest::qWait(0);
    ClickCell(0, 0);
    QTest::mouseDClick(List()->viewport(), Qt::LeftButton, {}, CellCenter(0, 0));
    EXPECT_EQ(Title(), "People");
}

TEST_F(DocListTest, ANameThatIsBeingEditedIsNotOpenedAgain) {
    static int refusals = 0;  // which the toolkit only warns of
    Start();
    QTest::keyClick(List(), Qt::Key_F2);
    const auto former = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { refusals += text.contains("editing failed"); });
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, CellCenter(0, 0), QPoint(50, 50));
    QApplication::sendEvent(List()->viewport(), &byMouse);
    ChooseFromMenu("Rename");
    qInstallMessageHandler(former);
    EXPECT_NE(Editor(), nullptr);
    EXPECT_EQ(refusals, 0);
}

TEST_F(DocListTest, OpensByKeyAndMouseAndComesBack) {
    Start();
    QTest::keyClicks(List(), "list 1");
    EXPECT_EQ(Current(), "List 10") << "type-ahead";
    QTest::keyClick(List(), Qt::Key_Return);
    EXPECT_EQ(Title(), "People");
    EXPECT_FALSE(List()->isVisible());
    QTest::keyClick(m_app->Frame().focusWidget(), Qt::Key_O, Qt::ControlModifier);
    WaitForScan();
    EXPECT_TRUE(List()->hasFocus() && Current() == "List 10" && Title() == "Quillary");
    ClickCell(0, 2);
    QApplication::setKeyboardInputInterval(0);  // what was typed before is over
    QTest::keyClicks(List(), "l");
    EXPECT_EQ(Current(), "list 9") << "names are typed, whatever column was clicked";
    ClickCell(0, 1);
    QTest::mouseDClick(List()->viewport(), Qt::LeftButton, {}, CellCenter(0, 1));
    EXPECT_EQ(Title(), "People");
    QTest::keyClick(m_app->Frame().focusWidget(), Qt::Key_O, Qt::ControlModifier);
    WaitForScan();
    user.ExpectFileChooser(QString::fromStdString(m_folder.Write("noise.pdb", "noise").string()));
    user.ExpectMessage("Invalid database file.");
    Click(m_app->Frame().findChild<QPushButton*>(QStringLiteral("57601")));
    EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
    WaitForScan();
    EXPECT_TRUE(List()->isVisible()) << "the list shows when an opening failed";
}

TEST_F(DocListTest, FollowsTheDiskAsFarAsTheSystemWatches) {
    Start();
    EXPECT_EQ(folderWatcher.watched, (std::vector<Path>{m_folder / "Documents/", m_folder / "Documents/Work",
                                                        m_folder / "Documents/Work/Deep"}))
        << "the folders between, too: a new name for one moves what is below";
    folderWatcher.runsOut = true;
    AddDatabase("Documents/Another.pdb");
    std::filesystem::remove(m_folder / "Documents/List 10.pdb");
    FoldersChange();
    EXPECT_EQ(Names(), "Another, *Birds, list 9");
    EXPECT_TRUE(Shows("Press F5 to look again."));
    folderWatcher.runsOut = false;
    AddDatabase("Documents/Third.pdb");
    QTest::keyClick(List(), Qt::Key_F5);
    folderWatcher.TellChange();
    WaitForScan();
    WaitForScan();  // what changes during a scan is looked for by another one
    EXPECT_TRUE(Names().endsWith("Third"));
    EXPECT_FALSE(Shows("F5"));
}

TEST_F(DocListTest, SaysHowToBeginWhenThereIsNothing) {
    std::filesystem::remove_all(m_folder / "Documents");
    Start();
    EXPECT_FALSE(List()->isVisible());
    EXPECT_TRUE(Shows("No databases yet"));
    EXPECT_EQ(folderWatcher.watched, std::vector<Path>{m_folder.Root()}) << "where the documents folder will be made";
    AddDatabase("Documents/First.pdb");
    FoldersChange();
    EXPECT_FALSE(Shows("No databases yet"));
    EXPECT_EQ(Names(), "*First");
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(DocListTest, ANameIsEditedInPlace) {
    Start();
    QTest::keyClick(List(), Qt::Key_End);
    user.ExpectMessage("A database with this name already exists at this location.");
    AddDatabase("Documents/Taken.pdb", "kept");
    QTest::keyClick(List(), Qt::Key_F2);
    QTest::keyClicks(Editor(), "Taken");
    QTest::keyClick(Editor(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Editor() && Editor()->selectedText() == "Taken"; })) << "it stays";
    QTest::keyClick(Editor(), Qt::Key_Delete);
    EXPECT_EQ(Editor()->text(), "") << "the key is the editor's while it is open";
    QTest::keyClicks(Editor(), "A list");
    QTest::keyClick(Editor(), Qt::Key_Return);
    WaitForScan();
    EXPECT_EQ(Names(), "*A list, Birds, list 9, Taken");
    EXPECT_EQ(FileBytes(m_folder / "Documents/A list.pdb"), PeopleParts().Build());
    EXPECT_EQ(FileBytes(m_folder / "Documents/Taken.pdb"), PeopleParts().Build() + "kept");
}

TEST_F(DocListTest, ACopyGetsAFreeNameAndIsSelected) {
    Start();
    for (const QString copy : {"Birds (copy)", "Birds (copy 2)"}) {
        QTest::keyClick(List(), Qt::Key_Home);
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
        QApplication::sendEvent(List()->viewport(), &byKey);
        ChooseFromMenu("Make a Copy");
        WaitForScan();
        EXPECT_EQ(Current(), copy);
    }
    EXPECT_EQ(FileBytes(m_folder / "Documents/Work/Deep/Birds (copy 2).pdb"), PeopleParts().Build());
}

TEST_F(DocListTest, DeleteAsksAndGoesOnToTheNextRow) {
    Start();
    const Path second = m_folder / "Documents/list 9.PDB";
    QTest::keyClick(List(), Qt::Key_Down);
    const QString question =
        "The database \"People\" is about to be deleted.  Are you sure?\n\nIt is \"list 9\" in the list.";
    user.ExpectMessage(question, "No");
    QTest::keyClick(List(), Qt::Key_Delete);
    EXPECT_TRUE(std::filesystem::exists(second));
    m_app->Frame().activateWindow();  // as window managers do behind a message
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_app->Frame()));
    user.ExpectMessage(question, "Yes");
    QTest::keyClick(List(), Qt::Key_Delete);
    EXPECT_FALSE(std::filesystem::exists(second));
    EXPECT_EQ(Names(), "Birds, *List 10") << "at once";
    WaitForScan();
    EXPECT_EQ(Names(), "Birds, *List 10");
}

TEST_F(DocListTest, TheMenuComesByRightClickAndByHolding) {
    Start();
    const Path second = m_folder / "Documents/list 9.PDB";
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, CellCenter(1, 2), QPoint(50, 50));
    QApplication::sendEvent(List()->viewport(), &byMouse);
    ChooseFromMenu("Show in Folder");
    EXPECT_EQ(launcher.shown, std::vector<Path>{second});
    QTest::mousePress(List()->viewport(), Qt::LeftButton, {}, CellCenter(1, 0));
    launcher.there = false;
    user.ExpectMessage("The folder could not be shown: no file manager answers.");
    ChooseFromMenu("Show in Folder");
    EXPECT_EQ(launcher.shown, (std::vector<Path>{second, second}));
}

}  // namespace
}  // namespace quillary
