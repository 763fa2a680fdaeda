// The field definitions editor, over the open database and over one that is being created, and the types of the fields.
#include "admin/FieldDefinitionsDlg.h"

#include <QMenu>

#include "admin/FieldTypeDlg.h"
#include "tests/ui/WindowTest.h"
#include "ui/RowListView.h"

namespace quillary {
namespace {

class FieldDefinitionsTest : public WindowTest {
  protected:
    static CRowListView* List(CQuillaryDialog& page) { return page.Control<CRowListView>(1017); }
    static void Tap(CQuillaryDialog& page, int row, int column) {
        CRowListView* list = List(page);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, column)).center());
    }
    /// Where the keys go once the window manager has made the window the active one.
    [[nodiscard]] QWidget* Focus() {
        QApplication::setActiveWindow(&app.Frame());
        return QApplication::focusWidget();
    }
    /// Into the editor of a name that is open.
    void Write(const QString& name) {
        auto* editor = qobject_cast<QLineEdit*>(Focus());
        ASSERT_TRUE(editor);
        editor->selectAll();
        editor->insert(name);
    }
    void Rename(CQuillaryDialog& page, int row, const QString& name) {
        Tap(page, row, 0);
        Write(name);
    }
    static QStringList Names(CQuillaryDialog& page) {
        QStringList names;
        for (int row = 0; row < List(page)->RowCount(); ++row) names << List(page)->Text(row);
        return names;
    }
    void Retype(CQuillaryDialog& page, int row, FieldType type) {
        user.ExpectDialog(150, [type](CQuillaryDialog& typePage) {
            Choose(typePage, type);
            Press(typePage, kOkButton);
        });
        Tap(page, row, 1);
    }
    void InEditor(User::Steps steps) {
        user.ExpectDialog(136, std::move(steps));
        ChooseMenu("Database", "Field Definitions...");
    }
    /// Does the steps with the field in the dialog of its type, and presses the button.
    bool RunType(FieldEdit& edit, const User::Steps& steps, int button = kOkButton, bool converts = true) {
        user.ExpectDialog(150, [&](CQuillaryDialog& page) {
            steps(page);
            Press(page, button);
        });
        return RunFieldType(edit, converts, AnsiText::Windows1252(), app.Frame());
    }
    static void Choose(CQuillaryDialog& page, FieldType type) {
        page.Control<QComboBox>(1011)->setCurrentIndex(static_cast<int>(type));
    }
    static FieldEdit Edited(std::string_view storedType) {
        const Field field = MakeField("Name", storedType);
        return {{field, 0}, false, field};
    }
    static std::string Encoded(const FieldEdit& edit) { return StoredFieldType(Settled(edit).field); }
};

TEST_F(FieldDefinitionsTest, AtOkEveryRecordGetsTheNewLayoutInOneSave) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    doc->SetSort({{"Born", true}});
    files.saves = 0;
    InEditor([this, doc](CQuillaryDialog& page) {
        EXPECT_EQ(Names(page), QStringList({"Name", "Age", "Born", "Member"}));
        EXPECT_FALSE(page.IsChanged());
        Retype(page, 3, FieldType::Number);
        EXPECT_EQ(List(page)->Text(3, 1), "Number...");
        Rename(page, 0, " Who");
        EXPECT_TRUE(page.IsChanged()) << "the name is still being edited";
        Tap(page, 1, 0);
        Press(page, ID_FIELD_REMOVE);
        EXPECT_EQ(List(page)->SelectedRow(), 0);
        Press(page, ID_FIELD_UP);  // nothing at the top
        Press(page, ID_FIELD_DOWN);
        EXPECT_EQ(Names(page), QStringList({"Born", " Who", "Member"}));
        Press(page, ID_FIELD_INSERT);
        Write("Paid");
        Retype(page, 2, FieldType::Checkbox);
        EXPECT_EQ(doc->FieldCount(), 4U) << "pending";
        Rename(page, 3, "Counts");
        Press(page, kOkButton);  // takes what is being edited
    });
    EXPECT_EQ(files.saves, 1);
    EXPECT_TRUE(View()->horizontalHeader()->isSortIndicatorShown());
    EXPECT_EQ(View()->horizontalHeader()->sortIndicatorSection(), 0) << "the mark went with its field";
    const std::vector<std::vector<std::string>> expected = {
        {"36500", "Ada", "false", "1"}, {"0", "100%% of %d", "false", "1"}, {"", "Bob\r\nsecond line", "false", "0"}};
    app.CloseDocument();
    EXPECT_EQ(ShownTexts(Stored()), expected);
}

