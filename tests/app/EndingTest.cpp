// The ends of the program: signals, and what is kept of the window.
#include <unistd.h>
#include <csignal>

#include <QPlainTextEdit>
#include <QScreen>
#include <QTimer>
#include <atomic>
#include <thread>

#include "platform/Signals.h"
#include "platform/posix/PosixFileAccess.h"
#include "tests/posix/TestFolder.h"
#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

constexpr char kDialogChanged[] = "Save the changes before closing?";

class EndingTest : public WindowTest {
  protected:
    EndingTest() : m_signals([this] { program->Frame().close(); }) {}
    static void TypeInForm(const CQuillaryDialog& page, const QString& text) {
        QTest::keyClick(page.Control<QWidget>(100), Qt::Key_F2);
        page.Control<QPlainTextEdit>(100)->insertPlainText(text);
    }
    bool Closes() {
        return QTest::qWaitFor([this] { return !app.Frame().isVisible(); });
    }

    CQuillaryApp* program = &app;  // that the signals end

  private:
    Signals m_signals;
};

TEST_F(EndingTest, ASignalEndsTheDialogInWhichOneTypesAndThenTheProgram) {
    const std::string before = PeopleParts().Build();
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        app.Frame().show();
        Open(before);
        InDialog(149, "Tools", "Options...", [&](CQuillaryDialog& page) {
            Press(page, 1003);
            user.ExpectMessage(kDialogChanged, "Cancel");
            raise(number);
            EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
            EXPECT_TRUE(page.isVisible()) << "what was typed stays";
            const bool saves = number == SIGINT;
            QApplication::setActiveWindow(&app.Frame());  // as a window manager does
            user.ExpectMessage(kDialogChanged, saves ? "Save" : "Discard");
            saves ? QTest::keyClick(app.Frame().focusWidget(), Qt::Key_Q, Qt::ControlModifier) : void(raise(number));
            EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
        });
        EXPECT_TRUE(Closes());
        EXPECT_EQ(CloseAndReadFile() == before, number != SIGINT);
    }
}

TEST_F(EndingTest, ASignalAtAQuestionAboutUnsavedChangesAnswersNothingForTheUser) {
    const std::string before = PeopleParts().Build();
    Open(before)->SetStyle(DateStyle::Long);
    files.full = "/people.pdb";
    for (const char* const answer : {"Cancel", "Discard the Changes"}) {
        EXPECT_TRUE(app.Frame().isVisible());
        raise(SIGTERM);
        user.ExpectMessage(kDiskFullLeaving, answer);
        EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
    }
    EXPECT_TRUE(Closes());
    files.full.clear();
    EXPECT_EQ(CloseAndReadFile(), before);
}

TEST_F(EndingTest, TheEndOfTheSessionSavesOrAsksButLeavesTheWindowToTheDesktop) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    doc->SetStyle(DateStyle::Long);
    files.full = "/people.pdb";
    EXPECT_TRUE(app.CommitData(false)) << "nobody may be asked";
    user.ExpectMessage(kDiskFullLeaving, "Cancel");
    EXPECT_FALSE(app.CommitData(true));
    files.full.clear();
    EXPECT_TRUE(app.CommitData(false));
    EXPECT_FALSE(doc->IsModified());
    EXPECT_TRUE(app.Frame().isVisible());
}

TEST_F(EndingTest, TheEndOfTheSessionAsksAboutAChangedDialog) {
    CQuillaryDoc* doc = Open(PeopleParts().Build());
    for (const std::string answer : {"Cancel", "Discard", "Save"}) {
        const bool mayEnd = answer != "Cancel";
        InDialog(149, "Tools", "Options...", [&](CQuillaryDialog& page) {
            Press(page, 1003);
            EXPECT_TRUE(app.CommitData(false)) << "nobody may be asked";
            user.ExpectMessage(kDialogChanged, answer.c_str());
            EXPECT_EQ(app.CommitData(true), mayEnd) << answer;
            EXPECT_EQ(page.isVisible(), !mayEnd) << answer;
            if (!mayEnd) page.reject();
        });
        EXPECT_EQ(doc->Style() == DateStyle::Long, answer == "Save") << answer;
        EXPECT_FALSE(doc->IsModified()) << answer;
        QTest::qWait(0);
    }
}

