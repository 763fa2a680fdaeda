// The password of a database, its info text and the lock of that, through the window.
#include <utility>

#include "tests/views/FormTest.h"

namespace quillary {
namespace {

constexpr char kLockOfA[] = "494665641";  // of the password "a"; tests/db/PasswordTest.cpp works both hashes out
constexpr std::uint32_t kHashOfA = 184150549;
constexpr char kWrongPassword[] = "The password you have entered does not match the database password.";

class PasswordsTest : public WindowTest {
  protected:
    CQuillaryDoc* OpenWith(std::string_view text, std::string_view lock) {
        ImageParts parts;
        parts.AddSchema({"Name"}, {"T"}, {}, text, lock);
        return Open(parts.Build());
    }
    void In(const char* command, User::Steps steps) {
        user.ExpectDialog(QLatin1String(command) == QLatin1String("Info...") ? 137 : 143, std::move(steps));
        ChooseMenu("Database", command);
    }
    ~PasswordsTest() override {
        for (const auto& [id, text] : m_inEdits) EXPECT_EQ(text, "") << id << " is not wiped";
    }
    void Type(const CQuillaryDialog& page, const std::vector<std::pair<int, const char*>>& texts) {
        for (const auto& [id, text] : texts) {
            auto* edit = page.Control<QLineEdit>(id);
            QObject::connect(edit, &QLineEdit::textChanged, &user,
                             [this, id = id](const QString& now) { m_inEdits[id] = now; });
            EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
            edit->clear();
            QTest::keyClicks(edit, text);
        }
        QTest::keyClick(page.Control<QLineEdit>(texts.front().first), Qt::Key_Return);
    }
    static CTextEdit* Text(const CQuillaryDialog& page) { return page.Control<CTextEdit>(1038); }
    /// By the one button that must be there.
    void Turn(const CQuillaryDialog& page, int button, const char* password, bool isWrong = false) {
        EXPECT_FALSE(page.Control<QWidget>(1052 + 32797 - button)->isVisible());
        user.ExpectDialog(138, [=, this](CQuillaryDialog& asking) {
            if (isWrong) user.ExpectMessage("You have entered an incorrect password.");
            Type(asking, {{1034, password}});
            EXPECT_EQ(asking.isVisible(), isWrong);
            if (isWrong) asking.reject();
        });
        Press(page, button);
    }
    bool Holds(std::string_view text, std::string_view lock) {
        const std::string stored = Entries({std::string(text), std::string(lock), ""});
        return files.contents["/people.pdb"].find(stored) != std::string::npos;
    }