TEST_F(FieldDefinitionsTest, CancelAndAnUnchangedOkLeaveTheFileAlone) {
    Open(PeopleParts().Build());
    for (const bool cancels : {true, false}) {
        InEditor([this, cancels](CQuillaryDialog& page) {
            if (cancels) {
                Tap(page, 3, 0);
                Press(page, ID_FIELD_REMOVE);
            }
            Retype(page, 0, FieldType::List);
            if (cancels) return Press(page, kCancelButton);
            Retype(page, 0, FieldType::Text);  // the former type again
            Rename(page, 1, "Age");
            EXPECT_FALSE(page.IsChanged());
            Press(page, kOkButton);
        });
    }
    EXPECT_EQ(files.saves, 0);
    EXPECT_EQ(Cell(0, 0), "Ada");
}

TEST_F(FieldDefinitionsTest, WhatIsRefusedStaysOpenForEditing) {
    const std::pair<QString, QString> kRows[] = {
        {"   ", "The blank field must have a name."},
        {"caf\u00e9 \u2713", "These characters cannot be stored in the name of a field: \u2713"},
    };
    Open(PeopleParts().Build());
    InEditor([&](CQuillaryDialog& page) {
        for (const auto& [name, message] : kRows) {
            Rename(page, 2, name);
            user.ExpectMessage(message);
            Press(page, kOkButton);
            EXPECT_EQ(List(page)->SelectedRow(), 2);
            EXPECT_TRUE(qobject_cast<QLineEdit*>(Focus()));
        }
        Write("Name");  // twice the same name is no fault
        while (List(page)->RowCount() < 20) Press(page, ID_FIELD_INSERT), Write("More");
        user.ExpectMessage("A database has at most 20 fields.");
        Press(page, ID_FIELD_INSERT);
        EXPECT_EQ(List(page)->RowCount(), 20);
        List(page)->selectAll();
        Press(page, ID_FIELD_REMOVE);
        EXPECT_FALSE(page.Control<QToolButton>(ID_FIELD_REMOVE)->isEnabled());
        user.ExpectMessage("Please define at least one column.");
        Press(page, kOkButton);
        Press(page, kCancelButton);
    });
}

TEST_F(FieldDefinitionsTest, LossesAreAskedAboutBeforeAnythingChangesAndAFailedSaveTakesThemBack) {
    const QString question = "3 values cannot be converted and will be left empty. Change the fields all the same?";
    const std::string before = PeopleParts().Build();
    const CQuillaryDoc* doc = Open(before);
    files.full = "/people.pdb";
    InEditor([&](CQuillaryDialog& page) {
        Retype(page, 1, FieldType::Number);
        Retype(page, 0, FieldType::Time);
        user.ExpectMessage(question, "Cancel");
        Press(page, kOkButton);
        user.ExpectMessage(question, "Change");
        user.ExpectMessage(kDiskFull);
        Press(page, kOkButton);
        EXPECT_EQ(List(page)->Text(0, 1), "Time...") << "the edits stay";
        EXPECT_EQ(doc->TypeOf(0), FieldType::Text);
        EXPECT_FALSE(doc->IsModified());
        EXPECT_EQ(Cell(0, 0), "Ada");
        EXPECT_EQ(files.contents["/people.pdb"], before);
        files.full.clear();
        user.ExpectMessage(question, "Change");
        Press(page, kOkButton);
    });
    EXPECT_EQ(ShownTexts(Stored())[0][0], "");
}

