// The record list: what it shows, and what a person does in it with records and with the database behind it.
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>

#include "tests/ui/WindowTest.h"
#include "ui/RowColor.h"

namespace quillary {
namespace {

constexpr int kMember = 3;  // PeopleParts' check box

class RecordListTest : public WindowTest {
  protected:
    [[nodiscard]] QHeaderView* Header() { return View()->horizontalHeader(); }
    /// Presses on the right edge of a column's heading, moves, lets go.
    void DragEdge(int column, int by) {
        QWidget* viewport = Header()->viewport();
        const int y = viewport->height() / 2;
        const int edge = Header()->sectionViewportPosition(column) + Header()->sectionSize(column) - 1;
        QTest::mousePress(viewport, Qt::LeftButton, {}, {edge, y});
        QTest::mouseMove(viewport, {edge + by / 2, y});
        QTest::mouseMove(viewport, {edge + by, y});
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, {edge + by, y});
        QTest::qWait(0);
    }
    /// PeopleParts with the option "On select, go to Edit View".
    void OpenPeople(bool editOnSelect = true) { Open(PeopleParts().Build())->SetEditOnSelect(editOnSelect); }
    [[nodiscard]] QRect CellRect(int row, int column) {
        return View()->visualRect(View()->model()->index(row, column));
    }
    void Tap(int row, int column, QPoint fromCenter = {}, Qt::KeyboardModifiers keys = {},
             Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(View()->viewport(), button, keys, CellRect(row, column).center() + fromCenter);
        QTest::qWait(0);
    }
};

TEST_F(RecordListTest, ShowsRowsColumnsAndCounter) {
    ImageParts parts = PeopleParts();
    parts.Add(3, {"Hidden"});
    parts.Add(2, {"Short"});
    ASSERT_NE(Open(parts.Build()), nullptr);
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(Counter(), "1 of 4");
    const char* const kCells[][5] = {
        {"Ada", "36", "12/07/2003", "true", ""},
        {"Bob", "7", "No Date", "false", ""},
        {"100% of 2", "-1", "01/01/1904", "true", ""},
        {"Short", "", "", "", ""},
    };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 5; ++column) EXPECT_EQ(Cell(row, column), kCells[row][column]) << row;
    }
    QTest::keyClick(View(), Qt::Key_End);
    EXPECT_EQ(Counter(), "4 of 4");
    ChooseMenu("Record", "Top of Database");
    EXPECT_EQ(Counter(), "1 of 4");
    for (int i = 0; i < 6; ++i) QTest::keyClick(View(), Qt::Key_Right);
    EXPECT_EQ(View()->currentIndex().column(), 3) << "the filler column is no field";
}

TEST_F(RecordListTest, FillerColumnReachesTheEdgeOrIsTenPixels) {
    Open(PeopleParts().Build());
    for (int extra : {200, 11, 10, 9, 0, -50}) {
        // The fields' widths add up to 340.
        app.Frame().resize(340 + extra + app.Frame().width() - View()->viewport()->width(), app.Frame().height());
        QTest::qWait(0);
        ASSERT_EQ(View()->viewport()->width(), 340 + extra);
        EXPECT_EQ(Header()->sectionSize(4), extra > 10 ? extra : 10) << extra;
        EXPECT_EQ(View()->horizontalScrollBar()->maximum() > 0, extra < 10) << extra;
    }
}

TEST_F(RecordListTest, OddWidthsAreShownAsTheNearestAndKeptInTheFile) {
    ImageParts parts;
    parts.AddSchema({"A", "B", "C"}, {"T", "T", "T"}, {"-5", "100000", "70"});
    parts.Add(2, {"a", "b", "c"});
    Open(parts.Build());
    EXPECT_EQ(Header()->sectionSize(0), 0);
    EXPECT_EQ(Header()->sectionSize(1), 4096);
    app.Frame().resize(600, 400);
    View()->horizontalScrollBar()->setValue(View()->horizontalScrollBar()->maximum());
    DragEdge(2, 25);
    EXPECT_EQ(Header()->sectionSize(2), 95);
    EXPECT_EQ(Title(), "Test") << "saved at once";
    const int kWidths[] = {-5, 100000, 95};
    for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(Stored().FieldWidth(k), kWidths[k]);
}

TEST_F(RecordListTest, AWidthThatCannotBeSavedGoesBackAndAReadOnlyDatabaseKeepsItInMemory) {
    const std::string before = PeopleParts().Build();
    Open(before);
    files.full = "/people.pdb";
    user.ExpectMessage(kDiskFull);
    DragEdge(0, 40);
    EXPECT_EQ(Header()->sectionSize(0), 120);
    EXPECT_EQ(Title(), "People");
    files.writable = false;
    Open(before);
    DragEdge(0, 40);
    View()->RebuildList(false, true);
    EXPECT_EQ(Header()->sectionSize(0), 160);
    EXPECT_EQ(Title(), "People (read only)");
    EXPECT_EQ(CloseAndReadFile(), before);
}

