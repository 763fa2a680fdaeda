// Another database is asked for while this one is in use.
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <algorithm>

#include "tests/ui/WindowTest.h"
#include "ui/MessageBox.h"
#include "ui/QuillaryDialog.h"

namespace quillary {
namespace {

constexpr int kEdit = 1001;
constexpr ControlInfo kControls[] = {{kEdit, ControlKind::TextEdit, u"Text"}};

/// Takes any text but "refused".
class CTestDlg : public CQuillaryDialog {
  public:
    CTestDlg(int id, FrameWindow& frame) : CQuillaryDialog({id, u"Test", kControls, {}, Buttons::OkCancel}, frame) {}
    QString stored;
    std::function<void()> beforeRefusal = [] {};

  protected:
    void Load() override { Control<QLineEdit>(kEdit)->setText(QStringLiteral("loaded")); }
    bool Commit() override {
        const QString text = Control<QLineEdit>(kEdit)->text();
        if (text == QStringLiteral("refused")) {
            beforeRefusal();
            return Refuse(kEdit, QStringLiteral("No."));
        }
        stored = text;
        return true;
    }
};

void Type(CQuillaryDialog& page, const QString& text) {
    page.Control<QLineEdit>(kEdit)->setFocus();
    page.Control<QLineEdit>(kEdit)->selectAll();
    QTest::keyClicks(page.Control<QWidget>(kEdit), text);
}

class HandOverTest : public WindowTest {
  protected:
    HandOverTest() {
        ImageParts other = PeopleParts();
        other.name = "Other";
        files.contents["/o/other.pdb"] = other.Build();
        Open(PeopleParts().Build());
    }
    /// As from another start of the program.
    void Ask(const std::string& path = "/o/other.pdb") { app.HandOver().Receive({path, {}}); }
    bool Opens(const char* title) {
        return QTest::qWaitFor([&] { return Title() == QLatin1String(title) && app.Frame().isEnabled(); });
    }
    static constexpr char kQuestion[] = "Save the changes before opening \"other.pdb\"?";
};

TEST_F(HandOverTest, TheFileIsOpenedWhenTheHandlerOfTheOpenDialogHasReturned) {
    const struct {
        const char* typed;
        const char* answer;  // null: no question
        bool opens;
        const char* stored;
    } kCases[] = {{"", nullptr, true, ""},      {"loaded", nullptr, true, ""}, {"new", "Save", true, "new"},
                  {"new", "Discard", true, ""}, {"new", "Cancel", false, ""},  {"refused", "Save", false, ""}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.typed << ' ' << (c.answer ? c.answer : "unasked"));
        Open(PeopleParts().Build());
        CTestDlg dialog(7, app.Frame());
        bool goesOn = false;
        user.ExpectDialog(7, [&](CQuillaryDialog& page) {
            if (*c.typed) Type(page, QLatin1String(c.typed));
            if (c.answer) user.ExpectMessage(kQuestion, c.answer);
            if (std::string(c.typed) == "refused") user.ExpectMessage("No.");
            Ask();
            EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible() || (!c.opens && user.IsDone()); }));
            QTest::qWait(0);
            EXPECT_EQ(Title(), "People") << "the handler still works on this one";
            goesOn = page.isVisible();
            page.reject();
        });
        dialog.exec();
        EXPECT_EQ(goesOn, !c.opens);
        EXPECT_EQ(dialog.stored, c.stored);
        EXPECT_TRUE(Opens(c.opens ? "Other" : "People"));
    }
}

TEST_F(HandOverTest, DialogsAboveOneAnotherAndBoxesEndFromTheInnermost) {
    for (const char* const answer : {"Save", "Discard"}) {
        Open(PeopleParts().Build());
        CTestDlg outer(7, app.Frame());
        CTestDlg inner(8, app.Frame());
        user.ExpectDialog(7, [&](CQuillaryDialog& page) {
            Type(page, "outer");
            user.ExpectDialog(8, [&](CQuillaryDialog& innerPage) {
                user.ExpectMessage(kQuestion, answer);
                Ask();
                EXPECT_TRUE(QTest::qWaitFor([&] { return !innerPage.isVisible(); }));
            });
            inner.exec();
            EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
        });
        outer.exec();
        EXPECT_EQ(inner.stored, "") << "held no changes";
        EXPECT_EQ(outer.stored, answer == std::string("Save") ? "outer" : "");
        EXPECT_TRUE(Opens("Other"));
    }
    Open(PeopleParts().Build());
    qApp->removeEventFilter(&user);
    Ask();
    EXPECT_EQ(AskUser(&app.Frame(), "Delete?", {"Yes", "No"}), 1) << "a question nobody saw is not answered with yes";
    EXPECT_TRUE(Opens("Other"));
}

