// What a scan finds in folders that may hold anything, and that it comes back from them.
#include "platform/posix/FolderScan.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/posix/PosixFileAccess.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

class Finds : public ScanReceiver {
  public:
    std::vector<std::string> names;  // below the test's folder
    std::vector<FoundDatabase> databases;
    std::vector<Path> unreadable;
    std::size_t enough = 1000;

    explicit Finds(Path root) : m_root(std::move(root)) {}
    void Found(FoundDatabase database) override {
        names.push_back(database.path.lexically_relative(m_root).string());
        std::sort(names.begin(), names.end());
        databases.push_back(std::move(database));
    }
    void Unreadable(const Path& folder) override { unreadable.push_back(folder); }
    bool GoOn() override { return names.size() < enough; }

  private:
    Path m_root;
};

std::string Database() {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"T"});
    return parts.Build();
}

class FolderScanTest : public testing::Test {
  protected:
    std::vector<std::string> Scan(const std::vector<Path>& roots) {
        Finds found(m_folder.Root());
        ScanFolders(roots, m_files, found);
        return found.names;
    }

    TestFolder m_folder;
    PosixFileAccess m_files{m_folder / "state"};
};

TEST_F(FolderScanTest, FindsDatabasesAndNothingElse) {
    std::vector<std::string> expected = {"root/a.pdb", "root/B.PdB", "root/folder.pdb/inner.pdb",
                                         "root/2/3/4/5/6/7/8/level 8.pdb"};
    for (const std::string& name : expected) m_folder.Write(name.c_str(), Database());
    for (const char* name : {"root/2/3/4/5/6/7/8/9/level 9.pdb", "root/.hidden/a.pdb", "root/another ending.pdb.bak",
                             "root/pdb", "elsewhere/c.pdb"}) {
        m_folder.Write(name, Database());
    }
    m_folder.Write("root/noise.pdb", "noise");
    m_folder.Write("root/empty.pdb", "");
    ASSERT_EQ(mkfifo((m_folder / "root/pipe.pdb").c_str(), 0600), 0) << "nobody ever writes into it";
    std::filesystem::create_symlink(m_folder / "root/a.pdb", m_folder / "root/link.pdb");
    std::filesystem::create_directory_symlink(m_folder / "elsewhere", m_folder / "root/linked");
    std::filesystem::create_directory_symlink(m_folder / "root", m_folder / "root/loop");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(Scan({m_folder / "root"}), expected);
}

TEST_F(FolderScanTest, LooksAtEachFolderOnceWhateverTheRoots) {
    m_folder.Write("root/a.pdb", Database());
    m_folder.Write("root/card/b.pdb", Database());
    std::filesystem::create_directory_symlink(m_folder / "root", m_folder / "documents");
    const std::vector<std::string> both = {"root/a.pdb", "root/card/b.pdb"};
    EXPECT_EQ(Scan({m_folder / "root", m_folder / "root/card", m_folder / "root", m_folder / "missing"}), both);
    EXPECT_EQ(Scan({m_folder / "documents"}), (std::vector<std::string>{"documents/a.pdb", "documents/card/b.pdb"}))
        << "a root may be a link";
}

TEST_F(FolderScanTest, TellsSizeAndTimeAndEndsWhenToldTo) {
    const std::string image = Database();
    for (const char* name : {"a.pdb", "b.pdb", "c/c.pdb"}) {
        const Path path = m_folder.Write(name, image);
        const timespec times[2] = {{1, 0}, {1000000000, 5}};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }
    Finds found(m_folder.Root());
    found.enough = 2;
    ScanFolders({m_folder.Root()}, m_files, found);
    ASSERT_EQ(found.databases.size(), 2u);
    EXPECT_EQ(found.databases[0].size, image.size());
    EXPECT_EQ(found.databases[0].modified, 1000000000);
}

TEST_F(FolderScanTest, AFileThatAStoppedSaveLeftHalfWrittenIsFoundByItsRecoveryCopy) {
    const Path torn = m_folder.Write("torn.pdb", "half");
    EXPECT_TRUE(Scan({m_folder.Root()}).empty());
    FileError error;
    ASSERT_TRUE(m_files.WriteRecovery(m_files.RecoveryPath(torn), "copy", "", error)) << error.reason;
    EXPECT_EQ(Scan({m_folder.Root()}), std::vector<std::string>{"torn.pdb"});
}

TEST_F(FolderScanTest, TellsOfFoldersThatTheUserMayNotLookInto) {
    m_folder.Write("root/a.pdb", Database());
    m_folder.Write("root/closed/b.pdb", Database());
    m_folder.Write("card/c.pdb", Database());
    std::filesystem::permissions(m_folder.Root(), std::filesystem::perms(0755));
    for (const char* closed : {"root/closed", "card"}) {
        std::filesystem::permissions(m_folder / closed, std::filesystem::perms::none);
    }
    EXPECT_TRUE(AsOrdinaryUser([&] {
        Finds found(m_folder.Root());
        ScanFolders({m_folder / "root", m_folder / "card"}, m_files, found);
        return found.names == std::vector<std::string>{"root/a.pdb"} &&
               found.unreadable == std::vector<Path>{m_folder / "card", m_folder / "root/closed"};
    }));
    for (const char* closed : {"root/closed", "card"}) {
        std::filesystem::permissions(m_folder / closed, std::filesystem::perms::owner_all);
    }
}

}  // namespace
}  // namespace quillary