  private:
    std::map<int, QString> m_inEdits;  // by what was typed there, up to the end of their dialogs
};

TEST_F(PasswordsTest, APasswordIsSetAskedForAndRemoved) {
    Open(PeopleParts().Build());
    In("Change Password...", [this](CQuillaryDialog& page) {
        user.ExpectMessage(kWrongPassword);
        Type(page, {{1036, "x"}, {1006, "a"}, {1007, "a"}});
        EXPECT_EQ(page.focusWidget()->objectName(), "1036");
        user.ExpectMessage("The new passwords are different.");
        Type(page, {{1036, ""}, {1007, "A"}});
        Type(page, {{1007, "a"}});  // the others stay as typed
    });
    user.ExpectDialog(166, [](CQuillaryDialog& page) { QTest::keyClick(&page, Qt::Key_Escape); });
    EXPECT_EQ(Open(CloseAndReadFile()), nullptr) << "and nothing is said";
    user.ExpectDialog(166, [this](CQuillaryDialog& page) {
        EXPECT_EQ(View(), nullptr) << "nothing shows before the password is right";
        EXPECT_EQ(page.focusWidget()->objectName(), "1034");
        user.ExpectMessage(kWrongPassword);
        Type(page, {{1034, "A"}});
        EXPECT_EQ(page.Control<QLineEdit>(1034)->selectedText(), "A") << "to be typed over";
        Type(page, {{1034, "a"}});
    });
    EXPECT_EQ(Open(CloseAndReadFile())->DatabasePasswordHash(), kHashOfA);
    In("Change Password...", [this](CQuillaryDialog& page) { Type(page, {{1036, "a"}}); });
    EXPECT_EQ(Open(CloseAndReadFile())->DatabasePasswordHash(), 0u);
}

TEST_F(PasswordsTest, ALockedTextIsReadUntilItsPasswordIsTyped) {
    const std::string text = "a\xA0x\rc\nd\x81";  // what the toolkit would not give back
    OpenWith(text, kLockOfA);
    In("Info...", [this](CQuillaryDialog& page) {
        EXPECT_TRUE(Text(page)->isReadOnly());
        Turn(page, 1052, "A", true);
        Turn(page, 1052, "a");
        QTest::keyClicks(Text(page), "x");
        QTest::keyClick(Text(page), Qt::Key_Escape);
    });
    In("Info...", [this](CQuillaryDialog& page) {
        Turn(page, 1052, "a");  // after the Cancel it is locked as before
        Turn(page, 32797, "");  // locks nothing
        EXPECT_TRUE(page.IsChanged() && !Text(page)->isReadOnly());
        Press(page, kOkButton);
    });
    EXPECT_TRUE(Holds(text, "0")) << "byte for byte";
    In("Info...", [this](CQuillaryDialog& page) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(Text(page), &held);
        EXPECT_FALSE(page.IsChanged()) << "a Return held down in the menu";
        Text(page)->selectAll();
        Text(page)->insertPlainText(QStringLiteral(u"\u0436\u0001"));
        user.ExpectMessage(QStringLiteral(u"These characters cannot be stored in the info text: \u0436 U+0001"));
        Press(page, kOkButton);
        Text(page)->selectAll();
        for (const auto key : {Qt::Key_O, Qt::Key_Return}) QTest::keyClick(Text(page), key);
        Turn(page, 32797, "a");
        EXPECT_TRUE(Text(page)->isReadOnly());
        user.ExpectMessage("Save the changes before closing?", "Save");
        EXPECT_FALSE(app.Frame().close());
    });
    EXPECT_TRUE(Holds("o\r\n", kLockOfA));
}

TEST_F(PasswordsTest, WhatCannotBeSavedIsTakenBack) {
    const CQuillaryDoc* doc = OpenWith("note", "0");
    files.full = "/people.pdb";
    In("Change Password...", [this](CQuillaryDialog& page) {
        user.ExpectMessage(kDiskFull);
        Type(page, {{1006, "a"}, {1007, "a"}});
        EXPECT_TRUE(page.isVisible());
        EXPECT_EQ(Title(), "Test");
        page.reject();
    });
    In("Info...", [this](CQuillaryDialog& page) {
        user.ExpectMessage(kDiskFull);
        QTest::keyClicks(Text(page), "x");
        Press(page, kOkButton);
        user.ExpectMessage("Save the changes before closing?", "Save");
        user.ExpectMessage(kDiskFull);
        app.Frame().close();
        EXPECT_TRUE(page.isVisible() && app.Frame().isVisible()) << "what was typed is nowhere else";
        EXPECT_EQ(Text(page)->toPlainText(), "xnote");
        page.reject();
    });
    EXPECT_TRUE(doc->DatabasePasswordHash() == 0 && doc->InfoTextBytes() == "note" && !doc->IsModified());
    files.writable = false;
    OpenWith("note", "0");
    ChooseMenu("Database", "Change Password...");  // disabled
    In("Info...", [](CQuillaryDialog& page) {
        EXPECT_TRUE(Text(page)->isReadOnly() && !page.Control<QWidget>(32797)->isEnabled());
        Press(page, kOkButton);
    });
}

}  // namespace
}  // namespace quillary
