// The filter dialog, and what the record list does with a filter.
#include <QAbstractSpinBox>
#include <QAction>

#include "query/Filter.h"
#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

class FilterTest : public WindowTest {
  protected:
    CQuillaryDoc* OpenTyped() {
        ImageParts parts;
        parts.AddSchema({"Name", "No", "Seq", "Ok", "Due", "At", "Kind", "Phone", "Mail", "Web"},
                        {"t", "F", "I1;1", "B", "D", "d", "Lred;blue", "P", "M", "W"});
        parts.Add(2, {"Ann", "1", "1", "true", "36590", "37800", "red", "5551234", "a@b", "c"});
        parts.Add(2, {"bob", "2", "2", "false", "", "37859", "blue", "", "", ""});
        parts.Add(2, {"Cid", "3", "3", "false", "36592", "0", "green", "", "", ""});
        return Open(parts.Build());
    }
    void Filter(const User::Steps& steps, int endedBy = kOkButton) {
        InDialog(140, "Record", "Filter...", [=](CQuillaryDialog& page) {
            steps(page);
            Press(page, endedBy);
        });
    }
    static void Choose(CQuillaryDialog& page, int id, const QString& text) {
        auto* box = page.Control<QComboBox>(id);
        ASSERT_GE(box->findText(text), 0) << text.toStdString();
        box->setCurrentIndex(box->findText(text));
    }
    /// What the list shows, and what the counter says of the rest.
    [[nodiscard]] QString Shown() {
        QStringList names;
        for (int row = 0; row < View()->model()->rowCount(); ++row) names << Cell(row, 0);
        return names.join(u' ') + u'/' +
               app.Frame().findChild<QLabel*>(QStringLiteral("1039"))->accessibleDescription();
    }
};

TEST_F(FilterTest, EveryTypeHasItsOperatorsAndItsEditor) {
    OpenTyped();
    // Field, operator; then edit, check box, date, time, list.
    const int kRows[][7] = {{1029, 1030, 1031, 1003, 1041, 1042, 1034},
                            {1032, 1007, 1033, 1004, 1043, 1044, 1035},
                            {1008, 1010, 1009, 1005, 1045, 1046, 1012}};
    const QString number = "is|is not|less than|greater than", moment = "is|is not|is before|is after";
    const std::vector<std::tuple<QString, QString, int>> kTypes = {
        {"All Fields", "is|contains", 2},
        {"Name", "is|contains", 2},
        {"No", number, 2},
        {"Seq", number, 2},
        {"Ok", "is|is not", 3},
        {"Due", moment, 4},
        {"At", moment, 5},
        {"Kind", "is|is not", 6},
        {"Phone", "is|contains", 2},
        {"Mail", "is|contains", 2},
        {"Web", "is|contains", 2},
        {"None", "", 0},
    };
    Filter(
        [&](CQuillaryDialog& page) {
            EXPECT_FALSE(page.Control<QWidget>(1002)->isVisible() || page.Control<QWidget>(1040)->isVisible());
            for (const auto& row : kRows) {
                EXPECT_EQ(page.Control<QComboBox>(row[0])->currentText(), "None");
                for (const auto& [field, operators, editor] : kTypes) {
                    Choose(page, row[0], field);
                    QStringList items;
                    auto* box = page.Control<QComboBox>(row[1]);
                    for (int i = 0; box->isVisible() && i < box->count(); ++i) items << box->itemText(i);
                    EXPECT_EQ(items.join(u'|'), operators) << field.toStdString();
                    for (int k = 2; k < 7; ++k) {
                        EXPECT_EQ(page.Control<QWidget>(row[k])->isVisible(), k == editor) << field.toStdString() << k;
                        EXPECT_FALSE(page.Control<QWidget>(row[k])->accessibleName().isEmpty()) << row[k];
                    }
                }
            }
            EXPECT_FALSE(page.IsChanged());
            Choose(page, 1008, "Ok");
            EXPECT_TRUE(page.IsChanged());
        },
        kCancelButton);
    EXPECT_EQ(files.saves, 0);
}

