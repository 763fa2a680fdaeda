#include <gtest/gtest.h>

#include "platform/posix/PosixStorageLocations.h"
#include "platform/posix/PreferencesFile.h"
#include "platform/posix/XdgFolders.h"
#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

TEST(UserFolders, OnlyAbsoluteVariablesCount) {
    const Environment home("HOME", "/home/ann");
    for (const char* value : {static_cast<const char*>(nullptr), "", "../etc", "/x"}) {
        const Environment config("XDG_CONFIG_HOME", value);
        const Environment state("XDG_STATE_HOME", value);
        const bool counts = value && value[0] == '/';
        EXPECT_EQ(StateFolder(), counts ? "/x" : "/home/ann/.local/state");
        EXPECT_EQ(PreferencesFile::DefaultPath(), Path(counts ? "/x" : "/home/ann/.config") / "Telvane/Quillary.conf");
    }
    const Environment relative("HOME", "ann");
    EXPECT_TRUE(HomeFolder().is_absolute());
}

TEST(UserFolders, DocumentsAreWhereTheDesktopKeepsThem) {
    const TestFolder folder;
    const Environment home("HOME", "/home/ann");
    const Environment config("XDG_CONFIG_HOME", folder.Root().c_str());
    const PosixStorageLocations locations;
    EXPECT_EQ(locations.MainFolder(), "/home/ann/Documents/") << "no file";
    constexpr std::pair<const char*, const char*> kCases[] = {
        {"XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"", "/home/ann/Dokumente/"},
        {"# XDG_DOCUMENTS_DIR=\"/no\"\n  XDG_DOCUMENTS_DIR=\"/data/My \\\"Docs\\\"/\"", "/data/My \"Docs\"/"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\"", "/home/ann/"},
        {"XDG_DOCUMENTS_DIR=\"relative\"", "/home/ann/Documents/"},
    };
    for (const auto& [line, main] : kCases) {
        folder.Write("user-dirs.dirs", line);
        EXPECT_EQ(locations.MainFolder(), main) << line;
    }
}

TEST(UserFolders, CardsAreTheVolumesBelowTheMediaFolders) {
    const TestFolder folder;
    const std::string own = "/run/media/" + UserName() + "/";
    const Path mounts = folder.Write("mounts",
                                     "/dev/sda1 / ext4 rw 0 0\n"
                                     "/dev/sdb1 /media/ann/Two\\040words vfat rw 0 0\n"
                                     "tmpfs /media tmpfs rw 0 0\n"
                                     "/dev/sdc1 " +
                                         own +
                                         "CARD exfat rw 0 0\n"
                                         "/dev/sdd1 /run/media/nobody-else/CARD vfat rw 0 0\n"
                                         "/dev/sde1 /media/cdrom iso9660 ro 0 0\n"
                                         "/dev/sde1 /media/cdrom iso9660 ro 0 0\n"
                                         "/dev/sdf1 /mnt/media/x ext4 rw 0 0\n"
                                         "/dev/sdg1 /media/back\\134slash ext4 rw 0 0\n");
    EXPECT_EQ(
        PosixStorageLocations(mounts).CardFolders(),
        (std::vector<std::string>{"/media/ann/Two words/", "/media/back\\slash/", "/media/cdrom/", own + "CARD/"}));
    EXPECT_TRUE(PosixStorageLocations(folder / "absent").CardFolders().empty());
}

TEST(UserFolders, FoldersToChooseFrom) {
    const TestFolder folder;
    for (const char* file : {"b/x", "a/b/x", "C/x", ".hidden/x", "plain"}) folder.Write(file, "");
    std::filesystem::create_directory_symlink(folder.Root(), folder / "link");
    const PosixStorageLocations locations;
    EXPECT_EQ(locations.FoldersIn(folder.Root().string() + '/'), (std::vector<std::string>{"C", "a", "b"}));
    EXPECT_TRUE(locations.FoldersIn((folder / "absent/").string()).empty());
}

}  // namespace
}  // namespace quillary
