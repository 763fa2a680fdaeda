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
#include "tests/fakes/ScriptedServer.h"
#include "tests/soak/Model.h"
#include "tests/views/FormTest.h"
#include "ui/CommandIds.h"

class QTreeView;

namespace quillary::soak {

inline constexpr std::size_t kMostRecords = 25;
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

class RemovingTrash : public Trash {
  public:
    bool Put(const Path& file) override { return std::filesystem::remove(file); }
};

struct Options {
    int seed, seconds;
    int steps;  // 0: as many as the time allows
    bool isVerbose;
    bool coverage;  // fails when something was never reached
};

class Soak : public User {
  public:
    Soak(const Options& options, const Path& folder);
    ~Soak() override;
    void Run();

    // ---- Chance and log (Chance.cpp)
    int Pick(std::size_t count) { return static_cast<int>(m_chance() % std::max<std::size_t>(count, 1)); }
    bool Percent(int percent) { return Pick(100) < percent; }
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

    // ---- What this action does with what opens; forgotten at its end (Answers.cpp)
    void On(int dialog, Steps steps) { m_steps[dialog] = std::move(steps); }
    /// Answers a message with that part by the buttons, one a time; the last one stays.
    void Answer(const QString& part, std::deque<QString> buttons = {"OK"}) {
        m_answers.push_front({part, std::move(buttons)});
    }
    QString chosenFile;  // in a file chooser
    /// Ends the dialog by OK or another way, with Ends::Any sometimes for another file or the end of the program.
    /// Whether it took OK.
    enum class Ends { Any, Here };
    bool Finish(CQuillaryDialog& page, Ends ends = Ends::Any);

    // ---- Hands (Hands.cpp)
    CMainFrame& Frame() { return app->Frame(); }
    CQuillaryView* View();   // none while no database is open
    QTreeView* Databases();  // none while one is open
    QWidget* Focus();
    void Click(QWidget* widget, const QPoint& at);
    void Key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void Type(QWidget* widget, const QString& text);  // over what there was
    void Choose(QComboBox* list, int index);
    /// Something else into some of the page's controls; `only`: into that one.
    void Fill(QWidget& page, int percent = 100, int only = -1);
    void Press(CQuillaryDialog& page, int control);
    /// By its menu item, its button or its key.
    void Command(int id, bool isEnabled = true);
    std::vector<std::pair<QAction*, QAction*>> MenuItems();  // behind their captions
    void Pause();
    void FromContextMenu(QWidget* viewport, const QPoint& at, const QString& item);

    // ---- Whatever can be done, of which nobody knows what comes (Play.cpp)
    void Play(int command = 0);
    void PlayAbout(QWidget& page, int count);

    // ---- The model, and whether it holds (Check.cpp)
    std::map<Path, Database> disk;  // what every file must hold
    std::optional<Path> open;
    Database mem;  // of the open one
    bool isUnsaved = false;
    std::optional<Path> handedOver;  // to be open at the end of this action
    [[nodiscard]] bool IsReadOnly() const { return open && files.readOnly.contains(*open); }
    [[nodiscard]] bool HasManyFiles() const { return disk.size() > 7; }
    [[nodiscard]] const Path& AnyPath() { return std::next(disk.begin(), Pick(disk.size()))->first; }
    [[nodiscard]] QString Password(const Path& path) const;
    void Opened(const Path& path);
    void Saved() {
        if (!IsReadOnly()) disk[*open] = mem.InFile();
    }
    void Closed();
    void Leave() { Command(ID_FILE_OPEN), Closed(); }
    void AdoptNewFiles();
    /// The open one as the window has it, or as its file does when the window has left it.
    [[nodiscard]] Database Now();
    void Check(bool allFiles);
    [[nodiscard]] std::string WindowDifference();

    const Path root;
    SoakFiles files{root / "state"};
    PosixFileAccess others{root / "state"};  // another program's
    RemovingTrash trash;
    DesktopFolderWatcher folderWatcher, fileWatcher;
    TestDesktop desktop;
    ScriptedServer server;
    std::unique_ptr<CQuillaryApp> app;

  protected:
    void AnswerDialog(CQuillaryDialog& dialog) override;
    void AnswerMessage(QMessageBox& box) override;
    void AnswerFileChooser(QFileDialog& chooser) override;

  private:
    void StartAgain();
    void Step();
    void Settle();
    void CountCommands();
    void CheckCoverage();
    [[nodiscard]] bool IsSearching();
    /// Takes what the disk and the window have come to.
    void Adopt();

    const Options m_options;
    std::mt19937 m_chance;
    int m_step = 0;
    bool m_isPlaying = false;
    std::deque<std::string> m_log;
    std::map<std::string, int> m_covered;
    std::map<int, Steps> m_steps;
    std::deque<std::pair<QString, std::deque<QString>>> m_answers;
    int m_refused = 0;  // messages, in this action
    std::set<CQuillaryDialog*> m_answering;
    std::atomic<int> m_secondsInStep = 0;
    std::jthread m_watchdog;
};

struct Action {
    const char* name;
    enum Needs { List, Any, Open, Writing } needs;  // the list of databases, nothing, an open database, one to write
    int weight;
    void (*run)(Soak& s);
};
extern const std::vector<Action> kDatabaseActions, kRecordActions, kFieldActions, kSettingActions;

[[nodiscard]] int CommandOf(const QAction& action);
[[nodiscard]] inline std::string NameOf(int command) { return "command " + std::to_string(command); }

}  // namespace quillary::soak
