// The user of the soak: chooses by chance, works the real window with real events over real files, and keeps beside it
// what every file must hold.
#pragma once

#include <atomic>
#include <deque>
#include <random>
#include <set>
#include <thread>

#include "platform/DesktopFolderWatcher.h"
#include "platform/posix/PosixFileAccess.h"
#include "platform/posix/PreferencesFile.h"
#include "tests/fakes/ScriptedServer.h"
#include "tests/soak/Model.h"
#include "tests/ui/WindowTest.h"

class QComboBox;

namespace quillary::soak {

/// Of databases. With a value of 3 or more a file's sort keys are read in another width; theirs are negative.
inline const std::vector<QString> kPasswords = {"", "ßé", "1234", "pass"};

/// The disk, which can be full and have files that can only be read.
class SoakFiles : public PosixFileAccess {
  public:
    using PosixFileAccess::PosixFileAccess;
    bool isFull = false;
    std::set<Path> readOnly;

    bool CanWrite(const Path& path) override { return !readOnly.contains(path) && PosixFileAccess::CanWrite(path); }
    bool WriteRecovery(const Path& path, std::string_view head, std::string_view body, FileError& error) override {
        error = {FileError::Kind::Full, "No space left on device"};
        return !isFull && PosixFileAccess::WriteRecovery(path, head, body, error);
    }
};

class FolderTrash : public Trash {
  public:
    explicit FolderTrash(Path folder) : m_folder(std::move(folder)) {}
    bool Put(const Path& file) override {
        std::error_code failed;
        std::filesystem::rename(file, m_folder / std::to_string(m_count++), failed);
        return !failed;
    }

  private:
    Path m_folder;
    int m_count = 0;
};

struct Options {
    int seed = 1;
    int seconds = 60;
    int steps = 0;  // 0: as many as the time allows
    bool verbose = false;
    bool coverage = false;  // fails when something was never reached
};

class Soak : public QObject {
  public:
    Soak(const Options& options, const Path& folder);
    ~Soak() override;
    void Run();

    // ---- Chance and log
    template <class N>
    int Pick(N count) {
        return static_cast<int>(m_chance() % static_cast<unsigned>(std::max<N>(count, 1)));
    }
    bool Chance(int percent) { return Pick(100) < percent; }
    template <class T>
    const T& Of(const std::vector<T>& choices) {
        return choices[At(Pick(choices.size()))];
    }
    /// One of `count`, often one of those that were covered least so far.
    int Rarest(std::size_t count, const std::function<std::string(int)>& name);
    QString Word();
    void Log(const std::string& what);
    void Cover(const std::string& what) { ++m_covered[what]; }
    [[noreturn]] void Fail(const std::string& why);
    void Expect(bool holds, const std::string& what) {
        if (!holds) Fail("not so: " + what);
    }
    void WaitFor(const std::function<bool()>& holds, const std::string& what);

    // ---- What this action does with what opens; forgotten at its end
    using Steps = std::function<void(CQuillaryDialog&)>;
    void On(int dialog, Steps steps) { m_steps[dialog] = std::move(steps); }
    /// Answers a message with that part by the buttons, one a time; the last one stays.
    void Answer(const QString& part, std::deque<QString> buttons = {"OK"});
    [[nodiscard]] int Told(const QString& part) { return m_told[part]; }
    QString chosenFile;  // in a file chooser

    // ---- Hands
    CMainFrame& Frame() { return app->Frame(); }
    CQuillaryView* View();
    QWidget* Focus();
    /// By its menu item, its button or its key.
    void Command(int id, bool isEnabled = true);
    void CommandRarest();
    void Press(CQuillaryDialog& page, int control);
    void Pause();
    void Click(QWidget* widget, const QPoint& at, bool twice = false);
    void Key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void Type(QWidget* widget, const QString& text);  // over what there was
    void Choose(QComboBox* list, int index);
    /// Something else into some of the page's controls; `only`: into that one.
    void Fill(QWidget& page, int percent = 100, int only = -1);
    void FromContextMenu(QWidget* viewport, const QPoint& at, const QString& item);
    /// Whatever keys, clicks and turns of the wheel.
    void PlayAbout(QWidget& page, int count);
    enum class Ends { Any, Here };
    /// Ends the dialog by OK or another way, sometimes for another file or the end of the program. Whether it took OK.
    bool Finish(CQuillaryDialog& page, Ends ends = Ends::Any);

    // ---- The model
    void Opened(const Path& path);
    void Saved() {
        if (!readOnly) disk[*open] = mem.InFile();
    }
    void Closed();
    /// Takes what the disk and the window have come to.
    void Adopt();
    void AdoptNewFiles();
    void StartAgain();
    void Check(bool allFiles);
    [[nodiscard]] std::string WindowDifference();
    [[nodiscard]] const Path& AnyPath();
    [[nodiscard]] QString Password(const Path& path) const;

    const Path root;
    SoakFiles files{root / "state"};
    PosixFileAccess others{root / "state"};  // another program's
    TestLocations locations{(root / "Documents/").string()};
    PreferencesFile settings{root / "config/Quillary.conf"};
    PreferencesFile windowSettings{root / "config/Quillary.conf", "Window"};
    FolderTrash trash{root / "trash"};
    TestInputPanel inputPanel;
    TestRecentFiles recentFiles;
    DesktopFolderWatcher folderWatcher, fileWatcher;
    TestLauncher launcher;
    TestClock clock;
    TestLocale locale;
    std::shared_ptr<FakePersonalItems> items = std::make_shared<FakePersonalItems>();
    ScriptedServer server;
    std::unique_ptr<CQuillaryApp> app;

    std::map<Path, Database> disk;  // what every file must hold
    std::optional<Path> open;
    Database mem;  // of the open one
    bool readOnly = false;
    bool isUnsaved = false;
    bool isPlaying = false;          // nobody knows what is pressed
    std::optional<Path> handedOver;  // to be open at the end of this action

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Step();
    void Settle();
    [[nodiscard]] bool IsListComplete();
    void AnswerDialog(CQuillaryDialog& dialog);
    void AnswerMessage(QMessageBox& box);
    void AnswerChooser(QFileDialog& chooser);
    void CountCommands();
    void CheckCoverage();
    void Watch();

    const Options m_options;
    std::mt19937 m_chance;
    int m_step = 0;
    std::deque<std::string> m_log;
    std::map<std::string, int> m_covered;
    std::map<int, Steps> m_steps;
    std::vector<std::pair<QString, std::deque<QString>>> m_answers;
    std::map<QString, int> m_told;
    std::set<CQuillaryDialog*> m_answering;
    std::atomic<int> m_secondsInStep = 0;
    std::atomic<bool> m_ends = false;
    std::thread m_watchdog;
};

struct Action {
    const char* name;
    enum Needs { List, Any, Open, Writing } needs;  // the list of databases, nothing, an open database, one to write
    int weight;
    void (*run)(Soak& s);
};
[[nodiscard]] const std::vector<Action>& Actions();

}  // namespace quillary::soak
