// The program's window over a disk in memory.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/QuillaryApp.h"
#include "db/Clock.h"
#include "db/UserLocale.h"
#include "platform/FolderWatcher.h"
#include "platform/InputPanel.h"
#include "platform/Launcher.h"
#include "platform/RecentFiles.h"
#include "platform/Trash.h"
#include "remote/HttpSession.h"
#include "tests/fakes/FakePersonalStore.h"
#include "tests/fakes/MemoryFiles.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/fakes/TestLocations.h"
#include "tests/fakes/TestSettings.h"
#include "tests/ui/User.h"
#include "ui/CommandIds.h"
#include "views/QuillaryView.h"

namespace quillary {

/// Lets a test take away the disk.
class WindowFiles : public MemoryFiles {
  public:
    bool writable = true;
    Path full;                  // the file whose recovery copy cannot be written, so that no save begins
    bool keepRecovery = false;  // as a save that stopped before it removed its copy
    int saves = 0;

    bool CanWrite(const Path& path) override { return writable && MemoryFiles::CanWrite(path); }
    bool Remove(const Path& path, FileError& error) override {
        return keepRecovery || MemoryFiles::Remove(path, error);
    }
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;
};

class TestTrash : public Trash {
  public:
    explicit TestTrash(WindowFiles& files) : m_files(files) {}
    bool there = true;
    std::map<std::string, std::string> contents;

    bool Put(const Path& file) override;

  private:
    WindowFiles& m_files;
};

class TestRecentFiles : public RecentFiles {
  public:
    std::vector<Path> paths;

    void Add(const Path& path) override { paths.push_back(path); }
};

class TestInputPanel : public InputPanel {
  public:
    bool shown = false;

    void Show() override { shown = true; }
    void Hide() override { shown = false; }
};

class TestFolderWatcher : public FolderWatcher {
  public:
    std::vector<Path> watched;
    bool isTold = false;
    bool runsOut = false;

    bool Watch(const std::vector<Path>& folders) override {
        watched = folders;
        isTold = true;
        return !runsOut;
    }
    using FolderWatcher::TellChange;
};

class TestLauncher : public Launcher {
  public:
    std::map<std::string, Program> programs;   // by scheme
    std::vector<std::string> started, opened;  // these links
    std::vector<Path> shown, mailed, beamed;
    int exitStatus = 0;  // of what is started
    bool there = true, mails = true;
    Bluetooth bluetooth = Bluetooth::NoAdapter;

    void ShowInFolder(const Path& file, Failed failed) override {
        shown.push_back(file);
        if (!there) failed();
    }
    bool OpenLink(const std::string& link) override {
        if (there) opened.push_back(link);
        return there;
    }

    Program ProgramFor(const std::string& scheme) override {
        const auto found = programs.find(scheme);
        return found == programs.end() ? Program::None : found->second;
    }
    void StartProgramFor(const std::string& link, EndedBadly endedBadly) override {
        started.push_back(link);
        if (exitStatus != 0) endedBadly(exitStatus);
    }
    void SendByMail(const Path& file, QWindow*, Failed failed) override {
        mailed.push_back(file);
        if (!mails) failed();
    }
    Bluetooth BluetoothState() override { return bluetooth; }
    void SendByBluetooth(const Path& file, EndedBadly endedBadly) override {
        beamed.push_back(file);
        if (exitStatus != 0) endedBadly(exitStatus);
    }
};

/// Sunday, 7 March 2004, 2:30 pm, wherever and whenever the test runs.
class TestClock : public Clock {
  public:
    std::int32_t Today() const override { return 36591; }
    std::int32_t SecondsSinceMidnight() const override { return 14 * 3600 + 30 * 60 + 59; }
};

class TestLocale : public UserLocale {
  public:
    DateOrder Order() const override { return DateOrder::MonthDayYear; }
};

/// What the window needs beside a disk.
struct TestDesktop {
    TestLocations locations;
    TestSettings settings;
    TestSettings windowSettings;
    TestRecentFiles recentFiles;
    TestInputPanel inputPanel;
    TestLauncher launcher;
    TestClock clock;
    TestLocale locale;
    std::shared_ptr<FakePersonalItems> items = std::make_shared<FakePersonalItems>();
    std::function<std::unique_ptr<HttpSession>()> openHttp;

    [[nodiscard]] Desktop On(FileAccess& disk, Trash& trash, FolderWatcher& folders, FolderWatcher& file) {
        return {disk,
                locations,
                settings,
                trash,
                inputPanel,
                windowSettings,
                recentFiles,
                folders,
                file,
                launcher,
                clock,
                locale,
                [this] { return std::make_unique<FakePersonalStore>(items); },
                [this] { return openHttp ? openHttp() : nullptr; }};
    }
};

class WindowTest : public ::testing::Test, protected TestDesktop {
  protected:
    WindowTest();

    /// Puts a file onto the disk and opens it as a start with its path would.
    CQuillaryDoc* Open(const std::string& image, const Path& path = "/people.pdb");
    /// Clicks through the menus.
    void ChooseMenu(const QString& popup, const QString& item);
    /// Chooses the command, and does the steps in its dialog, which they end.
    void InDialog(int id, const QString& popup, const QString& item, User::Steps steps) {
        user.ExpectDialog(id, std::move(steps));
        ChooseMenu(popup, item);
    }
    /// What the window shows.
    [[nodiscard]] QString Title() { return app.Frame().windowTitle(); }
    [[nodiscard]] QString Counter();
    [[nodiscard]] QString Cell(int row, int column);
    [[nodiscard]] CQuillaryView* View();
    /// The file's documents, after the window has closed it.
    [[nodiscard]] std::string CloseAndReadFile(const Path& path = "/people.pdb");
    /// What the file holds now, as another program would read it; until the next call.
    [[nodiscard]] const CQuillaryDoc& Stored(const Path& path = "/people.pdb");

    [[nodiscard]] Desktop DesktopOn(FileAccess& disk) { return On(disk, trash, folderWatcher, fileWatcher); }

    WindowFiles files;
    TestTrash trash{files};
    TestFolderWatcher folderWatcher;
    TestFolderWatcher fileWatcher;
    CQuillaryApp app{DesktopOn(files)};
    User user;

  private:
    std::optional<CQuillaryDoc> m_stored;
};

inline constexpr char kDiskFull[] =
    "The recovery copy /people.pdb.recovery could not be written (No space left on device). "
    "The database was not touched.";
inline constexpr char kDiskFullLeaving[] =
    "The recovery copy /people.pdb.recovery could not be written (No space left on device). "
    "The database was not touched. The changes to \"People\" are not saved.";
inline constexpr char kChangedByAnother[] =
    "Another program has changed this database since it was read. It was not overwritten.";

/// Three records of a Text, a Number, a Date and a Checkbox.
[[nodiscard]] ImageParts PeopleParts();

}  // namespace quillary