TEST_F(FilterTest, AChosenFieldBringsItsValueIntoSight) {
    app.Frame().resize(274, 320);
    OpenTyped();
    Filter(
        [](CQuillaryDialog& page) {
            page.Control<QWidget>(1008)->setFocus();
            Choose(page, 1008, "Due");
            const auto* value = page.Control<QAbstractSpinBox>(1045);
            QTest::qWait(0);  // for the layout
            EXPECT_EQ(value->visibleRegion(), value->rect());
        },
        kCancelButton);
}

TEST_F(FilterTest, ConditionsMoveUpNarrowAndGoStale) {
    CQuillaryDoc* doc = OpenTyped();
    Filter([&](CQuillaryDialog& page) {
        Choose(page, 1032, "Due");
        Choose(page, 1007, "is before");
        QTest::keyClicks(page.Control<QAbstractSpinBox>(1043), "03/07/2004");
        Choose(page, 1008, "At");
        QTest::keyClicks(page.Control<QAbstractSpinBox>(1046), "10:30");
        Choose(page, 1011, "or (match any)");
        EXPECT_TRUE(page.IsChanged());
        QTest::keyClicks(page.Control<QAbstractSpinBox>(1046), "x");
        user.ExpectMessage("Filter 3: \"10:30x\" is no time. Write it like 02:30 pm or 14:30.");
        Press(page, kOkButton);
        EXPECT_EQ(app.Frame().focusWidget(), page.Control<QAbstractSpinBox>(1046));
        QTest::keyClicks(app.Frame().focusWidget(), "10:30");
    });
    EXPECT_EQ(doc->Filter(), (FilterSettings{{{false, "Due", 2, "36591"}, {false, "At", 0, "37800"}}, false, false}))
        << "the choices below count with the first row only";
    EXPECT_EQ(Shown(), "Ann bob/1 records are hidden");
    EXPECT_EQ(files.saves, 1);
    Filter([&](CQuillaryDialog& page) {
        EXPECT_EQ(page.Control<QComboBox>(1030)->currentText(), "is before");
        EXPECT_EQ(page.Control<QAbstractSpinBox>(1041)->text(), "03/07/2004");
        EXPECT_EQ(page.Control<QAbstractSpinBox>(1044)->text(), "10:30 am");
        Choose(page, 1029, "Ok");
        QTest::keyClick(page.Control<QWidget>(1003), Qt::Key_Space);
        Choose(page, 1032, "Kind");
        Choose(page, 1035, "blue");
        Choose(page, 1011, "or (match any)");
        Choose(page, 1002, "Filtered records");
    });
    EXPECT_EQ(doc->Filter(), (FilterSettings{{{false, "Ok", 0, "T"}, {false, "Kind", 0, "blue"}}, true, true}));
    Filter([](CQuillaryDialog& page) {
        EXPECT_EQ(page.Control<QComboBox>(1002)->currentText(), "Filtered records");
        for (const int field : {1029, 1032}) Choose(page, field, "None");
    });
    EXPECT_EQ(doc->Filter(), (FilterSettings{{}, true, true})) << "kept";
    EXPECT_EQ(Shown(), "Ann bob/1 records are hidden");
    EXPECT_FALSE(app.Frame().findChild<QAction*>(QStringLiteral("32788"))->isEnabled());
    files.writable = false;
    Open(files.contents["/people.pdb"]);
    Filter([](CQuillaryDialog& page) { Choose(page, 1029, "All Fields"); });
    EXPECT_EQ(Shown(), "bob Cid/1 records are hidden") << "read only, in memory";
    EXPECT_EQ(files.saves, 3);
}

