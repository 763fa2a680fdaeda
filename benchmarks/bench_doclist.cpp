// What a person waits for when the document list has ten thousand databases to show, in a real page on the off-screen
// platform: the first rows, the whole list, and the longest time in which the window answers nothing.
#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "app/DocListPage.h"
#include "benchmarks/Figures.h"
#include "benchmarks/GeneratedTable.h"
#include "db/QuillaryDoc.h"
#include "db/RecordBuffer.h"
#include "platform/DesktopFolderWatcher.h"
#include "platform/DesktopInputPanel.h"
#include "platform/DesktopLauncher.h"
#include "platform/DesktopRecentFiles.h"
#include "platform/DesktopTrash.h"
#include "platform/NativePath.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileAccess.h"
#include "platform/posix/PosixLocale.h"
#include "platform/posix/PosixStorageLocations.h"
#include "platform/posix/PreferencesFile.h"

namespace quillary {

namespace {

constexpr int kFolders = 100;
constexpr int kInEach = 100;
constexpr int kRounds = 7;
constexpr double kFirstRowsAim = 0.100;
constexpr double kCompleteAim = 2.0;
constexpr double kPauseAim = 0.050;  // what a person takes for at once

/// Notes when rows are painted for the first time.
class PaintClock : public QObject {
  public:
    explicit PaintClock(QTreeView& view) : m_view(view) { view.viewport()->installEventFilter(this); }
    double firstRows = 0;

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && firstRows == 0 && m_view.model()->rowCount() > 0)
            firstRows = WallSeconds();
        return false;
    }

  private:
    QTreeView& m_view;
};

/// The list is complete when its folders are watched.
class CompleteClock : public DesktopFolderWatcher {
  public:
    double complete = 0;
    bool Watch(const std::vector<Path>& folders) override {
        const bool watched = DesktopFolderWatcher::Watch(folders);
        complete = WallSeconds();
        return watched;
    }
};

class Locations : public StorageLocations {
  public:
    explicit Locations(const Path& main) : m_main(main.string() + '/') {}
    std::string MainFolder() const override { return m_main; }
    std::vector<std::string> CardFolders() const override { return {}; }
    std::vector<std::string> FoldersIn(const std::string& /*folder*/) const override { return {}; }

  private:
    std::string m_main;
};

bool MakeDatabases(FileAccess& files, const Path& folder) {
    for (int f = 0; f < kFolders; ++f) {
        const Path below = folder / ("Folder " + std::to_string(f));
        std::filesystem::create_directories(below);
        const Path first = below / "List 0.pdb";
        Failure failure;
        if (f == 0) {
            CQuillaryDoc doc(files);
            doc.NewDatabase("List", GeneratedFields());
            std::string entries;
            AppendEntry(entries, 0, "a name of some length");
            for (int i = 0; i < 20; ++i) {
                if (!doc.AppendRecord(entries, failure)) return false;
            }
            if (!doc.SaveDatabaseAs(first, "List", failure)) return false;
        } else {
            std::filesystem::copy_file(folder / "Folder 0" / "List 0.pdb", first);
        }
        for (int i = 1; i < kInEach; ++i) {
            std::filesystem::copy_file(first, below / ("List " + std::to_string(i) + ".pdb"));
        }
    }
    return true;
}

/// Seconds of what no list can do without: each name, and the beginning of each file.
double ReadEachFile(const Path& folder) {
    return Seconds(
        [&] {
            std::vector<char> bytes(8192);
            for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
                const int file = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
                (void)!read(file, bytes.data(), bytes.size());
                close(file);
            }
        },
        WallSeconds);
}

struct Times {
    std::vector<double> firstRows, complete, pause, limit;
};

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void Measure(const Desktop& desktop, CompleteClock& watcher, Times& times) {
    QWidget window;
    CDocListPage page(desktop, window, {[](const Path&) {}, [] {}, [] {}, [] {}, [] {}, [] {}});
    page.resize(1000, 640);
    page.show();
    QApplication::processEvents();
    const PaintClock paint(*page.findChild<QTreeView*>());
    watcher.complete = 0;
    double pause = 0;
    const double begun = WallSeconds();
    page.Scan();
    while (watcher.complete == 0 || paint.firstRows == 0) {
        pause = std::max(pause, Seconds([] { QApplication::processEvents(); }, WallSeconds));
        usleep(200);
    }
    times.firstRows.push_back(paint.firstRows - begun);
    times.complete.push_back(watcher.complete - begun);
    times.pause.push_back(pause);
}

void Print(const char* name, double seconds, double aim, double reading) {
    const auto milliseconds = [](const char* format, double of) {
        char text[32];
        std::snprintf(text, sizeof text, format, of * 1000);
        return std::string(text);
    };
    PrintFigure({name, milliseconds("%.1f ms", seconds), milliseconds("%.1f ms", reading),
                 "reading the beginning of each file", seconds / reading, milliseconds("at most %.0f ms", aim),
                 seconds <= aim});
}

int Run() {
    const QTemporaryDir scratch;
    const Path folder = ToPath(scratch.path()) / "Documents";
    PosixFileAccess files(ToPath(scratch.path()) / "state");
    if (!MakeDatabases(files, folder)) return 1;
    const Locations locations(folder);
    PreferencesFile settings(ToPath(scratch.path()) / "settings");
    DesktopTrash trash;
    DesktopInputPanel inputPanel;
    DesktopRecentFiles recentFiles;
    CompleteClock watcher;
    DesktopLauncher launcher;
    const PosixClock clock;
    const PosixLocale locale;
    const Desktop desktop{files,       locations, settings, trash,    inputPanel, settings,
                          recentFiles, watcher,   watcher,  launcher, clock,      locale};
    Times times;
    for (int round = 0; round < kRounds; ++round) {
        times.limit.push_back(ReadEachFile(folder));
        Measure(desktop, watcher, times);
    }
    std::printf("\n%d databases in %d folders, file cache warm; wall time\n", kFolders * kInEach, kFolders);
    const double reading = Median(times.limit);
    Print("document list, first rows painted", Median(times.firstRows), kFirstRowsAim, reading);
    Print("document list, complete", Median(times.complete), kCompleteAim, reading);
    Print("document list, longest pause of the window", Median(times.pause), kPauseAim, reading);
    return 0;
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return quillary::Run();
}