TEST_F(RecordListTest, ScrollsThroughAllThatAFileCanHold) {
    ImageParts parts;
    parts.AddSchema({"Number", "Text"}, {"F", "T"});
    for (int row = 1; row <= 65531; ++row) parts.Add(2, {"", "record " + std::to_string(row)});
    Open(parts.Build());
    EXPECT_EQ(Counter(), "1 of 65531");
    QTest::keyClick(View(), Qt::Key_PageDown);
    const int page = View()->GetSelectedRow();
    EXPECT_GT(page, 10);
    EXPECT_LT(page, 60);
    QTest::keyClick(View(), Qt::Key_End);
    EXPECT_EQ(Counter(), "65531 of 65531");
    const int lowest = View()->indexAt({5, View()->viewport()->height() - 2}).row();
    EXPECT_EQ(Cell(lowest, 1), "record 65531");
    QTest::keyClick(View(), Qt::Key_PageUp);
    EXPECT_EQ(View()->GetSelectedRow(), 65530 - page);
}

TEST_F(RecordListTest, PaintsCheckImagesInTheMiddleAndNumbersAtTheRight) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_End);  // away from the rows that are looked at
    const QImage picture = View()->viewport()->grab().toImage();
    const auto cell = [this](int row, int column) { return View()->visualRect(View()->model()->index(row, column)); };
    // Where a cell shows anything, from its corner.
    const auto ink = [&](int row, int column) {
        QRect box;
        for (int at = 0; at < cell(row, column).width() * cell(row, column).height(); ++at) {
            const QPoint place(at % cell(row, column).width(), at / cell(row, column).width());
            const QColor color = picture.pixelColor(cell(row, column).topLeft() + place);
            if (color != View()->palette().color(QPalette::Base)) box |= QRect(place, QSize(1, 1));
        }
        return box;
    };
    EXPECT_TRUE(ink(0, 0).left() < 10 && ink(0, 1).left() > 60 / 2 && ink(0, 1).right() >= 50);
    EXPECT_EQ(ink(1, 3), QRect(70 / 2 - 5, View()->rowHeight(0) / 2 - 5, 11, 11));
    EXPECT_NE(picture.copy(cell(0, 3).adjusted(32, 0, -32, 0)), picture.copy(cell(1, 3).adjusted(32, 0, -32, 0)));
}

TEST_F(RecordListTest, ATapTogglesACheckBoxOnlyInsideItsImage) {
    const struct {
        const char* name;
        QPoint fromCenter;
        Qt::KeyboardModifiers keys;
        Qt::MouseButton button;
        bool toggles;
    } kRows[] = {
        {"left edge of the image", {-4, 0}, {}, Qt::LeftButton, true},
        {"beside the image", {-8, 0}, {}, Qt::LeftButton, false},
        {"below the image", {0, 7}, {}, Qt::LeftButton, false},
        {"with Ctrl it only selects", {}, Qt::ControlModifier, Qt::LeftButton, false},
        {"the right button only selects", {}, {}, Qt::RightButton, false},
    };
    for (const auto& r : kRows) {
        OpenPeople();
        Tap(1, kMember, r.fromCenter, r.keys, r.button);
        EXPECT_EQ(Cell(1, kMember), r.toggles ? "true" : "false") << r.name;
        EXPECT_EQ(Counter(), "2 of 3") << r.name;
    }
}

TEST_F(RecordListTest, ATapOpensTheFormWhereItTogglesNothing) {
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

TEST_F(RecordListTest, SpaceTogglesTheCurrentCellAndTheFileFollows) {
    OpenPeople();
    Tap(0, kMember, {-8, 0});
    QTest::keyClick(View(), Qt::Key_Space, Qt::ControlModifier);
    QTest::keyClick(View(), Qt::Key_Space);
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral(" "), true);
        QCoreApplication::sendEvent(View(), &held);
    }
    EXPECT_EQ(Cell(0, kMember), "false");
    QTest::keyClick(View(), Qt::Key_Left);
    QTest::keyClick(View(), Qt::Key_Space);
    EXPECT_EQ(Cell(0, kMember), "false") << "another field's cell";
    Tap(2, kMember);
    EXPECT_EQ(Stored().Shown()[0].Entries(), Entries({"Ada", "36", "36500", "false"}));
    EXPECT_EQ(Stored().Shown()[2].Entries(), Entries({"100%% of %d", "-1", "0", "false"})) << "a 1 was true, too";
}

