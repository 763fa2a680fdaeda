#include "db/Saving.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "db/RecoveryFile.h"
#include "tests/fakes/FaultyFiles.h"
#include "tests/fakes/SaveInSteps.h"

namespace quillary {
namespace {

using testing::AnyOf;

const Path kPath = "/home/ann/films.pdb";
const Path kRecovery = "/home/ann/films.pdb.recovery";

std::string Bytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

// Length and hash, so that a failure prints readably.
std::string Id(std::string_view bytes) { return std::to_string(bytes.size()) + ':' + std::to_string(Hash64(bytes)); }
std::string IdOf(const FaultyFiles& disk, const Path& path) {
    const auto bytes = disk.BytesOf(path);
    return bytes ? Id(*bytes) : "none";
}

LoadedFile MustLoad(FaultyFiles& files, LoadMode mode = LoadMode::Read) {
    LoadedFile loaded;
    FileError error;
    EXPECT_TRUE(LoadDatabaseFile(files, kPath, mode, nullptr, loaded, error)) << error.reason;
    if (!loaded.image) loaded.image = std::make_shared<Image>();
    return loaded;
}

std::string Shown(const LoadedFile& loaded) { return Id(loaded.image->Bytes()); }

std::unique_ptr<UnfinishedSave> Rewrite(FaultyFiles& files, LoadedFile read, const std::string& bytes, Failure& failure,
                                        bool overwriteChanges = false) {
    return SaveUpToFlush(files, kPath, read, bytes, failure, overwriteChanges);
}

// One save to its end or to its first failure.
bool Save(FaultyFiles& files, const LoadedFile& read, const std::string& bytes, Failure& failure,
          bool overwriteChanges = false) {
    const auto save = Rewrite(files, read, bytes, failure, overwriteChanges);
    return save && save->Finish(failure);
}

bool Make(FaultyFiles& files, const std::string& bytes, Failure& failure) {
    std::shared_ptr<LockedFile> held;
    FileStamp stamp;
    return CreateDatabaseFile(files, kPath, Image(bytes), held, stamp, failure);
}

// What a reader sees; what completing it leaves is the same and needs its recovery file no more.
std::string Reopened(FaultyFiles& disk) {
    const LoadedFile read = MustLoad(disk);
    EXPECT_EQ(disk.Changes(), 0) << "reading wrote";
    const LoadedFile completed = MustLoad(disk, LoadMode::Complete);
    EXPECT_EQ(Shown(completed), Shown(read));
    EXPECT_EQ(completed.recovery, RecoveryState::None);
    EXPECT_EQ(IdOf(disk, kPath), Shown(read));
    EXPECT_EQ(IdOf(disk, kRecovery), "none");
    return Shown(read);
}

// Of the old image, the new one, and the disk's blocks.
using Sizes = std::tuple<std::size_t, std::size_t, std::size_t>;

class SavingSizes : public testing::TestWithParam<Sizes> {
  protected:
    const std::string m_old = Bytes(std::get<0>(GetParam()), 1);
    const std::string m_new = Bytes(std::get<1>(GetParam()), 2);