TEST_F(EndingTest, WhatAnEndedDialogCannotSaveIsAskedAboutOnce) {
    const struct {
        bool sorts, endsSession, mayEnd;
    } kRows[] = {{false, false, false}, {false, false, true}, {false, true, false}, {true, true, true}};
    for (const auto& [sorts, endsSession, mayEnd] : kRows) {
        files.full.clear();
        app.Frame().show();
        const CQuillaryDoc* doc = Open(PeopleParts().Build());
        files.full = "/people.pdb";
        user.ExpectDialog(sorts ? 139 : 173, [&, mayEnd = mayEnd](CQuillaryDialog& page) {
            sorts ? page.Control<QComboBox>(1002)->setCurrentIndex(2) : TypeInForm(page, "x");
            user.ExpectMessage(kDialogChanged, "Save");
            user.ExpectMessage(kDiskFullLeaving, mayEnd ? "Discard the Changes" : "Cancel");
            EXPECT_EQ(endsSession ? app.CommitData(true) : app.Frame().close(), endsSession && mayEnd);
        });
        sorts ? ChooseMenu("Record", "Sort...") : QTest::keyClick(View(), Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
        QTest::qWait(0);
        EXPECT_EQ(app.Frame().isVisible(), endsSession || !mayEnd);
        EXPECT_TRUE(doc->IsModified());
    }
}

TEST_F(EndingTest, TheSessionGoesOnWhenADialogRefusesWhatIsToBeSaved) {
    Open(PeopleParts().Build());
    user.ExpectDialog(173, [&](CQuillaryDialog& page) {
        TypeInForm(page, u"\u017b"_qs);
        user.ExpectMessage(kDialogChanged, "Save");
        user.ExpectMessage(u"These characters cannot be stored in \"Name\": \u017b"_qs);
        EXPECT_FALSE(app.CommitData(true));
        EXPECT_TRUE(page.isVisible());
        page.reject();
    });
    QTest::keyClick(View(), Qt::Key_Return);
}

TEST_F(EndingTest, TheSessionGoesOnWhileAPageWaitsForTheQuestionOnIt) {
    const std::string before = PeopleParts().Build();
    Open(before);
    bool mayEnd = true;
    user.ExpectDialog(173, [&](CQuillaryDialog& page) {
        TypeInForm(page, "x");
        QTimer::singleShot(0, [&] { mayEnd = app.CommitData(true); });  // comes when the question stands
        user.ExpectMessage(kDialogChanged, "Save");
        Press(page, ID_FORM_DELETE);
        EXPECT_FALSE(mayEnd) << "the desktop would end the program before the record is saved";
        EXPECT_TRUE(QTest::qWaitFor([&] { return !page.isVisible(); }));
    });
    QTest::keyClick(View(), Qt::Key_Return);
    EXPECT_NE(CloseAndReadFile(), before);
}

TEST_F(EndingTest, SignalsDuringASaveLeaveItWhole) {
    const TestFolder folder;
    PosixFileAccess disk;
    ImageParts parts = PeopleParts();
    for (int i = 0; i < 20000; ++i) parts.Add(2, {"Film " + std::to_string(i), "1", "", "true"});
    const Path path = folder.Write("films.pdb", parts.Build());
    CQuillaryApp onDisk(DesktopOn(disk));
    program = &onDisk;
    onDisk.Frame().show();
    CQuillaryDoc* doc = onDisk.OpenDocumentFile(path);
    ASSERT_TRUE(doc);
    std::atomic<bool> saved = false;
    const pid_t pid = getpid();
    std::thread storm([&] {
        for (int i = 0; !saved; ++i) kill(pid, i % 2 == 0 ? SIGTERM : SIGHUP);
    });
    Failure failure;
    for (int i = 0; i < 10; ++i) {
        doc->SetStyle(i % 2 == 0 ? DateStyle::Long : DateStyle::Numeric);
        EXPECT_TRUE(doc->SaveDatabase(failure) && doc->FinishSave(failure)) << failure.text;
    }
    doc->SetStyle(DateStyle::Long);  // for the end of the program
    saved = true;
    storm.join();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !onDisk.Frame().isVisible(); }));
    onDisk.CloseDocument();
    CQuillaryDoc reopened(disk);
    ScriptedQuestions questions;
    ASSERT_TRUE(reopened.OpenDatabase(path, OpenMode::Read, questions));
    EXPECT_EQ(reopened.Style(), DateStyle::Long);
    EXPECT_EQ(reopened.Shown().size(), 20003U);
    EXPECT_EQ(reopened.Recovery(), RecoveryState::None);
}

TEST_F(EndingTest, TheWindowComesBackWhereItWasButOnAScreen) {
    const QRect screen = app.Frame().screen()->availableGeometry();
    CMainFrame& frame = app.Frame();
    frame.KeepGeometry(windowSettings);
    for (const QRect& left : {QRect(30, 40, 500, 400), QRect(screen.right() - 20, screen.bottom() - 20, 500, 400),
                              QRect(-5000, -5000, 400, 300)}) {
        frame.show();
        frame.setGeometry(left);
        EXPECT_TRUE(frame.close());
        frame.setGeometry(1, 1, 300, 300);
        frame.KeepGeometry(windowSettings);
        EXPECT_EQ(frame.size(), left.size());
        EXPECT_TRUE(screen.contains(frame.geometry())) << frame.x() << ' ' << frame.y();
        EXPECT_TRUE(frame.geometry() == left || !screen.contains(left)) << "moved without need";
    }
    windowSettings.texts["Geometry"] = "bm9pc2U=\xFF";
    const QRect before = frame.geometry();
    frame.KeepGeometry(windowSettings);
    EXPECT_EQ(frame.geometry(), before);
}

}  // namespace
}  // namespace quillary
