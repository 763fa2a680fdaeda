// What the kernel tells of folders, and links to files.
#include <QTest>

#include "platform/DesktopFolderWatcher.h"
#include "platform/DesktopLauncher.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

TEST(FolderWatcher, TellsOfEveryWayInWhichFilesChange) {
    const TestFolder folder;
    folder.Write("watched/a.pdb", "a");
    folder.Write("other/b.pdb", "b");
    const Path a = folder / "watched/a.pdb";
    DesktopFolderWatcher watcher;
    bool told = false;
    watcher.OnChange([&] { told = true; });
    EXPECT_TRUE(watcher.Watch({folder / "watched", folder / "missing"})) << "one that is not there is no failure";
    const struct {
        const char* name;
        std::function<void()> change;
    } kRows[] = {
        {"written again in place", [&] { folder.Write("watched/a.pdb", "aa"); }},
        {"a new file", [&] { folder.Write("watched/c.pdb", "c"); }},
        {"another name", [&] { std::filesystem::rename(a, folder / "watched/d.pdb"); }},
        {"moved in over another", [&] { std::filesystem::rename(folder / "other/b.pdb", folder / "watched/c.pdb"); }},
        {"deleted", [&] { std::filesystem::remove(folder / "watched/c.pdb"); }},
        {"a new folder", [&] { std::filesystem::create_directory(folder / "watched/below"); }},
        {"the folder moved away", [&] { std::filesystem::rename(folder / "watched", folder / "moved"); }},
    };
    for (const auto& row : kRows) {
        QTest::qWait(0);
        told = false;
        row.change();
        EXPECT_TRUE(QTest::qWaitFor([&] { return told; })) << row.name;
    }
    // What is no longer watched is silent: its event would come before the one that is waited for.
    int count = 0;
    watcher.OnChange([&] { ++count; });
    EXPECT_TRUE(watcher.Watch({folder / "other"}));
    QTest::qWait(0);
    count = 0;
    folder.Write("moved/e.pdb", "e");
    QTest::qWait(0);
    EXPECT_EQ(count, 0);
    folder.Write("other/e.pdb", "e");
    EXPECT_TRUE(QTest::qWaitFor([&] { return count > 0; }));
}

TEST(Launcher, AFileLinkHoldsAnyName) {
    EXPECT_EQ(FileLink("/home/ann/My #1 List%\xFF.pdb"), "file:///home/ann/My%20%231%20List%25%FF.pdb");
}

}  // namespace
}  // namespace quillary
