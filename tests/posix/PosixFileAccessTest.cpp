#include "platform/posix/PosixFileAccess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "db/CopyBeside.h"
#include "db/Layout.h"
#include "db/Saving.h"
#include "tests/fakes/SaveInSteps.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

using Kind = FileError::Kind;
using std::chrono::milliseconds;

class PosixFiles : public testing::Test {
  protected:
    TestFolder m_folder;
    PosixFileAccess m_files{m_folder / "state", milliseconds(20)};

    Kind OpenError(const Path& path, LockKind lock) {
        FileError error;
        EXPECT_FALSE(m_files.Open(path, lock, error)) << path;
        return error.kind;
    }
    bool Save(const Path& path, std::string_view bytes, LoadedFile& read, Failure& failure) {
        const auto save = SaveUpToFlush(m_files, path, read, bytes, failure);
        if (!save || !save->Finish(failure)) return false;
        read.image = std::make_shared<const Image>(bytes);
        return true;
    }
    static unsigned ModeOf(const Path& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions());
    }
    LoadedFile Load(const Path& path) {
        LoadedFile loaded;
        FileError error;
        EXPECT_TRUE(LoadDatabaseFile(m_files, path, LoadMode::Read, nullptr, loaded, error)) << error.reason;
        return loaded;
    }
};

TEST_F(PosixFiles, OnlyRegularFilesOpen) {
    mkfifo((m_folder / "pipe").c_str(), 0600);
    std::filesystem::create_directory(m_folder / "folder");
    std::filesystem::create_symlink("folder", m_folder / "link to folder");
    for (const LockKind lock : {LockKind::Shared, LockKind::Exclusive}) {
        EXPECT_EQ(OpenError(m_folder / "absent", lock), Kind::NotFound);
        for (const Path& none :
             {m_folder / "pipe", m_folder / "folder", m_folder / "link to folder", Path("/dev/null")})
            EXPECT_EQ(OpenError(none, lock), Kind::NotAFile);
    }
    FileError error;
    EXPECT_FALSE(m_files.Create(m_folder / "pipe", error));
    EXPECT_EQ(error.kind, Kind::Exists);
    EXPECT_FALSE(m_files.Create(m_folder / "absent/file", error));
    EXPECT_EQ(error.kind, Kind::NotFound);
    EXPECT_EQ(Load(m_folder.Write("empty", "")).image->Size(), 0u);
}

TEST_F(PosixFiles, RightsDecideWhatCanBeReadAndWritten) {
    const auto file = [this](const char* name, mode_t mode) {
        const Path path = m_folder.Write(name, "x");
        chmod(path.c_str(), mode);
        return path;
    };
    const Path secret = file("secret", 0), readOnly = file("read only", 0444), writable = file("writable", 0666);
    const Path inClosedFolder = file("closed/file", 0666);
    chmod(m_folder.Root().c_str(), 0777);
    chmod((m_folder / "closed").c_str(), 0555);
    std::filesystem::create_directories(m_files.RecoveryPath(readOnly).parent_path());
    chmod((m_folder / "state").c_str(), 0);
    EXPECT_TRUE(AsOrdinaryUser([&] {
        LoadedFile loaded;
        FileError error;
        // A closed state folder is in no reader's way.
        return LoadDatabaseFile(m_files, readOnly, LoadMode::Read, nullptr, loaded, error) &&
               !m_files.Open(secret, LockKind::Shared, error) && error.kind == Kind::Denied &&
               !m_files.CanRead(secret) && m_files.CanRead(readOnly) && !m_files.CanWrite(readOnly) &&
               !m_files.CanWrite(inClosedFolder) && !m_files.Open(readOnly, LockKind::Exclusive, error) &&
               error.kind == Kind::Denied && m_files.CanWrite(writable);
    }));
    for (const char* folder : {"closed", "state"}) chmod((m_folder / folder).c_str(), 0755);
}