TEST_F(FieldDefinitionsTest, WorksByKeysAlone) {
    Open(PeopleParts().Build());
    InEditor([this](CQuillaryDialog& page) {
        const auto key = [this](Qt::Key pressed, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(Focus(), pressed, modifiers);
            QTest::qWait(0);
        };
        QTest::qWait(0);  // the menu has gone
        EXPECT_EQ(Focus(), List(page));
        EXPECT_FALSE(inputPanel.shown) << "nobody writes yet";
        key(Qt::Key_F2);
        EXPECT_TRUE(inputPanel.shown);
        Write("lost");
        key(Qt::Key_Escape);
        EXPECT_TRUE(page.isVisible()) << "Escape ends the editing alone";
        key(Qt::Key_Return);
        Write("Who");
        key(Qt::Key_Return);
        EXPECT_TRUE(page.isVisible()) << "Return ends the editing alone";
        key(Qt::Key_Down, Qt::AltModifier);
        key(Qt::Key_Insert);
        Write("New");
        user.ExpectDialog(150, [](CQuillaryDialog& typePage) { QTest::keyClick(&typePage, Qt::Key_Escape); });
        key(Qt::Key_Tab);  // out of the editor, to the type
        key(Qt::Key_Return);
        EXPECT_EQ(Focus(), List(page));
        key(Qt::Key_Down);
        key(Qt::Key_Delete);
        EXPECT_EQ(Names(page), QStringList({"Age", "Who", "New", "Member"}));
        key(Qt::Key_Tab);
        EXPECT_EQ(Focus(), page.Control<QWidget>(kOkButton)) << "no trap for the Tab key";
        key(Qt::Key_Return);
    });
    EXPECT_EQ(View()->model()->headerData(1, Qt::Horizontal).toString(), "Who");
}

TEST_F(FieldDefinitionsTest, WhatTheFileBroughtStaysWithAnotherName) {
    ImageParts parts;
    parts.AddSchema({"Odd\tname", "Kind"}, {"Xfuture", "Lred;green"}, {"007", "5000"});
    parts.Add(2, {"a", "red"});
    Open(parts.Build());
    InEditor([this](CQuillaryDialog& page) {
        Rename(page, 1, "Sort");
        Press(page, kOkButton);
    });
    const std::string image = CloseAndReadFile();
    for (const char* kept : {"Xfuture", "Odd\tname", "Sort", "007", "5000"})
        EXPECT_NE(image.find(kept), image.npos) << kept;
    const CQuillaryDoc* doc = Open(image);
    InEditor([this](CQuillaryDialog& page) {
        Retype(page, 0, FieldType::Number);
        Retype(page, 1, FieldType::Phone);
        Press(page, kOkButton);
    });
    EXPECT_FALSE(doc->Fields()[0].storedType) << "it is no field of an unknown type any more";
    EXPECT_TRUE(doc->Fields()[1].options.items.empty()) << "those of another type";
}

TEST_F(FieldDefinitionsTest, ANewDatabaseBeginsWithANameToWrite) {
    std::optional<std::vector<Field>> fields = std::vector<Field>();
    user.ExpectDialog(136, [this](CQuillaryDialog& page) {
        EXPECT_FALSE(page.IsChanged());
        Write("Tea");
        EXPECT_TRUE(page.IsChanged());
        Press(page, ID_FIELD_INSERT);
        Write("Price");
        Press(page, kOkButton);
    });
    user.ExpectDialog(136, [](CQuillaryDialog& page) {
        EXPECT_EQ(Names(page), QStringList({"Tea", "Price"})) << "of the earlier attempt";
        Press(page, kCancelButton);
    });
    for (const bool made : {true, false}) {
        fields = RunFieldDefinitions(*fields, AnsiText::Windows1252(), app.Frame());
        EXPECT_EQ(fields.has_value(), made);
    }
}

TEST_F(FieldDefinitionsTest, EveryTypeStoresItsOptions) {
    const struct {
        const char *why, *before;
        FieldType type;
        int pane;                                          // that shows
        std::vector<std::pair<int, const char*>> entered;  // an empty text in a check box is a click
        const char* after;
    } kRows[] = {
        {"capitals", "t", FieldType::Text, 151, {{1018, ""}}, "T"},
        {"nothing to set", "t", FieldType::Number, 0, {}, "F"},
        {"both left empty", "I5;7", FieldType::Sequence, 152, {{1019, ""}, {1020, ""}}, "I1;1"},
        {"digits alone", "I5;7", FieldType::Sequence, 152, {{1019, "-1x2"}, {1020, "3"}}, "I12;3"},
        {"no more than 32 bits", "I5;7", FieldType::Sequence, 152, {{1019, "21474836475"}}, "I2147483647;7"},
        {"negative ones of the file", "I-5;-7", FieldType::Sequence, 152, {}, "I-5;-7"},
        {"checked", "B", FieldType::Checkbox, 153, {{1021, ""}}, "B!"},
        {"today", "t", FieldType::Date, 154, {{1023, ""}}, "D!"},
        {"not now", "d!", FieldType::Time, 155, {{1024, ""}}, "d"},
        {"items as they were", "Lred;;green", FieldType::List, 156, {}, "Lred;;green"},
        {"without those of another type", "T", FieldType::Phone, 215, {}, "P"},
    };
    for (const auto& row : kRows) {
        FieldEdit edit = Edited(row.before);
        EXPECT_TRUE(RunType(edit, [&](CQuillaryDialog& page) {
            Choose(page, row.type);
            for (const int pane : {151, 152, 153, 154, 155, 156, 215}) {
                EXPECT_EQ(page.Control<QWidget>(pane)->isVisible(), pane == row.pane) << row.why << ' ' << pane;
            }
            for (const auto& [id, text] : row.entered) {
                if (auto* box = page.Control<QCheckBox>(id)) Click(box);
                if (auto* edit = page.Control<QLineEdit>(id))
                    edit->clear(), edit->setModified(true), QTest::keyClicks(edit, text);
            }
        })) << row.why;
        EXPECT_EQ(Encoded(edit), row.after) << row.why;
    }
}

