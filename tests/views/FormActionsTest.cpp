// Phone numbers, mail and web addresses in the record form, and sending the database.
#include <QAction>

#include "tests/views/FormTest.h"

namespace quillary {
namespace {

using Links = std::vector<std::string>;
using Program = Launcher::Program;

class FormActionsTest : public FormTest {
  protected:
    FormActionsTest() {
        for (const char* scheme : {"tel", "mailto", "http", "https"}) launcher.programs[scheme] = Program::There;
    }
    /// One record of these fields.
    void OpenRecord(const std::vector<std::string>& types, const std::vector<std::string>& values) {
        ImageParts parts;
        Links names = {"A", "B", "C"};
        names.resize(types.size());
        parts.AddSchema(names, types);
        parts.Add(2, values);
        OpenForEditing(parts);
        launcher.started.clear();
    }
    static void ClickText(CQuillaryDialog& page, int id, int x = 20) {
        QTest::mouseClick(page.Control<QWidget>(id), Qt::LeftButton, {}, {x, 10});
    }
    static bool IsEditable(const CQuillaryDialog& page) { return !page.Control<QLineEdit>(108)->isReadOnly(); }
};

TEST_F(FormActionsTest, AnAddressIsALinkWhileViewingAndItsButtonAlwaysWorks) {
    Open(AllTypesParts().Build());
    InForm(0, [this](CQuillaryDialog& page) {
        ClickText(page, 108);
        QTest::mouseDClick(page.Control<QWidget>(108), Qt::LeftButton, {}, {20, 10});  // a double click's second half
        ClickText(page, 109);
        QTest::mousePress(page.Control<QWidget>(109), Qt::LeftButton, {}, {20, 10});
        QTest::mouseRelease(page.Control<QWidget>(109), Qt::LeftButton, {}, {page.width(), 10});  // let go elsewhere
        EXPECT_EQ(launcher.started, (Links{"mailto:ada@example.org", "https://example.org"}));
        launcher.started.clear();
        for (const int button : {500, 501, 502}) Press(page, button);
        EXPECT_EQ(launcher.started, (Links{"tel:(555)123-4567", "mailto:ada@example.org", "https://example.org"}));
        EXPECT_FALSE(IsEditable(page));
        ClickText(page, 109, page.Control<QWidget>(109)->width() - 5);  // beside it
        EXPECT_TRUE(IsEditable(page));
        ClickText(page, 108);
        EXPECT_EQ(launcher.started.size(), 3U) << "while editing it is no link";
        page.Control<QLineEdit>(108)->setText("b@example.org");
        Press(page, 501);
        EXPECT_EQ(launcher.started.back(), "mailto:b@example.org");
        page.Control<QWidget>(107)->setFocus();
        for (const int next : {500, 108, 501, 109, 502}) {
            QTest::keyClick(app.Frame().focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(app.Frame().focusWidget(), page.Control<QWidget>(next)) << next;
        }
        QTest::keyClick(app.Frame().focusWidget(), Qt::Key_Up);
        EXPECT_EQ(app.Frame().focusWidget(), page.Control<QWidget>(108));
        Press(page, kCancelButton);
    });
    InForm(1, [this](CQuillaryDialog& page) {
        for (const int button : {500, 501, 502}) Press(page, button);
        EXPECT_EQ(launcher.started.size(), 4U) << "empty texts";
        ClickText(page, 108);
        EXPECT_TRUE(IsEditable(page));
        Press(page, kOkButton);
    });
    files.writable = false;
    Open(AllTypesParts().Build());
    InForm(0, [this](CQuillaryDialog& page) {
        ClickText(page, 108);
        Press(page, ID_FORM_DIAL);
        EXPECT_EQ(launcher.started.size(), 6U) << "read only";
        Press(page, kOkButton);
    });
}

TEST_F(FormActionsTest, WhatCannotBeOpenedIsTold) {
    launcher.programs["tel"] = Program::Missing;
    OpenRecord({"P", "M", "W"}, {"5551234", "a@b.org", "javascript:x"});
    InForm(0, [this](CQuillaryDialog& page) {
        const auto* dial = page.Control<QToolButton>(ID_FORM_DIAL);
        EXPECT_FALSE(dial->isEnabled());
        EXPECT_EQ(dial->toolTip(), "<qt>Phone DLL has been modified on this device.</qt>");
        user.ExpectMessage("This is no web address. Only those of http and https are opened.");
        Press(page, 501);
        launcher.exitStatus = 2;
        const std::pair<Program, const char*> kTold[] = {
            {Program::There, "The desktop's program for mail addresses could not open this one (exit status 2)."},
            {Program::Missing, "The program that this desktop has for mail addresses is no longer installed."},
            {Program::None, "This desktop has no program for mail addresses."}};
        for (const auto& [program, told] : kTold) {
            launcher.programs["mailto"] = program;
            user.ExpectMessage(told);
            Press(page, 500);
        }
        EXPECT_EQ(launcher.started, Links{"mailto:a@b.org"});
        Press(page, kCancelButton);
    });
}

TEST_F(FormActionsTest, DialTakesThePhoneFieldOrAsksWhich) {
    OpenRecord({"T"}, {"Ada"});
    InForm(0, [this](CQuillaryDialog& page) {
        user.ExpectMessage("No Phone columns in this record.");
        Press(page, ID_FORM_DIAL);
        Press(page, ID_FORM_NEW);
        EXPECT_FALSE(page.Control<QWidget>(ID_FORM_DIAL)->isEnabled()) << "a new record without a Phone field";
        Press(page, kCancelButton);
    });
    OpenRecord({"T", "P"}, {"Ada", "5551234"});
    InForm(0, [this](CQuillaryDialog& page) {
        launcher.exitStatus = 9;
        user.ExpectMessage("Call Failed! Return Code: 9");
        Press(page, ID_FORM_DIAL);
        launcher.exitStatus = 0;
        Press(page, ID_FORM_NEW);
        page.Control<QLineEdit>(101)->setText("7");
        Press(page, ID_FORM_DIAL);
        EXPECT_EQ(launcher.started, (Links{"tel:555-1234", "tel:7"}));
        Press(page, kCancelButton);
    });
    OpenRecord({"P", "P"}, {"", "5551234567"});
    InForm(0, [this](CQuillaryDialog& page) {
        user.ExpectDialog(216, [](CQuillaryDialog& choice) {
            auto* columns = choice.Control<QComboBox>(1064);
            EXPECT_EQ(columns->currentText(), "A");
            QTest::keyClick(columns, Qt::Key_Down);
            Press(choice, kOkButton);
        });
        Press(page, ID_FORM_DIAL);
        user.ExpectDialog(216, [](CQuillaryDialog& choice) { Press(choice, kCancelButton); });
        Press(page, ID_FORM_DIAL);
        EXPECT_EQ(launcher.started, (Links{"tel:(555)123-4567", "tel:"})) << "cancelled, the phone program asks";
        user.ExpectDialog(216, [&](CQuillaryDialog& choice) {
            app.HandOver().Receive({"/gone.pdb", {}});
            EXPECT_TRUE(QTest::qWaitFor([&] { return !choice.isVisible(); }));
        });
        user.ExpectMessage("Invalid database file.");
        Press(page, ID_FORM_DIAL);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
        EXPECT_EQ(launcher.started.size(), 2u) << "nobody has cancelled when another file comes";
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
}

TEST_F(FormActionsTest, ADatabaseIsSavedAndSent) {
    const std::vector<Path> once = {"/people.pdb"};
    Open(PeopleParts().Build())->SetEditOnSelect(true);
    launcher.mails = false;
    user.ExpectMessage(
        QStringLiteral("No mail program takes a file from here. Attach it to a mail yourself:\n/people.pdb"));
    ChooseMenu("Tools", "Send via E-mail");
    EXPECT_EQ(launcher.mailed, once);
    EXPECT_EQ(launcher.shown, once);
    EXPECT_TRUE(Stored().EditOnSelect());

    const auto* infrared = app.Frame().findChild<QAction*>(QString::number(ID_DATABASE_SEND_INFRARED));
    ChooseMenu("Tools", "Send via Infrared");
    EXPECT_EQ(infrared->toolTip(), "<qt>This computer has no infrared, and no Bluetooth in its place.</qt>");
    EXPECT_TRUE(launcher.beamed.empty());
    launcher.bluetooth = Launcher::Bluetooth::There;
    launcher.exitStatus = 5;
    user.ExpectMessage("The program that sends files by Bluetooth has failed (exit status 5).");
    ChooseMenu("Tools", "Send via Infrared");
    EXPECT_EQ(launcher.beamed, once);
    files.contents.clear();
    user.ExpectMessage("The file /people.pdb is no longer there.");
    ChooseMenu("Tools", "Send via E-mail");
    EXPECT_EQ(launcher.mailed, once);
}

}  // namespace
}  // namespace quillary