TEST_F(PosixFiles, AFolderIsMadeWithThoseAboveItAndForOthersToRead) {
    FileError error;
    const mode_t before = umask(022);
    for (int time = 0; time < 2; ++time) EXPECT_TRUE(m_files.MakeFolder(m_folder / "new/Documents/", error));
    umask(before);
    EXPECT_EQ(ModeOf(m_folder / "new/Documents"), 0755u);
    m_folder.Write("file", "");
    for (const char* inTheWay : {"file", "file/Documents/"}) {
        EXPECT_FALSE(m_files.MakeFolder(m_folder / inTheWay, error));
        EXPECT_EQ(error.reason, "Not a directory");
    }
}

TEST_F(PosixFiles, AHugeFileIsRefusedUnread) {
    const Path path = m_folder.Write("huge", "x");
    FileError error;
    Image image("kept");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 32);
    EXPECT_FALSE(m_files.Open(path, LockKind::Shared, error)->Read(image, error));
    EXPECT_EQ(error.kind, Kind::TooLarge);
    EXPECT_EQ(image.Bytes(), "kept");
}

TEST_F(PosixFiles, ALockHoldsUntilItsFileIsClosed) {
    const Path path = m_folder.Write("db.pdb", "A");
    PosixFileAccess patient(m_folder / "state");
    FileError error;
    auto writer = m_files.Open(path, LockKind::Exclusive, error);
    EXPECT_EQ(OpenError(path, LockKind::Shared), Kind::Busy);
    EXPECT_EQ(OpenError(path, LockKind::Exclusive), Kind::Busy);
    EXPECT_FALSE(patient.RemoveUnlocked(path, error));
    EXPECT_EQ(error.kind, Kind::Busy);
    Image image;
    std::thread reader([&] {
        FileError none;
        const auto file = patient.Open(path, LockKind::Shared, none);
        EXPECT_TRUE(file && file->Read(image, none)) << none.reason;
        EXPECT_TRUE(patient.Open(path, LockKind::Shared, none)) << "two readers";
        EXPECT_FALSE(patient.RemoveUnlocked(path, none)) << "a reader has it";
    });
    EXPECT_TRUE(writer->WriteAt(0, "B", error));
    writer.reset();
    reader.join();
    EXPECT_EQ(image.Bytes(), "B");
}

TEST_F(PosixFiles, AFileThatLostItsNameIsNotWritten) {
    const Path path = m_folder.Write("db.pdb", "old");
    FileError error;
    LoadedFile read = Load(path);
    std::shared_ptr<LockedFile> held = m_files.Open(path, LockKind::Exclusive, error);
    std::filesystem::rename(m_folder.Write("theirs", "theirs"), path);
    Failure failure;
    EXPECT_FALSE(SaveUpToFlush(m_files, path, read, "mine", failure, false, held));
    EXPECT_EQ(failure.message, Message::ChangedByAnother);
    EXPECT_EQ(FileBytes(path), "theirs");
}

TEST_F(PosixFiles, ASaveKeepsTheFileItselfAndLeavesNothingBehind) {
    const Path path = m_folder.Write("real/db.pdb", "old bytes");
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("real/db.pdb", m_folder / "link.pdb");
    const FileStamp before = Load(path).stamp;
    LoadedFile read = Load(m_folder / "link.pdb");
    Failure failure;
    for (const std::string& bytes : {std::string("shorter"), std::string(70000, 'x'), std::string("x")}) {
        ASSERT_TRUE(Save(m_folder / "link.pdb", bytes, read, failure)) << failure.text;
        EXPECT_EQ(FileBytes(path), bytes);
    }
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "link.pdb"));
    EXPECT_TRUE(Load(path).stamp.SameFile(before));
    EXPECT_EQ(ModeOf(path), 0640u);
    EXPECT_TRUE(std::filesystem::is_empty(m_folder / "state/quillary/recovery"));
}