TEST_F(FieldDefinitionsTest, TriesOtherTypesWithoutLosingWhatWasSet) {
    FieldEdit edit = Edited("t");
    const auto set = [](CQuillaryDialog& page) {
        Choose(page, FieldType::Date);
        Press(page, 1023);
        EXPECT_TRUE(page.IsChanged());
        QTest::keyClick(page.Control<QComboBox>(1022), Qt::Key_End);
        EXPECT_TRUE(page.Control<QCheckBox>(1013)->isChecked()) << "choosing an order is choosing to convert";
        Choose(page, FieldType::Text);
        Choose(page, FieldType::Date);
    };
    EXPECT_FALSE(RunType(edit, set, kCancelButton));
    EXPECT_EQ(Encoded(edit), "t");
    EXPECT_TRUE(RunType(edit, set));
    EXPECT_EQ(Encoded(edit), "D!");
    EXPECT_EQ(edit.definition.convertFrom, DateOrder::YearMonthDay);
    EXPECT_TRUE(RunType(edit, [](CQuillaryDialog& page) {
        EXPECT_EQ(page.Control<QComboBox>(1022)->currentText(), "Y-M-D");
        Press(page, 1013);
    }));
    EXPECT_EQ(edit.definition.convertFrom, DateOrder::MonthDayYear);
    const auto look = [](CQuillaryDialog& page) { EXPECT_FALSE(page.Control<QCheckBox>(1013)->isVisible()); };
    EXPECT_TRUE(RunType(edit, look, kOkButton, false)) << "nothing to convert";
}

TEST_F(FieldDefinitionsTest, EditsTheItemsOfAList) {
    FieldEdit edit = Edited("Lred;green;blue");
    EXPECT_TRUE(RunType(edit, [&](CQuillaryDialog& page) {
        auto* list = page.Control<CRowListView>(1004);
        const auto choose = [list](int item) {
            QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier);
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(menu);
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[item]).center());
        };
        Press(page, ID_ITEM_DOWN);
        Press(page, ID_ITEM_ADD);
        Write("black;white");
        user.ExpectMessage(
            "An item of a list cannot hold \";\", which separates the items in the file: \"black;white\"");
        Press(page, kOkButton);
        Write("white");
        EXPECT_EQ(list->SelectedRow(), 2);
        list->Select(3);
        choose(2);  // Move Up
        list->Select(0);
        choose(1);  // Delete
        EXPECT_EQ(list->SelectedRow(), 0);
        EXPECT_TRUE(page.IsChanged());
        choose(0);  // Rename
        Write("rose");
    }));
    EXPECT_EQ(Encoded(edit), "Lrose;blue;white");
    FieldEdit none = Edited("L");
    EXPECT_TRUE(RunType(none, [&](CQuillaryDialog& page) {
        EXPECT_FALSE(page.Control<QToolButton>(ID_ITEM_DELETE)->isEnabled());
        QTest::keyClick(page.Control<QComboBox>(1011), Qt::Key_Insert);
        Press(page, ID_ITEM_DELETE);
        QTest::keyClick(page.Control<CRowListView>(1004), Qt::Key_Return);
    }));
    EXPECT_EQ(Encoded(none), "LItem");
}

}  // namespace
}  // namespace quillary