TEST_F(RecordListTest, AReadOnlyCheckBoxSaysWhyItStays) {
    files.writable = false;
    OpenPeople();
    user.ExpectMessage("This database is read only: its file or folder cannot be written.");
    Tap(0, kMember);
    EXPECT_EQ(Cell(0, kMember), "true");
}

TEST_F(RecordListTest, CopyTakesTheWholeRecordWithItsNames) {
    ImageParts parts = PeopleParts();
    parts.Add(2, {"Bob \"B\"\r\nsecond line", "7", "", "false"});
    Open(parts.Build());
    QTest::keyClick(View(), Qt::Key_End);
    QTest::keyClick(View(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              "Name\tAge\tBorn\tMember\n\"Bob \"\"B\"\"\r\nsecond line\"\t7\tNo Date\tfalse\n");
}

TEST_F(RecordListTest, DeleteAsksAndMovesTheFileToTheTrash) {
    const QString question = "The database \"People\" is about to be deleted.  Are you sure?";
    const std::string file = PeopleParts().Build();
    Open(file);
    user.ExpectMessage(question, "No");
    ChooseMenu("Database", "Delete...");
    EXPECT_EQ(Counter(), "1 of 3");
    for (const bool isTrashThere : {true, false}) {
        Open(file)->SetStyle(DateStyle::Long);  // not saved, and not asked about
        trash.there = isTrashThere;
        trash.contents.clear();
        user.ExpectMessage(question, "Yes");
        ChooseMenu("Database", "Delete...");
        QTest::qWait(0);
        EXPECT_EQ(View(), nullptr);
        EXPECT_TRUE(files.contents.empty());
        EXPECT_EQ(trash.contents["/people.pdb"], isTrashThere ? file : "");
    }
}

TEST_F(RecordListTest, ADoubleClickOnAnEdgeFitsTheColumnAndKeysSetItsWidth) {
    ImageParts parts = PeopleParts();
    for (int row = 0; row < 2000; ++row) parts.Add(2, {"Ann", "1"});  // more than the toolkit looks at
    parts.Add(2, {std::string(12, 'W'), "1"});
    Open(parts.Build());
    QHeaderView* header = Header();
    const QPoint edge{header->sectionSize(0) - 1, header->height() / 2};
    QTest::mouseMove(header->viewport(), edge);
    files.saves = 0;
    QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, edge);
    QTest::qWait(0);
    EXPECT_EQ(files.saves, 1);
    const int wanted = View()->fontMetrics().horizontalAdvance(QString(12, u'W'));
    EXPECT_GE(header->sectionSize(0), wanted);
    EXPECT_LT(header->sectionSize(0), wanted + 20);
    EXPECT_GE(Stored().FieldWidth(0), wanted) << "kept in the file";

    const int fitted = header->sectionSize(0);
    QTest::keyClick(View(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_LT(header->sectionSize(0), fitted);
    for (int i = 0; i < 3; ++i) QTest::keyClick(View(), Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Stored().FieldWidth(0), header->sectionSize(0));
    EXPECT_GT(header->sectionSize(0), fitted);
    QTest::keyClick(View(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(header->sectionSize(0), fitted);
    for (int i = 0; i < 200; ++i) QTest::keyClick(View(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(header->sectionSize(0), header->minimumSectionSize());
}

TEST_F(RecordListTest, OptionsAreStoredAndRedrawTheDates) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_Down);
    for (const int times : {1, 2}) {
        InDialog(149, "Tools", "Options...", [times](CQuillaryDialog& page) {
            auto* longDates = page.Control<QCheckBox>(1003);
            EXPECT_TRUE(longDates->hasFocus());
            EXPECT_EQ(longDates->isChecked(), times == 2);
            QTest::keyClick(longDates, Qt::Key_Space);
            QTest::keyClick(longDates, Qt::Key_Tab);
            if (times == 1) QTest::keyClick(page.focusWidget(), Qt::Key_Space);
            QTest::keyClick(page.focusWidget(), Qt::Key_Return);
        });
        EXPECT_EQ(Cell(0, 2), times == 1 ? "December 07, 2003" : "12/07/2003");
        EXPECT_EQ(Counter(), "2 of 3") << "the selected row stays";
        EXPECT_EQ(app.Frame().focusWidget(), View());
    }
    EXPECT_TRUE(Stored().Style() == DateStyle::Numeric && Stored().EditOnSelect());
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

TEST_F(RecordListTest, EverySecondRowIsColoredUnlessItIsSelected) {
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
