#include "tests/soak/Soak.h"

#include <QApplication>
#include <QHeaderView>
#include <QTreeView>
#include <fstream>
#include <iostream>

#include "admin/FieldDefinitionsDlg.h"
#include "admin/ListItemsEditor.h"
#include "app/DocListModel.h"
#include "app/DocListPage.h"
#include "platform/http/CurlSession.h"
#include "views/DocumentSession.h"

namespace quillary::soak {

namespace {

constexpr int kSlowestStep = 20;  // seconds
constexpr int kDialogs[] = {100, 133, 135, 136, 137, 138, 139, 140, 142, 143, 149,
                            150, 166, 173, 189, 196, 203, 205, 212, 213, 214, 216};
constexpr int kOtherCommands[] = {ID_INFO_UNLOCK, ID_INFO_LOCK, ID_RESULTS_NEXT, ID_RESULTS_INFORMATION,
                                  ID_RESULTS_NEW_SEARCH};

Soak* theSoak = nullptr;

void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    // What the off-screen platform lacks.
    if (type == QtDebugMsg || type == QtInfoMsg || text.startsWith("This plugin does not support")) return;
    theSoak->Fail("the toolkit warns: " + text.toStdString());
}

ScriptedServer::Answer AnswerOf(const std::string& request) {
    const std::pair<const char*, std::string> kAnswers[] = {
        {"start=0", "0:1:3:one^!d^!1^!pdb^!1^!two^!d^!2^!pdb^!1^!"},
        {"start=2", "2:2:3:pack^!e^!3^!zip^!1^!"},
        {"qly_detail", "Ann^!^!Two\nlines^!^!^!^!4.5^!9^!"},
        {"qly_view_zip", "0:0:1:y.pdb^!/p/y^!1^!file^!1.25^!"},
        {"file_id=", PeopleParts().Build()},
        {"/p/y", PeopleParts().Build()},
    };
    for (const auto& [part, body] : kAnswers) {
        if (request.find(part) != std::string::npos) return {ScriptedServer::Ok(body)};
    }
    return {"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"};
}

std::vector<Action> AllActions() {
    std::vector<Action> all;
    for (const auto* some : {&kDatabaseActions, &kRecordActions, &kFieldActions, &kSettingActions}) {
        all.insert(all.end(), some->begin(), some->end());
    }
    return all;
}

}  // namespace

