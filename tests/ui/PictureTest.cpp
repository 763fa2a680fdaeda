// The program as a process: its command line, and a picture without a display.
#include <QFile>
#include <QImage>
#include <QProcess>

#include "tests/posix/TestFolder.h"
#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

struct Result {
    int status;
    QByteArray output;
    QByteArray errors;
};

Result RunProgram(const QStringList& arguments) {
    QProcess program;
    program.start(QStringLiteral(QUILLARY_PROGRAM), arguments);
    EXPECT_TRUE(program.waitForFinished());
    return {program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError()};
}

TEST(Picture, ShowsTheRecordsAndNeverWritesTheDatabase) {
    const TestFolder folder;
    ImageParts empty = PeopleParts();
    empty.records.resize(4);
    const auto picture = [&folder](const char* name, const std::string& image) {
        const std::string file = folder.Write("x.pdb", image).string();
        const QString written = QString::fromStdString((folder / name).string());
        EXPECT_EQ(RunProgram({QString::fromStdString(file), "--picture=" + written}).status, 0);
        EXPECT_EQ(FileBytes(file), image);
        return QImage(written);
    };
    const QImage people = picture("people.png", PeopleParts().Build());
    EXPECT_EQ(people.size(), QSize(1000, 640));
    EXPECT_NE(people, picture("empty.png", empty.Build()));
}

TEST(Picture, SaysWhatIsWrong) {
    const TestFolder folder;
    ImageParts locked = PeopleParts();
    locked.lockWord = 1;
    const auto write = [&folder](const char* name, const std::string& image) {
        return QString::fromStdString(folder.Write(name, image).string());
    };
    const QString picture = QString::fromStdString((folder / "p.png").string());
    const struct {
        QStringList arguments;
        int status;
        const char* errors;
    } kCases[] = {
        {{"--picture", picture, write("noise.pdb", "noise")},
         1,
         "quillary: Invalid database file. (noise.pdb: This is no database.)\n"},
        {{"--picture", picture, write("locked.pdb", locked.Build())}, 1, "quillary: This database is locked"},
        {{"--picture", "/nowhere/p.png", write("people.pdb", PeopleParts().Build())}, 1, "could not be written"},
        {{"--picture", picture}, 2, "Usage: quillary [FILE]"},
        {{"--picture", "--stray", "people.pdb"}, 2, "unknown option --stray"},
        {{"--picture=" + picture}, 2, "Usage: quillary [FILE]"},
        {{write("people.pdb", PeopleParts().Build()), "--picture"}, 2, "Usage: quillary [FILE]"},
        {{"--picture", write("a.pdb", "a"), write("b.pdb", "b")}, 2, "named like a database"},
        {{"--picture", write("table", PeopleParts().Build()), write("table", PeopleParts().Build())},
         1,
         "overwrite the database"},
        {{"--pictures"}, 2, "unknown option --pictures"},
    };
    for (const auto& c : kCases) {
        const Result result = RunProgram(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.errors;
        EXPECT_TRUE(result.errors.contains(c.errors)) << c.errors << " / " << result.errors.toStdString();
        EXPECT_FALSE(QFile::exists(picture)) << c.errors;
    }
    EXPECT_TRUE(RunProgram({"--help"}).output.startsWith("Usage: quillary [FILE]\n"));
    EXPECT_EQ(RunProgram({"--version"}).output, "quillary " QUILLARY_VERSION "\n");
}

}  // namespace
}  // namespace quillary