TEST_F(HandOverTest, OfTwoRequestsOnlyTheLaterOneAsks) {
    CTestDlg dialog(7, app.Frame());
    user.ExpectDialog(7, [&](CQuillaryDialog& page) {
        Type(page, "new");
        user.ExpectMessage(kQuestion, "Save");
        Ask();  // comes when the other question stands
        app.Frame().close();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
    });
    dialog.exec();
    EXPECT_EQ(dialog.stored, "new");
    EXPECT_TRUE(Opens("Other"));
}

TEST_F(HandOverTest, AMessageGivesWayToTheQuestion) {
    CTestDlg dialog(7, app.Frame());
    user.ExpectDialog(7, [&](CQuillaryDialog& page) {
        Type(page, "refused");
        QMetaObject::invokeMethod(
            &app.Frame(), [this] { app.Frame().close(); }, Qt::QueuedConnection);
        user.ExpectMessage("Save the changes before closing?", "Discard");
        page.accept();  // whose message nobody has read yet
        EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
    });
    EXPECT_EQ(dialog.exec(), QDialog::Rejected);
}

TEST_F(HandOverTest, ARequestDuringARefusedCloseComesAfterIt) {
    CTestDlg dialog(7, app.Frame());
    user.ExpectDialog(7, [&](CQuillaryDialog& page) {
        Type(page, "refused");
        user.ExpectMessage("Save the changes before closing?", "Save");
        dialog.beforeRefusal = [this] { Ask(); };  // comes when the message stands
        user.ExpectMessage("No.");
        user.ExpectMessage(kQuestion, "Discard");
        app.Frame().close();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
        page.reject();
    });
    dialog.exec();
    EXPECT_TRUE(Opens("Other"));
}

TEST_F(HandOverTest, AFileThatDoesNotOpenLeavesNoneOpen) {
    Ask("/nowhere.pdb");
    user.ExpectMessage("Invalid database file.");
    EXPECT_TRUE(Opens("Quillary"));
    Ask();
    Ask("/people.pdb");
    EXPECT_TRUE(Opens("People")) << "the last one asked for";
    QTest::qWait(0);
    EXPECT_EQ(recentFiles.paths.back(), "/people.pdb");
    EXPECT_EQ(std::count(recentFiles.paths.begin(), recentFiles.paths.end(), "/nowhere.pdb"), 0);
}

TEST_F(HandOverTest, ADatabaseThatIsDroppedOnTheWindowIsOpened) {
    const QUrl other("file:///o/other.pdb");
    const struct {
        const char* name;
        QList<QUrl> urls;
        Qt::DropActions actions;
        bool taken;
    } kCases[] = {
        {"a table", {QUrl("file:///o/other.csv")}, Qt::CopyAction, false},
        {"two databases", {other, other}, Qt::CopyAction, false},
        {"one on a server", {QUrl("http://example.org/other.pdb")}, Qt::CopyAction, false},
        {"moving would delete it", {other}, Qt::MoveAction, false},
        {"a database", {other}, Qt::CopyAction | Qt::MoveAction, true},
    };
    for (const auto& c : kCases) {
        QMimeData data;
        data.setUrls(c.urls);
        QDragEnterEvent enter({9, 9}, c.actions, &data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(&app.Frame(), &enter);
        QDropEvent drop({9, 9}, c.actions, &data, Qt::LeftButton, {});
        drop.ignore();
        QCoreApplication::sendEvent(&app.Frame(), &drop);
        EXPECT_EQ(enter.isAccepted(), c.taken) << c.name;
        EXPECT_EQ(drop.isAccepted(), c.taken) << c.name;
        QTest::qWait(0);
        EXPECT_EQ(Title() == "Other", c.taken) << c.name;
    }
}

}  // namespace
}  // namespace quillary
