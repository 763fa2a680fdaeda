#include "platform/posix/PreferencesFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/posix/TestFolder.h"

namespace quillary {
namespace {

// As the toolkit's settings class writes it, and as people edit it.
constexpr const char* kWritten = R"(
; a comment with Number=9
[General]
Number=7
geometry=@ByteArray(\1\xd9\xd0)

[Preferences]
AlternatingRowColor=16777215
Negative=-12
 Spaced = 5
Quoted="41"
TooLarge=2147483648
Text=plain words
Escaped="semi; comma, \"quoted\" back\\slash\nline \xe4\x41 \xe9""x"
Utf8=Größe
At=@@home
Invalid=@Invalid()
Twice=1
Twice=2
Empty=

[preferences]
Number=8
)";

TEST(PreferencesFile, ReadsWhatOthersWrote) {
    const TestFolder folder;
    const PreferencesFile settings(folder.Write("Quillary.conf", kWritten));
    for (const auto& [name, value] :
         {std::pair{"AlternatingRowColor", 0xFFFFFF}, std::pair{"Negative", -12}, std::pair{"Spaced", 5},
          std::pair{"Quoted", 41}, std::pair{"Twice", 2}, std::pair{"TooLarge", 77}, std::pair{"Text", 77},
          std::pair{"Empty", 77}, std::pair{"Number", 77}, std::pair{"Invalid", 77}}) {
        EXPECT_EQ(settings.ReadInt(name, 77), value) << name;
    }
    for (const auto& [name, value] :
         {std::pair{"Text", "plain words"}, std::pair{"Utf8", "Größe"}, std::pair{"At", "@home"},
          std::pair{"Empty", ""}, std::pair{"Escaped", "semi; comma, \"quoted\" back\\slash\nline äA éx"},
          std::pair{"Invalid", "?"}}) {
        EXPECT_EQ(settings.ReadText(name, "?"), value) << name;
    }
}

TEST(PreferencesFile, WritingChangesOneLineAndComesBack) {
    const TestFolder folder;
    const Path path = folder.Write("kept/Quillary.conf", kWritten);
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink(path, folder / "link.conf");
    PreferencesFile settings(folder / "link.conf");
    ASSERT_TRUE(settings.WriteInt("AlternatingRowColor", -1));
    ASSERT_TRUE(settings.WriteInt("LocationNdx", 3));
    std::string expected = kWritten;
    expected.replace(expected.find("=16777215"), 9, "=-1");
    expected.insert(expected.find("\n\n[preferences]"), "\nLocationNdx=3");
    EXPECT_EQ(FileBytes(path), expected);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.conf"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));

    for (const char* text : {"", "@home", " spaces ", "a\nb\\n\"c\";,=[x]", "\1beef\x7F", "Größe"}) {
        ASSERT_TRUE(settings.WriteText("Text", text));
        EXPECT_EQ(settings.ReadText("Text", "?"), text);
        EXPECT_EQ(settings.ReadInt("LocationNdx", 0), 3);
    }
}

TEST(PreferencesFile, MakesItsFolderAndSaysWhenItCannot) {
    const TestFolder folder;
    PreferencesFile settings(folder / "config/Telvane/Quillary.conf");
    EXPECT_EQ(settings.ReadInt("MaxRemoteResults", 25), 25);
    ASSERT_TRUE(settings.WriteInt("MaxRemoteResults", 50));
    EXPECT_EQ(FileBytes(folder / "config/Telvane/Quillary.conf"), "[Preferences]\nMaxRemoteResults=50\n");
    folder.Write("file", "");
    const std::string large(2 << 20, '#');
    folder.Write("large", large);
    EXPECT_FALSE(PreferencesFile(folder / "large").WriteInt("MaxRemoteResults", 50)) << "what cannot be read stays";
    EXPECT_EQ(FileBytes(folder / "large"), large);
    EXPECT_FALSE(PreferencesFile(Path{}).WriteInt("MaxRemoteResults", 50));
    std::string reason;
    const Settings::Number numbers[] = {{"MaxRemoteResults", 1}, {"LocationNdx", 2}};
    EXPECT_FALSE(PreferencesFile(folder / "file/Quillary.conf").WriteInts(numbers, reason));
    EXPECT_EQ(reason, "Not a directory");
    ASSERT_TRUE(settings.WriteInts(numbers, reason));
    EXPECT_EQ(FileBytes(folder / "config/Telvane/Quillary.conf"), "[Preferences]\nMaxRemoteResults=1\nLocationNdx=2\n");
}

TEST(PreferencesFile, TwoProgramsLoseNoneOfTheirValues) {
    const TestFolder folder;
    const auto writeAll = [&folder](const char* prefix) {
        PreferencesFile settings(folder / "Quillary.conf");
        bool written = true;
        for (int i = 0; i < 25; ++i) written = settings.WriteInt(prefix + std::to_string(i), i) && written;
        return written;
    };
    const pid_t child = fork();
    if (child == 0) _exit(writeAll("Theirs") ? 0 : 1);
    EXPECT_TRUE(writeAll("Ours"));
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    const PreferencesFile settings(folder / "Quillary.conf");
    for (int i = 0; i < 25; ++i) {
        EXPECT_EQ(settings.ReadInt("Ours" + std::to_string(i), -1), i);
        EXPECT_EQ(settings.ReadInt("Theirs" + std::to_string(i), -1), i);
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Root()), {}), 1) << "nothing else is left";
}

}  // namespace
}  // namespace quillary
