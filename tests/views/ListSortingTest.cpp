// Sorting in the record list, by the dialog and by taps on headings, and going to a record by its first letters.
#include <gmock/gmock.h>

#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleHints>

#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

constexpr Qt::MouseButton kLeft = Qt::LeftButton;

class ListSortingTest : public WindowTest {
  protected:
    ~ListSortingTest() override { QGuiApplication::styleHints()->setKeyboardInputInterval(m_inputInterval); }

    /// How the first column begins, and the mark: the column's position, then + or -.
    [[nodiscard]] QString List() {
        QString list = " ";
        for (int row = 0; row < View()->model()->rowCount(); ++row) list.insert(row, Cell(row, 0).front());
        const QHeaderView* header = View()->horizontalHeader();
        if (!header->isSortIndicatorShown()) return list;
        const bool isAscending = header->sortIndicatorOrder() == Qt::AscendingOrder;
        return list + QString::number(header->sortIndicatorSection()) + (isAscending ? "+" : "-");
    }
    /// In the heading of a column, `fromEdge` pixels from its right edge.
    void Tap(int column, int fromEdge = 30, Qt::MouseButton button = kLeft, Qt::KeyboardModifiers keys = {},
             bool twice = false) {
        const QHeaderView* header = View()->horizontalHeader();
        const QPoint at(header->sectionViewportPosition(column) + header->sectionSize(column) - fromEdge, 8);
        QTest::mouseClick(header->viewport(), button, keys, at);
        if (twice) QTest::mouseDClick(header->viewport(), button, keys, at);
        if (twice) QTest::mouseRelease(header->viewport(), button, keys, at);
        QTest::qWait(0);
    }
    static void Choose(CQuillaryDialog& page, int list, const QString& field) {
        auto* box = page.Control<QComboBox>(list);
        QTest::keyClick(box, Qt::Key_Home);
        while (box->currentText() != field) QTest::keyClick(box, Qt::Key_Down);
    }
    static QStringList Chosen(CQuillaryDialog& page) {
        QStringList chosen;
        for (const int list : {1002, 1003, 1004}) chosen << page.Control<QComboBox>(list)->currentText();
        return chosen;
    }
    static bool IsVisible(CQuillaryDialog& page, int control) { return page.Control<QWidget>(control)->isVisible(); }
    void InDialog(const User::Steps& steps, int button = kOkButton) {
        WindowTest::InDialog(139, "Record", "Sort...", [=](CQuillaryDialog& page) {
            steps(page);
            Press(page, button);
        });
    }

  private:
    const int m_inputInterval = QGuiApplication::styleHints()->keyboardInputInterval();
};

TEST_F(ListSortingTest, TheDialogTakesTheKeysInTheirOrderAndSavesOnce) {
    Open(PeopleParts().Build());
    Tap(1);
    const int saves = files.saves;
    InDialog([](CQuillaryDialog& page) {
        EXPECT_TRUE(page.Control<QComboBox>(1002)->hasFocus());
        EXPECT_EQ(Chosen(page), QStringList({"Age", "(None)", "(None)"}));
        EXPECT_TRUE(IsVisible(page, 1007) && IsVisible(page, 1008) && !IsVisible(page, 1009));
        Choose(page, 1002, "(None)");
        EXPECT_FALSE(IsVisible(page, 1007) || IsVisible(page, 1008));
        Choose(page, 1003, "Member");
        Press(page, 1010);
        Choose(page, 1004, "Name");
    });
    EXPECT_EQ(List(), "1AB ") << "of the dialog's keys none is marked";
    EXPECT_EQ(files.saves, saves + 1);
    InDialog([](CQuillaryDialog& page) { Choose(page, 1002, "Age"); }, kCancelButton);
    InDialog([](CQuillaryDialog& page) {
        EXPECT_EQ(Chosen(page), QStringList({"Member", "Name", "(None)"}));
        EXPECT_TRUE(page.Control<QRadioButton>(1008)->isChecked() && page.Control<QRadioButton>(1009)->isChecked());
    });
    EXPECT_EQ(files.saves, saves + 1) << "the same keys again";
    InDialog([](CQuillaryDialog& page) { Choose(page, 1003, "(None)"); });
    user.ExpectDialog(149, [](CQuillaryDialog& page) { Press(page, kOkButton); });
    ChooseMenu("Tools", "Options...");
    EXPECT_EQ(List(), "1AB ") << "nor when the columns are made anew";
    InDialog([](CQuillaryDialog& page) { Choose(page, 1002, "(None)"); });
    EXPECT_EQ(List(), "1AB ") << "there is no way back";
    EXPECT_THAT(CloseAndReadFile(), testing::HasSubstr(FromHex("FF000000 FF000000 FF000000")));
}

TEST_F(ListSortingTest, TheDialogPreselectsByNameAndHasNoMoreRowsThanFields) {
    for (int fields = 1; fields <= 3; ++fields) {
        ImageParts parts;
        const std::vector<std::string> names = {"Ones", "One", "Two"};
        parts.AddSchema({names.begin(), names.begin() + fields}, {"t", "t", "t"});
        Open(parts.Build())->SetSort({{"oN", true}, {"One", false}, {"Gone", false}});
        InDialog([fields](CQuillaryDialog& page) {
            const QString exact = fields == 1 ? "Ones" : "One";
            EXPECT_EQ(Chosen(page), QStringList({"Ones", exact, "(None)"}));
            for (const int id : {1003, 1050}) EXPECT_EQ(IsVisible(page, id), fields >= 2) << id;
            for (const int id : {1004, 1051}) EXPECT_EQ(IsVisible(page, id), fields >= 3) << id;
        });
    }
}

