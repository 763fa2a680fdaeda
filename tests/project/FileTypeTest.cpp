// The desktop takes our files for databases, whatever their names, and leaves the other kinds of *.pdb alone: in the
// world of Qt and in that of GLib.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

constexpr char kOurs[] = "application/x-quillary-database";

std::string RecordDatabase(const char* typeAndCreator) {
    std::string image(120, '\0');
    image.replace(0, 4, "Name");
    return image.replace(60, 8, typeAndCreator);
}

TEST(FileType, OurFilesAreKnownAndOthersKeepTheirType) {
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const QTemporaryDir home;
    // One folder for the stock types and ours, as an installation has it; both worlds look for their data once.
    qputenv("XDG_DATA_DIRS", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/none").toUtf8());
    const QString packages = home.path() + "/mime/packages";
    ASSERT_TRUE(QDir().mkpath(packages));
    ASSERT_TRUE(QFile::copy(QUILLARY_MIME_TYPE, packages + "/quillary-mime.xml"));
    ASSERT_TRUE(QFile::copy("/usr/share/mime/packages/freedesktop.org.xml", packages + "/freedesktop.org.xml"));
    qputenv("PKGSYSTEM_ENABLE_FSYNC", "0");  // a thousand small files
    ASSERT_EQ(QProcess::execute("update-mime-database", {home.path() + "/mime"}), 0);
    ImageParts database;
    database.AddSchema({"A"}, {"T"});
    const struct {
        const char* name;
        std::string bytes;
        bool ours;
    } kRows[] = {
        {"ours.pdb", database.Build(), true},
        {"OURS.PDB", database.Build(), true},
        {"without-ending", database.Build(), true},
        {"e-book.pdb", RecordDatabase("BOOKMOBI"), false},
        {"other-program.pdb", RecordDatabase("DATAabcd"), false},
        {"protein.pdb", "HEADER    HYDROLASE (SERINE PROTEINASE)           24-APR-89   1HNE\n", false},
    };
    for (const auto& r : kRows) {
        const QString path = home.filePath(r.name);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(r.bytes.data(), static_cast<qint64>(r.bytes.size()));
        file.close();
        EXPECT_EQ(QMimeDatabase().mimeTypeForFile(path).name() == kOurs, r.ours) << "Qt: " << r.name;
        QProcess gio;
        gio.start("gio", {"info", "-a", "standard::content-type", path});
        ASSERT_TRUE(gio.waitForFinished());
        EXPECT_EQ(gio.readAllStandardOutput().contains(kOurs), r.ours) << "GLib: " << r.name;
    }
}

}  // namespace
}  // namespace quillary
