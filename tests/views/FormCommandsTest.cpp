// What a person does in the record form with whole records: go through them, add, copy, delete, look without changing.
#include <QAccessible>
#include <QClipboard>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>

#include "db/Layout.h"
#include "tests/views/FormTest.h"
#include "ui/ToolBars.h"
#include "views/EditRecordDlg.h"

namespace quillary {
namespace {

constexpr char kDelete[] = "Are you sure that you want to delete this record?";
constexpr char kCommit[] = "Commit current record?";

class FormCommandsTest : public FormTest {
  protected:
    /// The commands that are enabled, of New, Duplicate, Delete, Previous and Next.
    static std::string Enabled(const CQuillaryDialog& page) {
        std::string letters;
        for (const ToolButton& command : ButtonsOf(kToolBarRecord).first(5)) {
            const auto* button = page.Control<QToolButton>(command.command);
            if (button->isEnabled()) letters += button->toolTip().left(2).toStdString();
        }
        return letters;
    }
    static void Type(CQuillaryDialog& page, const QString& text, int id = 100) {
        page.Control<QWidget>(id)->setFocus();
        QTest::keyClicks(page.Control<QWidget>(id), text);
    }
    void PressCtrlN() {
        QApplication::setActiveWindow(&app.Frame());  // as a window manager does after a message box
        QTest::keyClick(View(), Qt::Key_N, Qt::ControlModifier);
    }
    [[nodiscard]] std::string Names() {
        std::string names;
        for (std::size_t row = 0; row < Doc().Shown().size(); ++row) names += StoredRecord(row)[0] + ' ';
        return names;
    }
};

TEST_F(FormCommandsTest, NextAndPreviousStoreAtOnceAndEndAtTheEnds) {
    OpenForEditing(PeopleParts());
    InForm(0, [this](CQuillaryDialog& page) {
        EXPECT_TRUE(inputPanel.shown);
        EXPECT_EQ(Enabled(page), "NeDuDeNe");
        EXPECT_EQ(page.Control<QToolButton>(ID_FORM_NEXT)->toolTip(), "Next");
        Type(page, "x");
        Press(page, ID_FORM_NEXT);
        EXPECT_EQ(StoredRecord(0)[0], "xAda") << "in the file while the form shows another record";
        EXPECT_EQ(Shown(page, 100), "Bob\r\nsecond line");
        EXPECT_EQ(app.Frame().focusWidget(), page.Control<QWidget>(100));
        EXPECT_EQ(Enabled(page), "NeDuDePrNe");
        EXPECT_EQ(Counter(), "2 of 3");
        QTest::keyClick(page.Control<QWidget>(101), Qt::Key_PageDown, Qt::ControlModifier);
        EXPECT_EQ(Enabled(page), "NeDuDePr");
        Type(page, "y");
        QTest::keyClick(page.Control<QWidget>(100), Qt::Key_PageUp, Qt::ControlModifier);
        EXPECT_EQ(Shown(page, 100), "Bob\r\nsecond line");
        Type(page, "z");
        QTest::keyClick(page.Control<QWidget>(101), Qt::Key_Escape);
    });
    EXPECT_EQ(Names(), "xAda Bob\r\nsecond line y100%% of %d ") << "Cancel drops what came after";
    EXPECT_EQ(Counter(), "1 of 3");
}

TEST_F(FormCommandsTest, NewAsksOnANewRecordAndNothingIsAddedTwice) {
    OpenForEditing(AllTypesParts());
    InForm(0, [this](CQuillaryDialog& page) {
        Type(page, "x");
        QTest::keyClick(page.Control<QWidget>(100), Qt::Key_N, Qt::ControlModifier);
        EXPECT_EQ(Enabled(page), "Ne");
        EXPECT_EQ(Names(), "xAda\r\nwas here Bob ");
        Type(page, "Cleo");
        user.ExpectMessage(kCommit, "Cancel");
        Press(page, ID_FORM_NEW);
        EXPECT_EQ(Shown(page, 100), "Cleo");
        EXPECT_EQ(Doc().Shown().size(), 2U);
        user.ExpectMessage(kCommit, "OK");
        Press(page, ID_FORM_NEW);
        EXPECT_EQ(Shown(page, 100), "");
        EXPECT_EQ(Shown(page, 102), "105") << "one increment for the record that was stored";
        Type(page, "Dan");
        Press(page, kOkButton);
    });
    EXPECT_EQ(Names(), "xAda\r\nwas here Bob Cleo Dan ");
}

TEST_F(FormCommandsTest, DuplicateStoresFirstAndShowsTheCopyAtTheEnd) {
    OpenForEditing(PeopleParts());
    InForm(0, [this](CQuillaryDialog& page) {
        Type(page, "x");
        Press(page, ID_FORM_DUPLICATE);
        EXPECT_EQ(Enabled(page), "NeDuDePr");
        EXPECT_EQ(StoredEntries(0), StoredEntries(3));
        Type(page, "copy of ");
        Press(page, kOkButton);
    });
    EXPECT_EQ(Names(), "xAda Bob\r\nsecond line 100%% of %d copy of xAda ");
}

TEST_F(FormCommandsTest, DeleteRemovesOnlyThatRecordAndAsksUnlessToldNotTo) {
    for (const bool asks : {true, false}) {
        settings.numbers["ConfirmRecDelete"] = asks;
        OpenForEditing(PeopleParts());
        InForm(0, [&](CQuillaryDialog& page) {
            Type(page, "never stored");
            if (asks) user.ExpectMessage(kDelete, "No");
            if (asks) Press(page, ID_FORM_DELETE);
            EXPECT_EQ(Shown(page, 100), "never storedAda");
            if (asks) user.ExpectMessage(kDelete, "Yes");
            Press(page, ID_FORM_DELETE);
            EXPECT_EQ(page.result(), QDialog::Accepted);
        });
        EXPECT_EQ(Names(), "Bob\r\nsecond line 100%% of %d ");
        EXPECT_EQ(Counter(), "1 of 2");
    }
}

TEST_F(FormCommandsTest, AFullDatabaseRefusesBeforeAnythingIsTyped) {
    const QString full = "A database holds at most 65,531 records. The record was not added.";
    ImageParts parts;
    parts.AddSchema({"A"}, {"T"});
    for (std::size_t i = 0; i + 1 < kMaxRecords; ++i) parts.Add(2, {"a"});
    OpenForEditing(parts);
    user.ExpectDialog(173, [&](CQuillaryDialog& page) {
        Type(page, "b");
        user.ExpectMessage(full);
        Press(page, ID_FORM_NEW);
        Press(page, kOkButton);
    });
    PressCtrlN();
    user.ExpectMessage(full);
    PressCtrlN();
    InForm(0, [&](CQuillaryDialog& page) {
        for (const int command : {ID_FORM_NEW, ID_FORM_DUPLICATE}) {
            user.ExpectMessage(full);
            Press(page, command);
        }
        page.reject();
    });
    EXPECT_EQ(Doc().RecordCount(), kMaxRecords);
}

TEST_F(FormCommandsTest, ViewingChangesNothingUntilEditingBegins) {
    const struct {
        const char* name;
        int id;
        std::function<void(QWidget*)> act;
        bool begins;
        QString typed = {};
    } kRows[] = {
        {"F2", 104, [](QWidget* w) { QTest::keyClick(w, Qt::Key_F2); }, true},
        {"a character", 100, [](QWidget* w) { QTest::keyClick(w, Qt::Key_X); }, true, "xAda\r\nwas here"},
        {"the first one of a date", 104, [](QWidget* w) { QTest::keyClicks(w, "1/2/2003"); }, true, "1/2/2003"},
        {"the first one of a list", 106, [](QWidget* w) { QTest::keyClicks(w, "r"); }, true, "red"},
        {"a blank on a check box", 103, [](QWidget* w) { QTest::keyClick(w, Qt::Key_Space); }, true},
        {"a click into a text", 108, [](QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }, true},
        {"a click on a check box", 103, [](QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }, true},
        {"a click on a list", 106, [](QWidget* w) { QTest::mouseClick(w, Qt::LeftButton); }, true},
        {"the right button", 101, [](QWidget* w) { QTest::mousePress(w, Qt::RightButton); }, false},
        {"Tab", 101, [](QWidget* w) { QTest::keyClick(w, Qt::Key_Tab); }, false},
        {"an arrow in a list", 106, [](QWidget* w) { QTest::keyClick(w, Qt::Key_Down); }, false},
        {"an arrow in a date", 104, [](QWidget* w) { QTest::keyClick(w, Qt::Key_Up); }, false},
        {"erasing", 108, [](QWidget* w) { QTest::keyClick(w, Qt::Key_Delete); }, false},
        {"copying", 108, [](QWidget* w) { QTest::keyClick(w, Qt::Key_C, Qt::ControlModifier); }, false},
    };
    for (const auto& r : kRows) {
        Open(AllTypesParts().Build());
        InForm(0, [&](CQuillaryDialog& page) {
            auto* line = page.Control<QLineEdit>(101);
            const QColor grey = line->palette().color(QPalette::Base);
            EXPECT_EQ(grey, QColor(0xC0, 0xC0, 0xC0));
            EXPECT_FALSE(inputPanel.shown);
            EXPECT_TRUE(QAccessible::queryAccessibleInterface(line)->state().readOnly);
            page.Control<QWidget>(r.id)->setFocus();
            QWidget* target = r.id == 104 ? app.Frame().focusWidget() : page.Control<QWidget>(r.id);
            r.act(target);
            EXPECT_EQ(line->isReadOnly(), !r.begins) << r.name;
            EXPECT_EQ(line->palette().color(QPalette::Base) == grey, !r.begins) << r.name;
            EXPECT_EQ(page.IsChanged(), !r.typed.isEmpty()) << r.name;
            EXPECT_TRUE(inputPanel.shown || r.id != 100) << r.name;
            EXPECT_TRUE(r.typed.isEmpty() || Shown(page, r.id) == r.typed) << r.name;
            page.reject();
        });
    }
}

TEST_F(FormCommandsTest, ArrowsGoFromFieldToFieldOrScroll) {
    app.Frame().resize(240, 320);
    OpenForEditing(AllTypesParts());
    const struct {
        int from, key, to;
    } kSteps[] = {
        {100, Qt::Key_Up, 100},   {100, Qt::Key_Down, 100}, {100, Qt::Key_Down, 101}, {101, Qt::Key_Down, 102},
        {102, Qt::Key_Down, 103}, {103, Qt::Key_Up, 102},   {103, Qt::Key_Down, 104}, {107, Qt::Key_Up, 106},
        {106, Qt::Key_Up, 106},   {109, Qt::Key_Down, 109},
    };
    InForm(0, [&](CQuillaryDialog& page) {
        auto* form = page.Control<QScrollArea>(1049);
        for (const auto& step : kSteps) {
            page.Control<QWidget>(step.from)->setFocus();
            QTest::keyClick(app.Frame().focusWidget(), static_cast<Qt::Key>(step.key));
            QWidget* to = page.Control<QWidget>(step.to);
            EXPECT_TRUE(to == app.Frame().focusWidget() || to->isAncestorOf(app.Frame().focusWidget()))
                << step.from << " to " << step.to;
            EXPECT_TRUE(form->viewport()->rect().contains(QRect(to->mapTo(form->viewport(), QPoint()), to->size())))
                << step.to << " in sight";
        }
        Press(page, ID_FORM_NEXT);  // there is no date to step
        page.Control<QWidget>(104)->setFocus();
        QTest::keyClick(app.Frame().focusWidget(), Qt::Key_Down);
        EXPECT_EQ(app.Frame().focusWidget()->objectName().toInt(), 105);
        EXPECT_FALSE(page.IsChanged());
        page.reject();
    });
    Open(AllTypesParts().Build());
    InForm(0, [&](CQuillaryDialog& page) {
        const auto* bar = page.Control<QScrollArea>(1049)->verticalScrollBar();
        page.Control<QWidget>(101)->setFocus();
        for (const auto& [key, value] : {std::pair(Qt::Key_Down, bar->singleStep()), {Qt::Key_Up, 0}}) {
            QTest::keyClick(page.Control<QWidget>(101), key);
            EXPECT_EQ(bar->value(), value);
        }
        for (const int id : {100, 101, 108}) {
            EXPECT_EQ(page.Control<QWidget>(id)->accessibleDescription(), "read only") << id;
        }
        page.reject();
    });
}

TEST_F(FormCommandsTest, AReadOnlyDatabaseCanOnlyBeLookedAt) {
    OpenForEditing(AllTypesParts());
    files.writable = false;
    Open(files.contents["/people.pdb"]);
    InForm(0, [](CQuillaryDialog& page) {
        EXPECT_EQ(Enabled(page), "Ne") << "the next one";
        EXPECT_EQ(page.Control<QToolButton>(ID_FORM_DELETE)->toolTip(),
                  "<qt>This database is read only: its file or folder cannot be written.</qt>");
        QTest::keyClick(page.Control<QWidget>(100), Qt::Key_X);
        EXPECT_EQ(Shown(page, 100), "Ada\r\nwas here");
        EXPECT_TRUE(QToolTip::isVisible());
        Press(page, kOkButton);
    });
    PressCtrlN();  // opens nothing
}

TEST_F(FormCommandsTest, AFailedSaveKeepsTheChangeAndTheFormGoesOn) {
    OpenForEditing(PeopleParts());
    files.full = "/people.pdb";
    InForm(0, [&](CQuillaryDialog& page) {
        Type(page, "x");
        user.ExpectMessage(kDiskFull);
        Press(page, ID_FORM_NEXT);
        EXPECT_EQ(Shown(page, 100), "Bob\r\nsecond line");
        EXPECT_EQ(Title(), "People*");
        EXPECT_EQ(StoredRecord(0)[0], "Ada");
        files.full.clear();
        Type(page, "y");
        Press(page, kOkButton);
    });
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(Names(), "xAda yBob\r\nsecond line 100%% of %d ");
}

TEST_F(FormCommandsTest, ReloadingWhatAnotherProgramWroteEndsTheForm) {
    OpenForEditing(PeopleParts());
    InForm(0, [&](CQuillaryDialog& page) {
        ImageParts other = PeopleParts();
        other.records.resize(5);
        files.contents["/people.pdb"] = other.Build();
        Type(page, "x");
        user.ExpectMessage(kChangedByAnother, "Reload");
        Press(page, ID_FORM_NEXT);
        EXPECT_TRUE(QTest::qWaitFor([&page] { return !page.isVisible(); }));
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return Counter() == "1 of 1"; }));
    EXPECT_EQ(Cell(0, 0), "Ada");
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(user.messages, 1) << "what was given up is not asked about again";
}

TEST_F(FormCommandsTest, TheListSortsAnewOnlyAfterSomethingWasStored) {
    Open(PeopleParts().Build())->SetSort({{"Name", false}});  // Ada, Bob, 100: not sorted
    Doc().SetEditOnSelect(true);
    for (const int button : {kCancelButton, kOkButton}) {
        InForm(0, [button](CQuillaryDialog& page) {
            if (button == kOkButton) Type(page, "Z");
            Press(page, button);
        });
        EXPECT_EQ(Cell(0, 0), button == kOkButton ? "100% of 0" : "Ada");
    }
    EXPECT_EQ(StoredRecord(2)[0], "ZAda");
}

TEST_F(FormCommandsTest, ReturnPasteAndSaveWorkWhereverTheFocusIs) {
    OpenForEditing(AllTypesParts());
    InForm(0, [&](CQuillaryDialog& page) {
        auto* notes = page.Control<QWidget>(100);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(notes, &held);
        EXPECT_EQ(Shown(page, 100), "Ada\r\nwas here") << "the rest of the Return that opened the form";
        QGuiApplication::clipboard()->setText("7");
        for (const int id : {100, 101, 108}) {
            page.Control<QWidget>(id)->setFocus();
            QTest::keyClick(page.Control<QWidget>(id), Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
        }
        QTest::keyClick(page.Control<QWidget>(108), Qt::Key_S, Qt::ControlModifier);
        const auto stored = StoredRecord(0);
        EXPECT_EQ(stored[0] + ' ' + stored[1] + ' ' + stored[8], "7Ada\r\nwas here 712.5 7ada@example.org");
        EXPECT_FALSE(page.IsChanged());
        EXPECT_TRUE(page.Control<QWidget>(108)->hasFocus());
        QTest::keyClick(page.Control<QWidget>(108), Qt::Key_8);
        EXPECT_EQ(Shown(page, 108), "78ada@example.org") << "a save leaves the caret where it is";
        QTest::keyClick(page.Control<QWidget>(108), Qt::Key_Z, Qt::ControlModifier);
        QGuiApplication::clipboard()->setText("x\ty\r\n");
        QTest::keyClick(page.Control<QWidget>(108), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(Shown(page, 108), "7x yada@example.org") << "nothing invisible gets into one line";
        QTest::keyClick(page.Control<QWidget>(108), Qt::Key_Return);
        EXPECT_EQ(page.result(), QDialog::Accepted);
    });
    for (const int id : {100, int(kCancelButton)}) {
        InForm(0, [&](CQuillaryDialog& page) {
            page.Control<QWidget>(id)->setFocus();
            QTest::keyClick(page.Control<QWidget>(id), Qt::Key_Return,
                            id == 100 ? Qt::ControlModifier : Qt::NoModifier);
            EXPECT_EQ(page.result(), id == 100 ? QDialog::Accepted : QDialog::Rejected);
        });
    }
}

TEST_F(FormCommandsTest, TheSecondHalfOfADoubleClickDoesNothing) {
    ImageParts parts = AllTypesParts();
    for (int i = 0; i < 40; ++i) parts.Add(2, {"x"});
    Open(parts.Build());
    const QRect row = View()->visualRect(View()->model()->index(3, 0));
    user.ExpectDialog(173, [](CQuillaryDialog& page) {
        for (const int id : {int(kOkButton), int(ID_FORM_NEXT), 100}) {
            auto* button = page.Control<QWidget>(id);
            QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(5, 5), button->mapToGlobal(QPointF(5, 5)),
                               Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(button, &second);
            QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(5, 5));
        }
        EXPECT_TRUE(page.isVisible());
        EXPECT_EQ(Shown(page, 100), "x");
        Press(page, kOkButton);
    });
    QTest::mouseClick(View()->viewport(), Qt::LeftButton, {}, row.center());
}

TEST_F(FormCommandsTest, NothingIsCutOffOnAnyScreen) {
    ImageParts parts;
    std::vector<std::string> names = kAllNames;
    names[0] = std::string(60, 'W');
    names[1] = "The amount of money that was asked for it when it was bought";
    parts.AddSchema(names, {"t", "F", "I1;1", "B", "D", "d", "Lred", "P", "M", "W"});
    parts.Add(2, {"x"});
    OpenForEditing(parts);
    for (const QSize size : {QSize(240, 320), QSize(900, 700)}) {
        app.Frame().resize(size);
        InForm(0, [](CQuillaryDialog& page) {
            auto* form = page.Control<QScrollArea>(1049);
            int bottom = 0;
            for (int id = 100; id < 110; ++id) {
                const QRect place = page.Control<QWidget>(id)->geometry();
                EXPECT_GE(place.top(), bottom) << id;
                EXPECT_GE(place.height(), id == 100 ? 69 : id == 103 ? 21 : 23) << id;
                EXPECT_LE(place.right(), form->viewport()->width()) << id;
                EXPECT_GE(place.width(), id == 108 || id == 109 ? 101 : 140) << id;  // two have a button behind them
                bottom = place.bottom();
            }
            for (const QLabel* label : form->findChildren<QLabel*>()) {
                const QRect ink = label->fontMetrics().boundingRect(QRect(0, 0, label->width(), 9999),
                                                                    Qt::TextWrapAnywhere, label->text());
                EXPECT_GE(label->height(), ink.height() - 1) << label->text().toStdString();
            }
            EXPECT_GE(form->widget()->height(), bottom);
            Press(page, kOkButton);
        });
    }
}

}  // namespace
}  // namespace quillary