TEST_F(ListSortingTest, TheDialogFitsASmallScreenAndKeepsStillOnAWideOne) {
    Open(PeopleParts().Build());
    for (const QSize& size : {QSize(216, 288), QSize(600, 450)}) {
        app.Frame().resize(size);
        InDialog(
            [&](CQuillaryDialog& page) {
                const auto isInSight = [&](int id) {
                    const auto* control = page.Control<QWidget>(id);
                    return control->visibleRegion().boundingRect() == control->rect();
                };
                const auto top = [&] {
                    return page.Control<QWidget>(1050)->mapTo(page.Control<QWidget>(180), QPoint()).y();
                };
                const int before = top();
                for (const int list : {1002, 1003, 1004}) {
                    QTest::keyClick(page.Control<QWidget>(list), Qt::Key_Down);
                    QTest::qWait(0);
                    EXPECT_TRUE(isInSight(kOkButton) && isInSight(kCancelButton));
                    EXPECT_EQ(page.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0) << size.width();
                }
                const bool makesRoom = top() - before >= page.Control<QWidget>(1007)->height();
                EXPECT_TRUE(size.width() < 400 ? makesRoom : top() == before);
                QApplication::setActiveWindow(&app.Frame());  // as a window manager does
                for (const int id : {1004, 1002, 1012}) {
                    page.Control<QWidget>(id)->setFocus(Qt::ShortcutFocusReason);
                    EXPECT_TRUE(isInSight(id)) << id;
                }
            },
            kCancelButton);
    }
}

TEST_F(ListSortingTest, ATapOnAHeadingSortsByItAloneAndASecondOneTurnsIt) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    doc->SetSort({{"Gone", false}, {"Name", false}});
    Tap(0);
    EXPECT_EQ(List(), "BA1 0-") << "the only key whose field there is";
    Tap(0);
    EXPECT_EQ(List(), "1AB 0+");
    Tap(1, 30, kLeft, Qt::ControlModifier);
    Tap(1, 30, Qt::RightButton, {}, true);
    Tap(4);                      // the filler column
    Tap(1, 1, kLeft, {}, true);  // an edge
    EXPECT_EQ(List(), "1AB 0+") << "these sort nothing";
    Tap(2, 30, kLeft, {}, true);
    EXPECT_EQ(List(), "A1B 2-") << "two quick ones on another column";
    doc->SetSort({{"Born", false}, {"Name", false}});
    Tap(2);
    EXPECT_EQ(List(), "B1A 2+") << "it was one of two";
    EXPECT_EQ(View()->model()->headerData(2, Qt::Horizontal, Qt::AccessibleDescriptionRole), "Sort key 1, ascending");
    Open(CloseAndReadFile());
    EXPECT_EQ(List(), "B1A 2+");
}

TEST_F(ListSortingTest, AnOrderThatCannotBeSavedStays) {
    const std::string before = PeopleParts().Build();
    Open(before);
    files.full = "/people.pdb";
    user.ExpectMessage(kDiskFull);
    Tap(0);
    EXPECT_EQ(Title() + List(), "People*1AB 0+");
    files.full.clear();
    files.writable = false;
    Open(before);
    InDialog([](CQuillaryDialog& page) { Choose(page, 1002, "Age"); });
    EXPECT_EQ(List(), "1BA ");
    EXPECT_EQ(CloseAndReadFile(), before) << "read only";
}

TEST_F(ListSortingTest, LettersGoToTheNextRecordThatBeginsWithThem) {
    ImageParts parts;
    parts.AddSchema({"Name", "Ok"}, {"t", "B"});
    for (const char* name : {"Ann", "Bob", "ada", "An elk", "An ox", "Bea", " "}) parts.Add(2, {name, "true"});
    CQuillaryDoc* doc = Open(parts.Build());
    QTest::keyClick(View(), Qt::Key_Right);
    constexpr int kAtOnce = 0;
    constexpr int kNever = 1000000;
    const struct {
        const char* name;
        const char* letters;
        int pause;
        QString counter;
    } kSteps[] = {
        {"the next one", "a", kAtOnce, "3 of 7"},
        {"which becomes an", "n", kNever, "4 of 7"},
        {"a space between words", " O", kNever, "5 of 7"},
        {"a pause before the space", " ", kAtOnce, "5 of 7"},
        {"after a pause", "b", kAtOnce, "6 of 7"},
        {"none begins with bb, the next one with b", "b", kNever, "2 of 7"},
        {"there is nothing like it", "x", kAtOnce, "2 of 7"},
    };
    for (const auto& step : kSteps) {
        QGuiApplication::styleHints()->setKeyboardInputInterval(step.pause);
        QTest::keyClicks(View(), step.letters);
        EXPECT_EQ(Counter(), step.counter) << step.name;
    }
    EXPECT_EQ(View()->currentIndex().column(), 1);
    doc->SetEditOnSelect(true);
    QGuiApplication::styleHints()->setKeyboardInputInterval(kNever);
    QTest::keyClicks(View(), "x ");
    EXPECT_EQ(Cell(1, 1), "false") << "in the cell of a check box a space switches it";
}

}  // namespace
}  // namespace quillary