    FaultyFiles Disk() const {
        FaultyFiles disk(std::get<2>(GetParam()));
        disk.Put(kPath, m_old);
        return disk;
    }
};

// The last but one change the length inside the last block and to a block's end.
INSTANTIATE_TEST_SUITE_P(Saving, SavingSizes,
                         testing::Values(Sizes{1800, 1800, 512}, Sizes{700, 1900, 512}, Sizes{1900, 700, 512},
                                         Sizes{1030, 1500, 512}, Sizes{1500, 1024, 512}, Sizes{9000, 14000, 4096}));

TEST_P(SavingSizes, EveryStopAndEveryLossOfUnflushedBytesLeavesTheOldOrTheNewImage) {
    for (const auto fail : {FaultyFiles::Fail::ThisCallAndLater, FaultyFiles::Fail::ThisCall}) {
        for (int failAt = 1;; ++failAt) {
            SCOPED_TRACE(failAt);
            FaultyFiles disk = Disk();
            const LoadedFile read = MustLoad(disk);
            disk.FailAt(failAt, fail);
            Failure failure;
            const bool saved = Save(disk, read, m_new, failure);
            if (fail == FaultyFiles::Fail::ThisCall) {
                EXPECT_EQ(saved, failure.message == Message::None);
                EXPECT_NE(failure.message, Message::WriteFailedTorn) << "the disk took back every byte";
                EXPECT_EQ(IdOf(disk, kPath), Id(saved ? m_new : m_old));
            }
            disk.ForEachCrash(
                [&](FaultyFiles& left) { EXPECT_THAT(Reopened(left), AnyOf(Id(saved ? m_new : m_old), Id(m_new))); });
            if (HasFailure() || disk.Calls() < failAt) break;
        }
    }
}

TEST_P(SavingSizes, CompletingCanBeStoppedToo) {
    FaultyFiles disk = Disk();
    const LoadedFile read = MustLoad(disk);
    Failure failure;
    ASSERT_TRUE(Rewrite(disk, read, m_new, failure));
    int mixtures = 0;
    disk.ForEachCrash([&](FaultyFiles& torn) {
        const LoadedFile before = MustLoad(torn);
        if (before.recovery != RecoveryState::Pending || ++mixtures > 12) return;
        EXPECT_EQ(Shown(before), Id(m_new));
        const std::string bytes = *torn.BytesOf(kPath);
        const std::string recovery = *torn.BytesOf(kRecovery);
        for (int stopAt = 1;; ++stopAt) {
            torn.Put(kPath, bytes);
            torn.Put(kRecovery, recovery);
            torn.FailAt(stopAt, FaultyFiles::Fail::ThisCallAndLater);
            LoadedFile loaded;
            FileError error;
            (void)LoadDatabaseFile(torn, kPath, LoadMode::Complete, nullptr, loaded, error);
            torn.ForEachCrash([&](FaultyFiles& left) { EXPECT_EQ(Reopened(left), Id(m_new)) << "call " << stopAt; });
            if (HasFailure() || torn.Calls() < stopAt) break;
        }
    });
    EXPECT_GT(mixtures, 0);
}

// A save that meets an earlier stopped one ends that first, and either is whole at any time.
TEST_P(SavingSizes, ASaveOverAStoppedRewriteCanBeStoppedToo) {
    const std::string third = Bytes(1300, 3);
    int mixtures = 0;
    for (int first = 1, stopAt = 1;; ++stopAt) {
        FaultyFiles disk = Disk();
        Failure failure;
        const LoadedFile before = MustLoad(disk);
        disk.FailAt(first, FaultyFiles::Fail::ThisCallAndLater);
        if (Save(disk, before, m_new, failure)) break;
        disk.FailAt(0, FaultyFiles::Fail::ThisCall);
        const LoadedFile read = MustLoad(disk);
        mixtures += read.recovery == RecoveryState::Pending ? 1 : 0;
        disk.FailAt(stopAt, FaultyFiles::Fail::ThisCallAndLater);
        const bool saved = Save(disk, read, third, failure);
        disk.ForEachCrash([&](FaultyFiles& left) {
            EXPECT_THAT(Reopened(left), AnyOf(Id(third), Id(saved ? third : m_old), Id(saved ? third : m_new)))
                << "calls " << first << ", " << stopAt;
        });
        if (HasFailure()) break;
        if (disk.Calls() >= stopAt) continue;
        ++first;
        stopAt = 0;
    }
    EXPECT_GT(mixtures, 0);
}

TEST(Saving, AStoppedCreationLeavesNoFileOrTheWholeOne) {
    const std::string bytes = Bytes(2700, 4);
    for (const auto fail : {FaultyFiles::Fail::ThisCallAndLater, FaultyFiles::Fail::ThisCall}) {
        for (int failAt = 1;; ++failAt) {
            FaultyFiles disk;
            disk.FailAt(failAt, fail);
            Failure failure;
            const bool made = Make(disk, bytes, failure);
            const bool goesOn = fail == FaultyFiles::Fail::ThisCall;
            if (!made && goesOn && failure.message != Message::WriteFailedTorn) {
                EXPECT_EQ(IdOf(disk, kPath), "none") << failAt;
                EXPECT_EQ(failure.text.find("as it was"), std::string::npos) << "there was no file: " << failure.text;
            }
            disk.ForEachCrash([&](FaultyFiles& left) {
                const auto found = left.BytesOf(kPath);
                // A failed creation that did take the bytes back may leave the name.
                const bool isNone = !found || (found->empty() && !left.BytesOf(kRecovery));
                if (isNone) {
                    EXPECT_FALSE(made) << failAt;
                } else {
                    EXPECT_EQ(Reopened(left), Id(bytes)) << failAt;
                }
            });
            if (HasFailure() || disk.Calls() < failAt) break;
        }
    }
}

TEST(Saving, ACopyOfADatabaseThatHasGoneIsNotReplacedByANewOne) {
    FaultyFiles disk;
    const std::string copy = RecoveryFile::Head(kPath, {1, 7, 0, 0, false}, "old", "new") + "new";
    disk.Put(kRecovery, copy);
    Failure failure;
    EXPECT_FALSE(Make(disk, "mine", failure));
    EXPECT_EQ(failure.message, Message::CopyOfMissing);
    EXPECT_EQ(disk.BytesOf(kRecovery), copy);
    EXPECT_EQ(RecoveryOfMissing(disk, kPath), RecoveryState::Unrelated);
    disk.Put(kRecovery, RecoveryFile::Head(kPath, {}, {}, "new") + "new");
    EXPECT_EQ(RecoveryOfMissing(disk, kPath), RecoveryState::None) << "it was never there";
    EXPECT_TRUE(Make(disk, "mine", failure));
}

TEST(Saving, ATakenNameIsRefusedWithoutTouchingItsRecoveryFile) {
    FaultyFiles disk;
    disk.Put(kPath, "theirs");
    disk.Put(kRecovery, "needed");
    Failure failure;
    EXPECT_FALSE(Make(disk, "mine", failure));
    EXPECT_EQ(failure.message, Message::NameExists);
    EXPECT_EQ(disk.Changes(), 0);
}

// Blocks of `a` and `b` in turn, as long as `a`.
std::string Mixed(std::string a, std::string_view b) {
    for (std::size_t at = 512; at < std::min(a.size(), b.size()); at += 1024) {
        const std::size_t count = std::min<std::size_t>(512, a.size() - at);
        a.replace(at, count, b.substr(at, count));
    }
    return a;
}

TEST(Saving, WhatTheFileHoldsDecidesAboutItsRecoveryFile) {
    const std::string oldBytes = Bytes(2300, 5);
    const std::string newBytes = Bytes(3100, 6);
    const std::string zeros(3100 - 2300, '\0');
    std::string touched = Mixed(oldBytes, newBytes);
    touched[600] ^= 1;
    const std::tuple<const char*, std::string, bool, RecoveryState> kCases[] = {
        {"the new image", newBytes, false, RecoveryState::None},
        {"the old image", oldBytes, false, RecoveryState::None},
        {"the old image, copied back", oldBytes, true, RecoveryState::None},
        {"blocks of both, not grown", Mixed(oldBytes, newBytes), false, RecoveryState::Pending},
        {"blocks of both, grown", Mixed(newBytes, oldBytes + zeros), false, RecoveryState::Pending},
        {"only the length has grown", oldBytes + zeros, false, RecoveryState::Pending},
        {"the new bytes up to the old length", newBytes.substr(0, 2300), false, RecoveryState::Pending},
        {"blocks of both in another file", Mixed(oldBytes, newBytes), true, RecoveryState::Unrelated},
        {"a backup restored in place", Bytes(2300, 7), false, RecoveryState::Unrelated},
        {"a mixture in which one byte was changed", touched, false, RecoveryState::Unrelated},
        {"something longer", oldBytes + newBytes, false, RecoveryState::Unrelated},
        {"the old image behind a grown length, and more", oldBytes + Bytes(800, 8), false, RecoveryState::Unrelated},
        {"fewer blocks than either", oldBytes.substr(0, 1024), false, RecoveryState::Unrelated},
        {"nothing", "", false, RecoveryState::Unrelated},
    };
    for (const auto& [name, holds, otherInode, state] : kCases) {
        SCOPED_TRACE(name);
        FaultyFiles disk;
        disk.Put(kPath, oldBytes);
        Failure failure;
        ASSERT_TRUE(Rewrite(disk, MustLoad(disk), newBytes, failure));
        otherInode ? disk.Replace(kPath, holds) : disk.Put(kPath, holds);
        for (const LoadMode mode : {LoadMode::Read, LoadMode::Complete}) {
            const LoadedFile loaded = MustLoad(disk, mode);
            const bool completed = mode == LoadMode::Complete && state == RecoveryState::Pending;
            EXPECT_EQ(loaded.recovery, completed ? RecoveryState::None : state);
            EXPECT_EQ(Shown(loaded), Id(state == RecoveryState::Pending ? newBytes : holds));
        }
        if (state != RecoveryState::Unrelated) continue;
        EXPECT_FALSE(Save(disk, MustLoad(disk), Bytes(700, 3), failure));
        EXPECT_EQ(failure.message, Message::UndecidedCopy) << "nobody has decided about the copy";
        EXPECT_TRUE(RestoreRecoveryCopy(disk, kPath, failure)) << failure.text;
        EXPECT_EQ(MustLoad(disk).recovery, RecoveryState::None);
        EXPECT_EQ(IdOf(disk, kPath), Id(newBytes));
    }
}

TEST(Saving, AStoppedRestoreLeavesFileAndCopyOrTheCopyInTheFilesPlace) {
    const std::string oldBytes = Bytes(2300, 5);
    const std::string newBytes = Bytes(3100, 6);
    // A backup, a longer file, an empty one, none.
    const std::optional<std::string> kHeld[] = {Bytes(2300, 7), Bytes(4700, 7), "", std::nullopt};
    for (const auto& holds : kHeld) {
        // True when the user can still decide.
        const auto isUndecided = [&](FaultyFiles& disk) {
            const auto bytes = disk.BytesOf(kPath);
            if (!bytes) return RecoveryOfMissing(disk, kPath) == RecoveryState::Unrelated;
            if (MustLoad(disk).recovery != RecoveryState::Unrelated) return false;
            EXPECT_EQ(Id(*bytes), Id(holds.value_or("")));
            return true;
        };
        bool goesOn = true;
        for (int failAt = 1; goesOn; ++failAt) {
            for (const auto fail : {FaultyFiles::Fail::ThisCallAndLater, FaultyFiles::Fail::ThisCall}) {
                SCOPED_TRACE(Id(holds.value_or("")) + ", call " + std::to_string(failAt));
                FaultyFiles disk;
                disk.Put(kRecovery, RecoveryFile::Head(kPath, {1, 7, 0, 0, false}, oldBytes, newBytes) + newBytes);
                if (holds) disk.Put(kPath, *holds);
                disk.FailAt(failAt, fail);
                Failure failure;
                const bool restored = RestoreRecoveryCopy(disk, kPath, failure);
                const bool refused = disk.Calls() >= failAt;
                disk.FailAt(0, fail);
                if (restored) {
                    EXPECT_EQ(IdOf(disk, kPath), Id(newBytes));
                } else if (failure.message == Message::WriteFailedTorn) {
                    EXPECT_FALSE(isUndecided(disk));
                } else if (fail == FaultyFiles::Fail::ThisCall) {
                    EXPECT_EQ(disk.BytesOf(kPath), holds);
                }
                disk.ForEachCrash([&](FaultyFiles& left) {
                    if (!restored && isUndecided(left)) return;
                    EXPECT_EQ(Reopened(left), Id(newBytes));
                });
                if (HasFailure()) return;
                goesOn = refused;
            }
        }
    }
}

TEST(Saving, AnotherProgramsWriteIsNotOverwrittenUnasked) {
    const std::string read = Bytes(900, 9);
    std::string sameSize = read;
    sameSize[450] ^= 1;
    const struct {
        const char* name;
        std::string holds;
        bool keepTime;
        bool replaced;
        bool overwrite;
        Message message;
    } kCases[] = {
        {"a longer file", read + "x", false, false, false, Message::ChangedByAnother},
        {"one byte", sameSize, false, false, false, Message::ChangedByAnother},
        {"one byte within the clock's grain", sameSize, true, false, false, Message::ChangedByAnother},
        {"another file under the name", sameSize, false, true, false, Message::ChangedByAnother},
        {"the same bytes written again", read, false, false, false, Message::None},
        {"the same bytes in another file", read, false, true, false, Message::None},
        {"overwriting was asked for", sameSize, false, false, true, Message::None},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        FaultyFiles disk;
        disk.Put(kPath, read);
        disk.mayHideAWrite = c.keepTime;
        const LoadedFile loaded = MustLoad(disk);
        c.replaced ? disk.Replace(kPath, c.holds) : disk.Put(kPath, c.holds, c.keepTime);
        Failure failure;
        EXPECT_EQ(Save(disk, loaded, "mine", failure, c.overwrite), c.message == Message::None);
        EXPECT_EQ(failure.message, c.message);
        EXPECT_EQ(IdOf(disk, kPath), Id(c.message == Message::None ? "mine" : c.holds));
        EXPECT_EQ(IdOf(disk, kRecovery), "none");
    }
}

TEST(Saving, AFailedFlushOfAnOverwriteBringsBackWhatTheOtherProgramWrote) {
    FaultyFiles disk;
    disk.Put(kPath, "read");
    const LoadedFile loaded = MustLoad(disk);
    disk.Put(kPath, "theirs");
    Failure failure;
    const auto save = Rewrite(disk, loaded, "mine", failure, true);
    ASSERT_TRUE(save);
    disk.FailAt(1, FaultyFiles::Fail::ThisCall);
    EXPECT_FALSE(save->Finish(failure));
    EXPECT_EQ(failure.message, Message::WriteFailed);
    EXPECT_EQ(disk.BytesOf(kPath), "theirs");
}

TEST(Saving, AnotherProgramsLockIsRespectedUntilTheFlush) {
    FaultyFiles disk;
    disk.Put(kPath, "old");
    const LoadedFile loaded = MustLoad(disk);
    FileError error;
    Failure failure;
    {
        const auto reader = disk.Open(kPath, LockKind::Shared, error);
        EXPECT_FALSE(Save(disk, loaded, "new", failure));
        EXPECT_EQ(failure.message, Message::FileBusy);
    }
    auto save = Rewrite(disk, loaded, "new", failure);
    EXPECT_FALSE(disk.Open(kPath, LockKind::Shared, error));
    EXPECT_EQ(error.kind, FileError::Kind::Busy);
    save.reset();
    EXPECT_TRUE(disk.Open(kPath, LockKind::Shared, error));
}

TEST(Saving, ARecoveryFileOfAnotherVersionIsKeptAndStopsEverySave) {
    const std::string theirs = std::string("QlyRecov\2\0\0\0", 12) + "in a layout of their own";
    FaultyFiles disk;
    disk.Put(kPath, "old");
    disk.Put(kRecovery, theirs);
    for (const LoadMode mode : {LoadMode::Read, LoadMode::Complete}) {
        EXPECT_EQ(MustLoad(disk, mode).recovery, RecoveryState::OtherVersions);
    }
    Failure failures[3];
    EXPECT_FALSE(Save(disk, MustLoad(disk), "new", failures[0]));
    EXPECT_FALSE(RestoreRecoveryCopy(disk, kPath, failures[1]));
    EXPECT_EQ(disk.BytesOf(kPath), "old");
    FileError error;
    ASSERT_TRUE(disk.Remove(kPath, error));
    EXPECT_EQ(RecoveryOfMissing(disk, kPath), RecoveryState::OtherVersions);
    EXPECT_FALSE(Make(disk, "new", failures[2]));
    for (const Failure& failure : failures) {
        EXPECT_EQ(failure.message, Message::OtherVersionsCopy);
        EXPECT_NE(failure.text.find(kRecovery), std::string::npos) << failure.text;
    }
    EXPECT_EQ(disk.BytesOf(kRecovery), theirs);
}

// Whatever stands in the recovery file, a reader gets the file's own bytes or the image that was meant for it.
TEST(Saving, ARecoveryFileIsNotTrusted) {
    const std::string oldBytes = Bytes(1500, 10);
    const std::string newBytes = Bytes(1200, 11);
    const std::string torn = Mixed(newBytes, oldBytes);
    FaultyFiles disk;
    disk.Put(kPath, oldBytes);
    Failure failure;
    ASSERT_TRUE(Rewrite(disk, MustLoad(disk), newBytes, failure));
    disk.Put(kPath, torn);
    const std::string recovery = *disk.BytesOf(kRecovery);
    ASSERT_EQ(Shown(MustLoad(disk)), Id(newBytes));

    for (std::size_t size = 0; size < recovery.size(); ++size) {
        disk.Put(kRecovery, recovery.substr(0, size));
        ASSERT_EQ(Shown(MustLoad(disk)), Id(torn)) << "cut to " << size;
    }
    disk.Put(kRecovery, recovery + '\0');
    EXPECT_EQ(Shown(MustLoad(disk)), Id(torn)) << "longer than it says";
    for (std::size_t at = 0; at < recovery.size(); ++at) {
        std::string flipped = recovery;
        flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
        disk.Put(kRecovery, flipped);
        ASSERT_EQ(Shown(MustLoad(disk)), Id(torn)) << "byte " << at;
    }
    const FileStamp stamp = MustLoad(disk).stamp;
    // Each head is whole but for one number, and its hash agrees with that.
    const struct {
        const char* name;
        std::size_t at;
        std::uint64_t value;
    } kWild[] = {
        {"path", 12, 0xFFFFFFFF},        {"old image, by one block", 40, 1},
        {"old image", 40, 0xFFFFFFFF00}, {"old image, over the largest number", 40, ~std::uint64_t{0}},
        {"new image", 48, 1 << 30},      {"new image, over the largest number", 48, ~std::uint64_t{0}},
    };
    for (const auto& c : kWild) {
        std::string wild = RecoveryFile::Head(kPath, stamp, {}, newBytes);
        std::memcpy(wild.data() + c.at, &c.value, c.at == 12 ? 4 : 8);
        const std::uint64_t hash = Hash64(std::string_view(wild).substr(0, wild.size() - sizeof hash));
        std::memcpy(wild.data() + wild.size() - sizeof hash, &hash, sizeof hash);
        disk.Put(kRecovery, wild + newBytes);
        EXPECT_EQ(Shown(MustLoad(disk)), Id(torn)) << c.name;
    }
    // One that is whole but was written for another database.
    disk.Put(kRecovery, RecoveryFile::Head("/home/ann/other.pdb", stamp, oldBytes, newBytes) + newBytes);
    const LoadedFile loaded = MustLoad(disk, LoadMode::Complete);
    EXPECT_EQ(loaded.recovery, RecoveryState::None);
    EXPECT_EQ(Shown(loaded), Id(torn));
}

}  // namespace
}  // namespace quillary
