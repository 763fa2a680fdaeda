// What a person does with a record in the list, and with the database behind it.
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

#include "tests/ui/WindowTest.h"
#include "ui/RowColor.h"
#include "views/QuillaryView.h"

namespace quillary {
namespace {

constexpr int kMember = 3;  // PeopleParts' check box

class RecordActionsTest : public WindowTest {
  protected:
    /// PeopleParts with the option "On select, go to Edit View", sorted by `key` (none when empty).
    CQuillaryDoc* OpenPeople(bool editOnSelect, const std::string& key = {}, bool writable = true) {
        app.CloseDocument();
        files.contents["/people.pdb"] = PeopleParts().Build();
        CQuillaryDoc doc(files);
        ScriptedQuestions questions;
        EXPECT_TRUE(doc.OpenDatabase("/people.pdb", OpenMode::Edit, questions));
        doc.SetEditOnSelect(editOnSelect);
        if (!key.empty()) doc.SetSort({{key, true}});
        Failure failure;
        EXPECT_TRUE(doc.SaveDatabase(failure));
        files.writable = writable;
        return Open(files.contents["/people.pdb"]);
    }
    [[nodiscard]] QRect CellRect(int row, int column) {
        return View()->visualRect(View()->model()->index(row, column));
    }
    void Tap(int row, int column, QPoint fromCenter = {}, Qt::KeyboardModifiers keys = {},
             Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(View()->viewport(), button, keys, CellRect(row, column).center() + fromCenter);
        QTest::qWait(0);
    }
};

TEST_F(RecordActionsTest, ATapTogglesACheckBoxOnlyInsideItsImage) {
    const struct {
        const char* name;
        bool editOnSelect;
        QPoint fromCenter;
        Qt::KeyboardModifiers keys;
        Qt::MouseButton button;
        bool toggles;
    } kRows[] = {
        {"in the middle", true, {}, {}, Qt::LeftButton, true},
        {"left edge of the image", true, {-4, 0}, {}, Qt::LeftButton, true},
        {"beside the image", true, {-8, 0}, {}, Qt::LeftButton, false},
        {"below the image", true, {0, 7}, {}, Qt::LeftButton, false},
        {"with Ctrl it only selects", true, {}, Qt::ControlModifier, Qt::LeftButton, false},
        {"the right button only selects", true, {}, {}, Qt::RightButton, false},
    };
    for (const auto& r : kRows) {
        OpenPeople(r.editOnSelect);
        Tap(1, kMember, r.fromCenter, r.keys, r.button);
        EXPECT_EQ(Cell(1, kMember), r.toggles ? "true" : "false") << r.name;
        EXPECT_EQ(Counter(), "2 of 3") << r.name;
    }
}

TEST_F(RecordActionsTest, ATapOpensTheFormWhereItTogglesNothing) {
    const struct {
        const char* name;
        bool editOnSelect;
        int column;
    } kRows[] = {{"to look at it", false, 0},
                 {"a check box too", false, kMember},
                 {"to edit it", true, 0},
                 {"behind the last field", true, kMember + 1}};
    for (const auto& r : kRows) {
        OpenPeople(r.editOnSelect);
        user.ExpectDialog(173, [&](CQuillaryDialog& page) {
            EXPECT_EQ(page.Control<QLineEdit>(101)->text(), "7") << r.name;
            EXPECT_EQ(page.Control<QLineEdit>(101)->isReadOnly(), !r.editOnSelect) << r.name;
            QTest::keyClick(page.Control<QWidget>(101), Qt::Key_Escape);
        });
        Tap(1, r.column);
        EXPECT_TRUE(user.IsDone()) << r.name;
    }
}

TEST_F(RecordActionsTest, SpaceTogglesTheCurrentCellAndTheFileFollows) {
    OpenPeople(true);
    Tap(0, kMember, {-8, 0});
    QTest::keyClick(View(), Qt::Key_Space, Qt::ControlModifier);
    QTest::keyClick(View(), Qt::Key_Space);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(View(), &held);
    EXPECT_EQ(Cell(0, kMember), "false");
    QTest::keyClick(View(), Qt::Key_Left);
    QTest::keyClick(View(), Qt::Key_Space);
    EXPECT_EQ(Cell(0, kMember), "false") << "another field's cell";
    Tap(2, kMember);
    EXPECT_EQ(Stored().Shown()[0].Entries(), Entries({"Ada", "36", "36500", "false"}));
    EXPECT_EQ(Stored().Shown()[2].Entries(), Entries({"100%% of %d", "-1", "0", "false"})) << "a 1 was true, too";
}

TEST_F(RecordActionsTest, ATogglesKeySortsAnew) {
    OpenPeople(true, "Member");  // descending: true, 1 shown as true, false
    EXPECT_EQ(View()->horizontalHeader()->sortIndicatorSection(), kMember);
    EXPECT_EQ(View()->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
    Tap(0, kMember);
    EXPECT_EQ(Cell(0, 0), "100% of 0");
    EXPECT_EQ(Cell(2, 0), "Bob");
    EXPECT_EQ(Counter(), "1 of 3");
}

TEST_F(RecordActionsTest, AReadOnlyCheckBoxSaysWhyItStays) {
    OpenPeople(true, {}, false);
    user.ExpectMessage("This database is read only: its file or folder cannot be written.");
    Tap(0, kMember);
    EXPECT_EQ(Cell(0, kMember), "true");
}

TEST_F(RecordActionsTest, CopyTakesTheWholeRecordWithItsNames) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_Down);
    QTest::keyClick(View(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              "Name\tAge\tBorn\tMember\n\"Bob\r\nsecond line\"\t7\tNo Date\tfalse\n");
}

TEST_F(RecordActionsTest, DeleteAsksAndMovesTheFileToTheTrash) {
    const QString question = "The database \"People\" is about to be deleted.  Are you sure?";
    const std::string file = PeopleParts().Build();
    Open(file);
    user.ExpectMessage(question, "No");
    ChooseMenu("Database", "Delete...");
    EXPECT_EQ(Counter(), "1 of 3");
    for (const bool isTrashThere : {true, false}) {
        CQuillaryDoc* doc = Open(file);
        doc->SetStyle(DateStyle::Long);  // not saved, and not asked about
        trash.there = isTrashThere;
        trash.contents.clear();
        user.ExpectMessage(question, "Yes");
        ChooseMenu("Database", "Delete...");
        QTest::qWait(0);
        EXPECT_EQ(View(), nullptr);
        EXPECT_TRUE(files.contents.empty());
        EXPECT_EQ(trash.contents.size(), isTrashThere ? 1U : 0U);
        if (isTrashThere) {
            EXPECT_EQ(trash.contents["/people.pdb"], file);
        }
    }
}

TEST_F(RecordActionsTest, ADoubleClickOnAnEdgeFitsTheColumn) {
    ImageParts parts = PeopleParts();
    for (int row = 0; row < 2000; ++row) parts.Add(2, {"Ann", "1"});  // more than the toolkit looks at
    parts.Add(2, {std::string(12, 'W'), "1"});
    Open(parts.Build());
    QHeaderView* header = View()->horizontalHeader();
    const QPoint edge{header->sectionViewportPosition(0) + header->sectionSize(0) - 1, header->height() / 2};
    QTest::mouseMove(header->viewport(), edge);
    files.saves = 0;
    QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, edge);
    QTest::qWait(0);
    EXPECT_EQ(files.saves, 1);
    const int wanted = View()->fontMetrics().horizontalAdvance(QString(12, u'W'));
    EXPECT_GE(header->sectionSize(0), wanted);
    EXPECT_LT(header->sectionSize(0), wanted + 20);
    EXPECT_GE(Stored().FieldWidth(0), wanted) << "kept in the file";
}

TEST(RowColor, WhiteIsNoneAndTextStandsOutFromTheRest) {
    EXPECT_FALSE(RowColor(0xFFFFFF));
    EXPECT_EQ(RowColor(0x102030), QColor(0x30, 0x20, 0x10));
    const struct {
        QColor background, text;
    } kRows[] = {
        {Qt::yellow, Qt::black}, {Qt::blue, Qt::white}, {Qt::green, Qt::black}, {QColor(96, 96, 96), Qt::white}};
    for (const auto& r : kRows) EXPECT_EQ(TextColorOn(r.background), r.text) << r.background.name().toStdString();
}

TEST_F(RecordActionsTest, EverySecondRowIsColoredUnlessItIsSelected) {
    Open(PeopleParts().Build());
    View()->SetRowColor(QColor(Qt::yellow));
    const auto background = [this](int row) {
        const QRect cell = CellRect(row, 0);
        return View()->viewport()->grab().toImage().pixelColor(cell.right() - 1, cell.top() + 1);
    };
    EXPECT_EQ(background(1), QColor(Qt::yellow));
    EXPECT_EQ(background(2), View()->palette().color(QPalette::Base));
    QTest::keyClick(View(), Qt::Key_Down);
    EXPECT_NE(background(1), QColor(Qt::yellow));
    EXPECT_EQ(background(0), View()->palette().color(QPalette::Base));
}

}  // namespace
}  // namespace quillary