TEST_F(FilterTest, WhatCannotBeStoredIsRefusedAndWhatCannotBeShownStays) {
    ImageParts parts = PeopleParts();
    parts.tail = std::string(40, 'x') + FromHex("02 01") + "-700000" + std::string(33, '\0') + FromHex("04 02") +
                 std::string(42, '\0') + FromHex("FF000000 FF000000 FF000000");
    CQuillaryDoc* doc = Open(parts.Build());
    const auto before = doc->Filter().conditions;
    ASSERT_EQ(before.size(), 2U);
    Filter([](CQuillaryDialog& page) { EXPECT_EQ(page.Control<QAbstractSpinBox>(1043)->text(), ""); });
    EXPECT_EQ(doc->Filter().conditions, before);
    Filter([&](CQuillaryDialog& page) {
        user.ExpectMessage("These characters cannot be stored in a filter condition: \u0416");
        user.ExpectMessage("A filter condition holds at most 39 bytes of text; \"" + QString(40, u'y') + "\" has 40.");
        for (const QString& typed : {QStringLiteral("a\u0416"), QString(40, u'y'), QString(39, u'y')}) {
            page.Control<QLineEdit>(1031)->setText(typed);
            if (typed.size() != 39) Press(page, kOkButton);
        }
    });
    EXPECT_EQ(doc->Filter().conditions[0].value, std::string(39, 'y'));
}

TEST_F(FilterTest, AListConditionIsAboutAnItem) {
    ImageParts parts;
    parts.AddSchema({"Kind", "Bare"}, {"Lred;blue", "L"});
    parts.Add(2, {"red", ""});
    CQuillaryDoc* doc = Open(parts.Build());
    doc->SetFilter({{{false, "Kind", 0, "gone"}}, false, false});
    Filter([](CQuillaryDialog& page) {
        EXPECT_EQ(page.Control<QComboBox>(1034)->currentText(), "red");
        Choose(page, 1032, "Bare");
        EXPECT_EQ(page.Control<QComboBox>(1035)->count(), 0);
    });
    EXPECT_EQ(doc->Filter().conditions,
              (std::vector<FilterCondition>{{false, "Kind", 0, "red"}, {false, "Bare", 0, ""}}));
}

TEST_F(FilterTest, ATappedCheckBoxFiltersSortsAndSavesOnce) {
    const std::vector<std::tuple<FilterCondition, SortSettings, QString, QString>> kCases = {
        {{false, "Ok", 0, "F"}, {}, "bob Cid/1", "Cid/2"},
        {{true, "", 1, "LSE"}, {}, "bob Cid/1", "Cid/2"},
        {{false, "Name", 1, "b"}, {}, "bob/2", "bob/2"},
        {{false, "Ok", 0, "F"}, {{"Ok", true}}, "bob Cid/1", "Cid/2"},
        {{false, "No", 3, "1"}, {{"Ok", false}}, "bob Cid/1", "Cid bob/1"},
    };
    for (const auto& [condition, sort, before, after] : kCases) {
        CQuillaryDoc* doc = OpenTyped();
        doc->SetEditOnSelect(true);
        doc->SetSort(sort);
        SetAndApplyFilter(*doc, {{condition}, false, false});
        ASSERT_TRUE(View()->RebuildList(true, true));
        EXPECT_EQ(Shown(), before + " records are hidden");
        const int saves = files.saves;
        View()->setCurrentIndex(View()->model()->index(0, 3));
        QTest::keyClick(View(), Qt::Key_Space);
        EXPECT_EQ(Shown(), after + " records are hidden");
        EXPECT_EQ(files.saves, saves + 1);
    }
}

TEST_F(FilterTest, AListWithoutRowsTellsTheWayBack) {
    CQuillaryDoc* doc = OpenTyped();
    SetAndApplyFilter(*doc, {{{false, "Name", 0, "nobody"}}, false, false});
    ASSERT_TRUE(View()->RebuildList(true, true));
    EXPECT_TRUE(View()->accessibleDescription().contains("Record > Show All"));
    doc->SetFilter({});
    ASSERT_TRUE(View()->RebuildList(true, true));
    EXPECT_TRUE(View()->accessibleDescription().contains("Record > Filter...")) << "Show All is not enabled";
}

}  // namespace
}  // namespace quillary
