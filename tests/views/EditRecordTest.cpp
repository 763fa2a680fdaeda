// The record form: what its editors load and store, field type by field type.
#include <QClipboard>
#include <QGuiApplication>

#include "tests/views/FormTest.h"

namespace quillary {
namespace {

using EditRecordTest = FormTest;

TEST_F(EditRecordTest, EveryTypeIsLoadedEditedAndStored) {
    OpenForEditing(AllTypesParts());
    const struct {
        int id;
        const char* shown;
        QList<int> keys;
        const char* typed;
        const char* stored;
    } kRows[] = {
        {100, "Ada\r\nwas here", {}, "so ", "so Ada\r\nwas here"},
        {101, "12.5", {}, "-1x", "-112.5"},
        {102, "100", {}, "7", "12"},
        {103, "true", {Qt::Key_Space}, "", "false"},
        {104, "03/07/2004", {Qt::Key_Up}, "", "36622"},
        {105, "02:30 pm", {Qt::Key_Up}, "", "55800"},
        {106, "green", {Qt::Key_Down}, "", "blue"},
        {107, "(555) 123-4567", {Qt::Key_End, Qt::Key_Backspace}, "8", "5551234568"},
        {108, "ada@example.org", {Qt::Key_Delete}, "A", "Ada@example.org"},
        {109, "https://example.org", {Qt::Key_End}, "/x", "https://example.org/x"},
    };
    QGuiApplication::clipboard()->setText("abc12x3");
    InForm(0, [&](CQuillaryDialog& page) {
        for (const auto& r : kRows) {
            EXPECT_EQ(Shown(page, r.id), r.shown) << r.id;
            auto* editor = page.Control<QWidget>(r.id);
            editor->setFocus();
            QWidget* focus = app.Frame().focusWidget();
            for (const int key : r.keys) QTest::keyClick(focus, static_cast<Qt::Key>(key));
            QTest::keyClicks(focus, r.typed);
        }
        auto* number = page.Control<QLineEdit>(102);
        number->setFocus();
        number->selectAll();
        QTest::keyClick(number, Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(number, Qt::Key_Return);  // cleaned up though the focus never left it
    });
    const auto stored = StoredRecord(0);
    for (std::size_t k = 0; k < std::size(kRows); ++k) EXPECT_EQ(stored[k], kRows[k].stored) << kRows[k].id;
    EXPECT_EQ(StoredRecord(1)[0], "Bob") << "the other record";
}

TEST_F(EditRecordTest, ATypedDateOrTimeIsReadAsAWholeOrRefused) {
    constexpr const char* kNoDate =
        "Field \"Due\": \"2/30/2004\" is no date. Write it like 12/31/2004 or December 31, 2004.";
    const struct {
        int id;
        const char* typed;
        QString refusal;
        const char* stored;
    } kRows[] = {
        {104, "2004-03-10", {}, "36594"},
        {104, "March 12, 2004", {}, "36596"},
        {104, "2/30/2004", kNoDate, "36591"},
        {105, "9:05", {}, "32700"},
        {105, "0:30", {}, "1800"},
        {105, "230p", "Field \"At\": \"230p\" is no time. Write it like 02:30 pm or 14:30.", "52200"},
    };
    for (const auto& r : kRows) {
        for (const int button : {kOkButton, int(ID_FORM_NEXT)}) {
            OpenForEditing(AllTypesParts());
            InForm(0, [&](CQuillaryDialog& page) {
                app.Frame().activateWindow();
                EXPECT_TRUE(QTest::qWaitForWindowActive(&app.Frame()));
                page.Control<QWidget>(r.id)->setFocus();
                QTest::keyClicks(app.Frame().focusWidget(), r.typed);
                EXPECT_TRUE(page.IsChanged()) << r.typed;
                if (!r.refusal.isEmpty()) user.ExpectMessage(r.refusal);
                Press(page, button);
                if (r.refusal.isEmpty()) return page.isVisible() ? page.reject() : void();
                EXPECT_EQ(Shown(page, r.id), r.typed) << "to be corrected";
                EXPECT_EQ(app.Frame().focusWidget()->objectName().toInt(), r.id);
                user.ExpectMessage("Save the changes before closing?", "Save");
                user.ExpectMessage(r.refusal);
                app.Frame().close();
                EXPECT_TRUE(page.isVisible());
                QTest::keyClick(app.Frame().focusWidget(), Qt::Key_Escape);
            });
            EXPECT_EQ(StoredRecord(0)[static_cast<std::size_t>(r.id - 100)], r.stored) << r.typed;
        }
    }
}

TEST_F(EditRecordTest, WhatWasNotTouchedKeepsItsBytes) {
    const std::string longest(40000, 'x');
    const struct {
        const char* name;
        const char* type;
        std::string stored;
        const char* shown;
    } kRows[] = {
        {"more than the toolkit's editors would hold", "M", longest, longest.c_str()},
        {"a line feed alone", "T", "a\nb", "a\r\nb"},
        {"a carriage return alone", "t", "a\rb", "a\rb"},
        {"a no-break space", "T", "a\xA0z", "a\u00A0z"},
        {"no plain number", "F", "1,500", "1,500"},
        {"letters", "I1;1", "abc", "abc"},
        {"a checked word of old", "B", "JA", "true"},
        {"letters for a date", "D", "abc", "01/01/1904"},
        {"before the year 100", "D", "-700000", ""},
        {"spelt with blanks", "D", " 36591 ", "03/07/2004"},
        {"seconds", "d", "52259", "02:30 pm"},
        {"more than a day", "d", "90000", "01:00 am"},
        {"a zero that is none", "d", "00", ""},
        {"no item", "Lred;green", "blue", "blue"},
        {"a phone with letters", "P", "call 5551234", "call 5551234"},
        {"an unknown type", "Q7", "x", "x"},
    };
    for (const auto& r : kRows) {
        ImageParts parts;
        parts.AddSchema({"Odd", "Other"}, {r.type, "M"});
        parts.Add(2, {r.stored, "old"});
        OpenForEditing(parts);
        InForm(0, [&](CQuillaryDialog& page) {
            EXPECT_EQ(Shown(page, 100), QString::fromUtf8(r.shown)) << r.name;
            QTest::keyClick(page.Control<QWidget>(100), Qt::Key_Tab);  // leaving it changes nothing either
            auto* other = page.Control<QLineEdit>(101);
            other->setFocus();
            other->selectAll();
            QTest::keyClicks(other, "new");
            Press(page, kOkButton);
        });
        EXPECT_EQ(StoredEntries(0), Entries({r.stored, "new"})) << r.name;
    }
}

TEST_F(EditRecordTest, HiddenAndMissingAndSurplusEntriesStay) {
    ImageParts parts;
    const std::vector<std::string> names = {"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"};
    parts.AddSchema(names, std::vector<std::string>(names.size(), "t"));
    std::vector<std::string> texts(13);
    texts[0] = "line\nfeed", texts[1] = "old", texts[10] = "kept", texts[12] = "beyond";
    parts.Add(2, texts);
    parts.Add(2, {"short", "old"});
    OpenForEditing(parts);
    for (int row = 0; row < 2; ++row) {
        InForm(row, [](CQuillaryDialog& page) {
            QTest::keyClicks(page.Control<QWidget>(101), "x");
            Press(page, kOkButton);
        });
    }
    texts[1] = "xold";
    EXPECT_EQ(StoredEntries(0), Entries(texts));
    EXPECT_EQ(StoredEntries(1), Entries({"short", "xold"}));
}

TEST_F(EditRecordTest, ARecordInWhichNothingChangedIsNotSaved) {
    OpenForEditing(AllTypesParts());
    const std::string before = files.contents["/people.pdb"];
    for (const int button : {kOkButton, kCancelButton}) {
        InForm(0, [button](CQuillaryDialog& page) {
            QTest::keyClicks(page.Control<QWidget>(103), "  ");  // there and back
            QTest::keyClicks(page.Control<QWidget>(100), "x");
            QTest::keyClick(page.Control<QWidget>(100), Qt::Key_Backspace);
            QTest::keyClick(page.Control<QWidget>(108), Qt::Key_Delete);
            if (button == kOkButton) QTest::keyClicks(page.Control<QWidget>(108), "a");
            EXPECT_EQ(page.IsChanged(), button != kOkButton);
            Press(page, button);
        });
        EXPECT_EQ(files.contents["/people.pdb"], before);
        EXPECT_FALSE(Title().endsWith('*'));
    }
}

TEST_F(EditRecordTest, ANewRecordStartsWithTheDefaultsAndAdvancesTheSequence) {
    ImageParts parts = AllTypesParts();
    parts.records.clear();
    parts.AddSchema(kAllNames, {"T", "F", "I100;5", "B!", "D!", "d!", "Lred", "P", "M", "W"});
    Open(parts.Build());
    EXPECT_EQ(Counter(), "0 of 0");
    user.ExpectDialog(173, [this](CQuillaryDialog& page) {
        const char* const kShown[] = {"", "", "100", "true", "03/07/2004", "02:30 pm", "", "", "", ""};
        for (int k = 0; k < 10; ++k) EXPECT_EQ(Shown(page, 100 + k), kShown[k]) << k;
        EXPECT_FALSE(page.Control<QLineEdit>(101)->isReadOnly()) << "for editing, whatever the option says";
        QTest::keyClicks(app.Frame().focusWidget(), "eve");
        QTest::keyClick(page.Control<QWidget>(101), Qt::Key_S, Qt::ControlModifier);
        QTest::keyClick(page.Control<QWidget>(101), Qt::Key_Return);  // which does not store it once more
    });
    QTest::keyClick(View(), Qt::Key_N, Qt::ControlModifier);
    const std::vector<std::string> expected = {"Eve", "", "100", "true", "36591", "52200", "", "", "", ""};
    EXPECT_EQ(StoredRecord(0), expected);
    EXPECT_EQ(Counter(), "1 of 1");
    user.ExpectDialog(173, [](CQuillaryDialog& page) {
        EXPECT_EQ(Shown(page, 102), "105");
        QTest::keyClick(page.Control<QWidget>(101), Qt::Key_Escape);
    });
    Click(app.Frame().findChild<QWidget*>(QStringLiteral("57600")));
    EXPECT_EQ(Counter(), "1 of 1");
}

TEST_F(EditRecordTest, WhatCannotBeStoredIsRefusedByNameAndStays) {
    ImageParts parts = AllTypesParts();
    parts.records.clear();
    auto names = kAllNames;
    names.push_back("Eleventh");
    parts.AddSchema(names, {"T", "F", "I1;1", "B", "D", "d", "Lred", "P", "M", "W", "T"});
    parts.Add(2, {"Ada"});
    parts.Add(2, {"Bob"});
    OpenForEditing(parts);
    const std::string before = files.contents["/people.pdb"];
    const User::Steps steps = [&](CQuillaryDialog& page) {
        auto* notes = page.Control<QWidget>(100);
        auto* mail = page.Control<QLineEdit>(108);
        notes->setFocus();
        QTest::keyClick(notes, Qt::Key_Return);
        user.ExpectMessage(
            "A line break in \"Notes\" would hide the field \"Eleventh\". "
            "Move \"Notes\" behind it or take the line break out.");
        Press(page, kOkButton);
        EXPECT_EQ(app.Frame().focusWidget(), notes);
        QTest::keyClick(notes, Qt::Key_Backspace);
        QTest::keyClicks(mail, QStringLiteral("\u00FF"));
        mail->insert(QStringLiteral("\u0142"));
        user.ExpectMessage(QStringLiteral("These characters cannot be stored in \"Mail\": \u00FF\u0142"));
        Press(page, kOkButton);
        EXPECT_EQ(app.Frame().focusWidget(), mail);
        EXPECT_EQ(mail->text(), QStringLiteral("\u00FF\u0142"));
        QTest::keyClick(mail, Qt::Key_Escape);
    };
    InForm(0, steps);
    user.ExpectDialog(173, steps);
    Click(app.Frame().findChild<QWidget*>(QStringLiteral("57600")));  // New
    EXPECT_EQ(files.contents["/people.pdb"], before);
}

}  // namespace
}  // namespace quillary