TEST_F(PosixFiles, AStampSaysWhenALaterWriteMayCarryTheSameTime) {
    const Path path = m_folder.Write("db.pdb", "x");
    const std::tuple<const char*, std::time_t, long, bool> kCases[] = {{"long ago", 3600, 123456789, false},
                                                                       {"long ago, on a memory card", 3600, 0, false},
                                                                       {"within a memory card's grain", 1, 0, true},
                                                                       {"by a clock ahead of ours", -60, 1, true}};
    for (const auto& [name, secondsAgo, nanoseconds, mayHide] : kCases) {
        const timespec times[2] = {{0, UTIME_OMIT}, {std::time(nullptr) - secondsAgo, nanoseconds}};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        EXPECT_EQ(Load(path).stamp.mayHideAWrite, mayHide) << name;
    }
}

TEST_F(PosixFiles, AWriteRightBehindOursIsNoticed) {
    const Path path = m_folder.Write("db.pdb", "0");
    for (int i = 0; i < 20; ++i) {
        LoadedFile written = Load(path);
        Failure failure;
        ASSERT_TRUE(SaveUpToFlush(m_files, path, written, "ours", failure)) << failure.text;
        EXPECT_FALSE(written.stamp.mayHideAWrite) << "every save would read back the one before";
        std::fstream(path) << "them";
        FileError error;
        ASSERT_TRUE(DropRecoveryCopy(m_files, path, error));
        written.image = std::make_shared<const Image>("ours");
        EXPECT_FALSE(Save(path, "more", written, failure)) << "round " << i;
        ASSERT_EQ(failure.message, Message::ChangedByAnother) << failure.text;
    }
}

TEST_F(PosixFiles, AWriteThatPutsTheTimeBackIsNoticed) {
    for (const char* theirs : {"them", "ours, and more"}) {
        const Path path = m_folder.Write("db.pdb", "ours");
        const auto time = std::filesystem::last_write_time(path) - std::chrono::hours(1);
        std::filesystem::last_write_time(path, time);
        LoadedFile read = Load(path);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // the kernel's clock moves on
        std::fstream(path) << theirs;
        std::filesystem::last_write_time(path, time);
        Failure failure;
        EXPECT_FALSE(Save(path, "more", read, failure)) << theirs;
        EXPECT_EQ(failure.message, Message::ChangedByAnother);
    }
}

TEST_F(PosixFiles, EverySpellingOfAPathFindsTheSameRecoveryFile) {
    const Path path = m_folder.Write("real/db.pdb", "x");
    const Path other = m_folder.Write("real/other.pdb", "x");
    std::filesystem::create_directory_symlink("real", m_folder / "link");
    std::filesystem::create_symlink("link/db.pdb", m_folder / "db.pdb");
    const Path recovery = m_files.RecoveryPath(path);
    EXPECT_EQ(recovery.parent_path(), m_folder / "state/quillary/recovery");
    EXPECT_EQ(m_files.RecoveryPath(m_folder / "link/../real/./db.pdb"), recovery);
    EXPECT_EQ(m_files.RecoveryPath(m_folder / "db.pdb"), recovery);
    EXPECT_EQ(m_files.RecoveryPath(std::filesystem::relative(path)), recovery);
    EXPECT_NE(m_files.RecoveryPath(other), recovery);
    EXPECT_EQ(m_files.RecoveryPath(m_folder / "link/new.pdb"), m_files.RecoveryPath(m_folder / "real/new.pdb"))
        << "before the file is made";
}

TEST_F(PosixFiles, ARecoveryFileIsTheUsersAloneAndFollowsNoLink) {
    const Path path = m_folder.Write("db.pdb", "old");
    const Path victim = m_folder.Write("victim", "untouched");
    const Path recovery = m_files.RecoveryPath(path);
    FileError error;
    const mode_t mask = umask(0);
    ASSERT_TRUE(m_files.WriteRecovery(recovery, "head", "body", error)) << error.reason;
    umask(mask);
    for (const auto& [made, mode] :
         {std::pair{recovery, 0600u}, std::pair{recovery.parent_path(), 0700u}, std::pair{m_folder / "state", 0700u}}) {
        EXPECT_EQ(ModeOf(made), mode) << made;
    }
    std::filesystem::remove(recovery);
    std::filesystem::create_symlink(victim, recovery);
    std::filesystem::create_symlink(victim, recovery.string() + ".new");
    Image image;
    EXPECT_FALSE(m_files.ReadRecovery(recovery, image, error));
    ASSERT_TRUE(m_files.WriteRecovery(recovery, "HEAD", "BODY", error)) << error.reason;
    ASSERT_TRUE(m_files.ReadRecovery(recovery, image, error)) << error.reason;
    EXPECT_EQ(image.Bytes(), "HEADBODY");
    EXPECT_EQ(FileBytes(victim), "untouched");
}

