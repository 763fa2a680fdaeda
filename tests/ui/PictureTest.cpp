// The program as a process: its command line, and a picture without a display.
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

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

QString Write(const QTemporaryDir& folder, const char* name, const std::string& bytes) {
    QFile file(folder.filePath(QString::fromUtf8(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes.data(), static_cast<qint64>(bytes.size())), static_cast<qint64>(bytes.size()));
    return file.fileName();
}

TEST(Picture, ShowsTheRecordsAndNeverWritesTheDatabase) {
    const QTemporaryDir folder;
    const std::string image = PeopleParts().Build();
    ImageParts empty = PeopleParts();
    empty.records.resize(4);
    const QString people = Write(folder, "people.pdb", image);
    const QString picture = folder.filePath("people.png");
    const QString emptyPicture = folder.filePath("empty.png");
    EXPECT_EQ(RunProgram({"--picture", picture, people}).status, 0);
    EXPECT_EQ(RunProgram({"--picture", emptyPicture, Write(folder, "empty.pdb", empty.Build())}).status, 0);
    EXPECT_EQ(QImage(picture).size(), QSize(1000, 640));
    EXPECT_NE(QImage(picture), QImage(emptyPicture));
    QFile after(people);
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll().toStdString(), image);
}

TEST(Picture, SaysWhatIsWrong) {
    const QTemporaryDir folder;
    ImageParts locked = PeopleParts();
    locked.lockWord = 1;
    const QString picture = folder.filePath("p.png");
    const struct {
        QStringList arguments;
        int status;
        const char* errors;
    } kCases[] = {
        {{"--picture", picture, Write(folder, "noise.pdb", "noise")}, 1, "quillary: Invalid database file.\n"},
        {{"--picture", picture, Write(folder, "locked.pdb", locked.Build())}, 1, "quillary: This database is locked"},
        {{"--picture", "/nowhere/p.png", Write(folder, "people.pdb", PeopleParts().Build())},
         1,
         "could not be written"},
        {{"--picture", picture}, 2, "Usage: quillary [FILE]"},
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
