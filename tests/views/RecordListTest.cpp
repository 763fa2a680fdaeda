#include <QHeaderView>
#include <QScrollBar>
#include <QTest>

#include "tests/ui/WindowTest.h"
#include "views/QuillaryView.h"

namespace quillary {
namespace {

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
};

TEST_F(RecordListTest, ShowsRowsColumnsAndCounter) {
    ImageParts parts = PeopleParts();
    parts.Add(3, {"Hidden"});
    parts.Add(2, {"Short"});
    ASSERT_NE(Open(parts.Build()), nullptr);
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(Counter(), "1 of 4");
    const struct {
        int row;
        QStringList cells;
    } kRows[] = {
        {0, {"Ada", "36", "12/07/2003", "true", ""}},
        {1, {"Bob", "7", "No Date", "false", ""}},
        {2, {"100% of 2", "-1", "01/01/1904", "true", ""}},
        {3, {"Short", "", "", "", ""}},
    };
    for (const auto& r : kRows) {
        QStringList cells;
        for (int column = 0; column < View()->model()->columnCount(); ++column) cells << Cell(r.row, column);
        EXPECT_EQ(cells, r.cells) << r.row;
    }
    QTest::keyClick(View(), Qt::Key_End);
    EXPECT_EQ(Counter(), "4 of 4");
    ChooseMenu("Record", "Top of Database");
    EXPECT_EQ(Counter(), "1 of 4");
    for (int i = 0; i < 6; ++i) QTest::keyClick(View(), Qt::Key_Right);
    EXPECT_EQ(View()->currentIndex().column(), 3) << "the filler column is no field";
}

TEST_F(RecordListTest, ACellFollowsItsRecordThroughChangeAndSave) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    EXPECT_EQ(Cell(1, 0), "Bob");
    doc->ReplaceRecord(1, Entries({"Bea", "8"}));
    EXPECT_EQ(Cell(1, 0), "Bea");
    EXPECT_EQ(Cell(1, 2), "");
    Failure failure;
    ASSERT_TRUE(doc->SaveDatabase(failure));  // the records move into a new image
    EXPECT_EQ(Cell(1, 0), "Bea");
}

TEST_F(RecordListTest, EmptyDatabaseShowsItsColumns) {
    ImageParts parts = PeopleParts();
    parts.records.resize(4);
    Open(parts.Build());
    EXPECT_EQ(Counter(), "0 of 0");
    EXPECT_EQ(Header()->count(), 5);
    EXPECT_EQ(View()->GetSelectedRow(), -1);
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

TEST_F(RecordListTest, AWidthThatCannotBeSavedGoesBack) {
    const std::string before = PeopleParts().Build();
    Open(before);
    files.full = "/people.pdb";
    user.ExpectMessage(kDiskFull);
    DragEdge(0, 40);
    EXPECT_EQ(Header()->sectionSize(0), 120);
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(CloseAndReadFile(), before);
}

TEST_F(RecordListTest, AReadOnlyDatabaseKeepsWidthsInMemory) {
    files.writable = false;
    const std::string before = PeopleParts().Build();
    Open(before);
    EXPECT_EQ(Title(), "People (read only)");
    DragEdge(0, 40);
    EXPECT_EQ(Header()->sectionSize(0), 160);
    View()->RebuildList(false, true);
    EXPECT_EQ(Header()->sectionSize(0), 160);
    EXPECT_EQ(Title(), "People (read only)");
    EXPECT_EQ(CloseAndReadFile(), before);
}

TEST_F(RecordListTest, ScrollsThroughAllThatAFileCanHold) {
    ImageParts parts;
    parts.AddSchema({"Number", "Text"}, {"F", "T"});
    for (int row = 1; row <= 65531; ++row) parts.Add(2, {std::to_string(row), "record " + std::to_string(row)});
    Open(parts.Build());
    EXPECT_EQ(Counter(), "1 of 65531");
    QTest::keyClick(View(), Qt::Key_PageDown);
    const int page = View()->GetSelectedRow();
    EXPECT_GT(page, 10);
    EXPECT_LT(page, 60);
    QTest::keyClick(View(), Qt::Key_End);
    EXPECT_EQ(Counter(), "65531 of 65531");
    // What stands in the lowest line that is wholly in sight.
    const QWidget* viewport = View()->viewport();
    const QModelIndex lowest = View()->indexAt({5, viewport->height() - 2});
    EXPECT_EQ(lowest.row(), 65530);
    EXPECT_EQ(Cell(lowest.row(), 1), "record 65531");
    QTest::keyClick(View(), Qt::Key_PageUp);
    QTest::keyClick(View(), Qt::Key_Up);
    EXPECT_EQ(Cell(View()->GetSelectedRow(), 0), QString::number(View()->GetSelectedRow() + 1));
    EXPECT_EQ(View()->GetSelectedRow(), 65530 - page - 1);
}

TEST_F(RecordListTest, PaintsCheckImagesInTheMiddleAndNumbersAtTheRight) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_End);  // away from the rows that are looked at
    const QImage picture = View()->viewport()->grab().toImage();
    const QColor background = View()->palette().color(QPalette::Base);
    // The columns of pixels in a cell that show anything, from its left edge.
    const auto ink = [&](int row, int column) {
        const QRect cell = View()->visualRect(View()->model()->index(row, column));
        QRect box;
        for (int x = cell.left(); x <= cell.right(); ++x) {
            for (int y = cell.top(); y <= cell.bottom(); ++y) {
                if (picture.pixelColor(x, y) != background) box |= QRect(x - cell.left(), y - cell.top(), 1, 1);
            }
        }
        return box;
    };
    EXPECT_GT(ink(0, 1).left(), 60 / 2);
    EXPECT_EQ(ink(0, 1).right() >= 50, true);
    EXPECT_LT(ink(0, 0).left(), 10);
    const int height = View()->rowHeight(0);
    EXPECT_EQ(ink(1, 3), QRect(70 / 2 - 5, height / 2 - 5, 11, 11));
    const QRect checked = View()->visualRect(View()->model()->index(0, 3)).adjusted(32, 0, -32, 0);
    const QRect unchecked = View()->visualRect(View()->model()->index(1, 3)).adjusted(32, 0, -32, 0);
    EXPECT_NE(picture.copy(checked), picture.copy(unchecked));
}

}  // namespace
}  // namespace quillary