TEST_F(PosixFiles, TheBeginningOfARecoveryFileGoesWhenNobodyWritesIt) {
    const Path path = m_folder.Write("db.pdb", "old");
    const std::string left = m_folder.Write("state/quillary/recovery/x", "").parent_path() /
                             (m_files.RecoveryPath(path).filename().string() + ".new");
    std::ofstream(left) << "half";
    (void)Load(path);
    EXPECT_TRUE(std::filesystem::exists(left)) << "reading removes nothing";
    LoadedFile loaded;
    FileError error;
    {
        const auto writer = m_files.Open(path, LockKind::Exclusive, error);
        EXPECT_FALSE(LoadDatabaseFile(m_files, path, LoadMode::Complete, nullptr, loaded, error));
        EXPECT_TRUE(std::filesystem::exists(left)) << "it may be just being written";
    }
    EXPECT_TRUE(LoadDatabaseFile(m_files, path, LoadMode::Complete, nullptr, loaded, error));
    EXPECT_FALSE(std::filesystem::exists(left));
}

TEST_F(PosixFiles, ACopyIsForThoseWhoMayReadTheOriginal) {
    const Path path = m_folder.Write("db.pdb", "secret");
    for (const unsigned mode : {0600u, 0640u, 0664u}) {
        chmod(path.c_str(), mode);
        const mode_t mask = umask(022);
        Path copy;
        Failure failure;
        EXPECT_TRUE(CopyBeside(m_files, path, "secret", copy, failure)) << failure.text;
        umask(mask);
        EXPECT_EQ(ModeOf(copy), mode);
    }
    FileError error;
    EXPECT_TRUE(m_files.CreateLike(m_folder / "new.pdb", m_folder / "absent", error));
    EXPECT_EQ(ModeOf(m_folder / "new.pdb"), 0600u);
}

TEST_F(PosixFiles, WithoutARecoveryFileNothingIsWritten) {
    const Path path = m_folder.Write("db.pdb", "old");
    m_folder.Write("state", "in the way");
    LoadedFile read = Load(path);
    Failure failure;
    EXPECT_FALSE(Save(path, "new", read, failure));
    EXPECT_EQ(failure.message, Message::RecoveryNotWritten);
    EXPECT_NE(failure.text.find("Not a directory"), std::string::npos) << failure.text;
    EXPECT_EQ(FileBytes(path), "old");
    std::shared_ptr<LockedFile> held;
    FileStamp stamp;
    EXPECT_FALSE(CreateDatabaseFile(m_files, m_folder / "new.pdb", Image("new"), held, stamp, failure));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "new.pdb"));
}

TEST_F(PosixFiles, ARenameTakesNoOthersPlace) {
    const Path path = m_folder.Write("a.pdb", "ours");
    const Path taken = m_folder.Write("b.pdb", "theirs");
    FileError error;
    EXPECT_FALSE(m_files.Rename(path, taken, error));
    EXPECT_EQ(error.kind, Kind::Exists);
    EXPECT_EQ(FileBytes(taken), "theirs");
    EXPECT_TRUE(m_files.Rename(path, m_folder / "c.pdb", error)) << error.reason;
    EXPECT_EQ(FileBytes(m_folder / "c.pdb"), "ours");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(m_files.Rename(m_folder / "c.pdb", m_folder / std::string(300, 'x').c_str(), error));
    EXPECT_EQ(error.reason, "File name too long");
}

}  // namespace
}  // namespace quillary