Soak::Soak(const Options& options, const Path& folder) : root(folder), server(AnswerOf), m_options(options) {
    theSoak = this;
    QApplication::setKeyboardInputInterval(0);  // no search goes on by the time that passed
    qInstallMessageHandler(OnQtMessage);
    for (const char* name : {"Documents/Work", "card", "state"}) std::filesystem::create_directories(root / name);
    desktop.locations.mainFolder = (root / "Documents/").string();
    desktop.locations.cards = {(root / "card/").string()};
    desktop.locations.folders[desktop.locations.mainFolder] = {"Work"};
    desktop.openHttp = [] { return std::make_unique<CurlSession>(); };
    for (const auto name : {kCatalogueServer, kDownloadServer}) desktop.settings.WriteText(name, server.Address());
    for (const char* scheme : {"mailto", "https", "tel"}) desktop.launcher.programs[scheme] = Launcher::Program::There;
    desktop.launcher.bluetooth = Launcher::Bluetooth::There;

    ImageParts all = AllTypesParts();
    all.name = "All types";
    ImageParts wide;  // in which a line break hides a field
    wide.name = "Wide";
    wide.AddSchema({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"},
                   {"t", "t", "t", "t", "t", "t", "t", "t", "t", "t", "P", "P"});
    wide.Add(2, std::vector<std::string>(12, "x"));
    std::ofstream(root / "Documents/People.pdb") << PeopleParts().Build();
    std::ofstream(root / "Documents/Work/All.pdb") << all.Build();
    std::ofstream(root / "card/Wide.pdb") << wide.Build();
    AdoptNewFiles();
    m_watchdog = std::jthread([this](const std::stop_token& ends) {
        while (!ends.stop_requested()) {
            std::this_thread::sleep_for(std::chrono::seconds(1));
            if (++m_secondsInStep > kSlowestStep) Fail("the action takes more than 20 s");
        }
    });
}

Soak::~Soak() {
    app.reset();
    qInstallMessageHandler(nullptr);
}

void Soak::StartAgain() {
    Closed();
    app.reset();
    app = std::make_unique<CQuillaryApp>(desktop.On(files, trash, folderWatcher, fileWatcher));
    app->InitInstance({});
    Expect(QTest::qWaitForWindowActive(&Frame()), "the window shows");
}

void Soak::Run() {
    StartAgain();
    Settle();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(m_options.seconds);
    while (m_options.steps > 0 ? m_step < m_options.steps : std::chrono::steady_clock::now() < end) Step();
    if (open) Leave(), Settle();
    Check(true);
    if (m_options.coverage) CheckCoverage();
    std::cout << m_step << " actions, nothing found\n";
}

void Soak::Step() {
    static const std::vector<Action> kActions = AllActions();
    // Each action has its own chances: one that takes more or fewer of them changes none that follow.
    m_chance.seed(static_cast<unsigned>(m_options.seed) * 1'000'003U + static_cast<unsigned>(++m_step));
    m_secondsInStep = m_refused = 0;
    std::vector<const Action*> choices;  // each as often as its weight
    for (const Action& action : kActions) {
        const bool fits = action.needs == Action::Any || (action.needs == Action::List) == !open;
        if (!fits || (action.needs == Action::Writing && IsReadOnly())) continue;
        choices.insert(choices.end(), At(action.weight), &action);
    }
    const Action& chosen = *Of(choices);
    Log(std::string("== ") + chosen.name);
    Cover(std::string("action ") + chosen.name);
    CountCommands();
    On(166, [this](CQuillaryDialog& page) {
        Type(page.Control<QWidget>(1034), Password(handedOver ? *handedOver : *open));
        Press(page, kOkButton);
    });
    chosen.run(*this);
    Settle();
    Check(m_step % 20 == 0);
    m_steps.clear();
    m_answers.clear();
    chosenFile.clear();
}

bool Soak::IsSearching() {
    const auto widgets = Frame().findChildren<QWidget*>();
    return std::ranges::any_of(widgets, [](const QWidget* widget) {
        const auto* page = dynamic_cast<const CDocListPage*>(widget);
        return page && page->IsScanning();
    });
}

void Soak::Pause() {
    QTest::qWait(0);  // nobody is faster than the event loop
    // Nor does the time that a search for databases takes decide what is done next.
    if (m_isPlaying && app) WaitFor([this] { return !IsSearching(); }, "the search for databases ends");
}

void Soak::Settle() {
    QTest::qWait(0);
    if (const auto path = std::exchange(handedOver, std::nullopt); path && path != open) {
        const auto& opened = desktop.recentFiles.paths;
        WaitFor([&] { return !opened.empty() && opened.back() == path; }, "it is opened");
        Opened(*path);
    }
    if (!Frame().isVisible()) {
        Log("starts again");
        StartAgain();
    }
    QApplication::setActiveWindow(&Frame());
    const auto isComplete = [this] {
        return !IsSearching() &&
               (open || static_cast<CDocListModel*>(Databases()->model())->FoundCount() == disk.size());
    };
    WaitFor(isComplete, "the list of databases is complete");
    // By name: in another order, the times of the files would count.
    if (Databases()) Databases()->header()->setSortIndicator(0, Qt::AscendingOrder);
    const Path recovery = files.RecoveryPath(root / "x.pdb").parent_path();
    WaitFor([&] { return !std::filesystem::exists(recovery) || std::filesystem::is_empty(recovery); },
            "no recovery copy is left");
}

// ---- What must have been reached

void Soak::CountCommands() {
    for (QAction* action : Frame().findChildren<QAction*>()) {
        if (action->property("counted").toBool()) continue;
        action->setProperty("counted", true);
        const int id = CommandOf(*action);
        const std::string name = id == 0 ? "item " + action->text().remove(u'&').toStdString() : NameOf(id);
        connect(action, &QAction::triggered, this, [this, name] { Cover(name); });
    }
}

void Soak::CheckCoverage() {
    std::set<std::string> wanted = {"item Rename", "item Make a Copy", "item Show in Folder"};
    const auto add = [&wanted](const auto& commands) {
        for (const auto& entry : commands) wanted.insert(NameOf(entry.id));
    };
    add(CMainFrame::Commands()), add(CQuillaryApp::Commands()), add(CQuillaryView::Commands());
    add(CDocumentSession::Commands()), add(CEditRecordDlg::Commands()), add(CFieldDefinitionsDlg::Commands());
    add(CListItemsEditor::Commands());
    for (const int id : kOtherCommands) wanted.insert(NameOf(id));
    for (const int id : kDialogs) wanted.insert("dialog " + std::to_string(id));
    for (const Action& action : AllActions()) wanted.insert(std::string("action ") + action.name);
    for (const FieldTypeInfo& type : AllFieldTypes()) {
        wanted.insert("editor " + std::string(type.name));
        for (const auto operation : type.operators)
            wanted.insert("filter " + std::string(type.name) + ' ' + std::string(operation));
    }
    std::string missed;
    for (const std::string& what : wanted) missed += m_covered[what] > 0 ? "" : "\n  " + what;
    if (!missed.empty()) Fail("never reached:" + missed);
}

}  // namespace quillary::soak
