#include "tests/soak/Soak.h"

#include <unistd.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QWheelEvent>
#include <fstream>
#include <iostream>

#include "admin/FieldDefinitionsDlg.h"
#include "admin/ListItemsEditor.h"
#include "app/DocListModel.h"
#include "app/DocListPage.h"
#include "db/Password.h"
#include "platform/http/CurlSession.h"
#include "tests/views/FormTest.h"
#include "ui/CommandIds.h"
#include "ui/DatePicker.h"
#include "ui/MenuCommand.h"
#include "ui/OpenDialog.h"
#include "ui/ValuePicker.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"

namespace quillary::soak {

namespace {

constexpr std::size_t kLogged = 200;
constexpr int kSlowestStep = 20;  // seconds
constexpr int kSlowestWait = 15'000;

// Boxes that show how far something has come; they go by themselves.
constexpr const char* kProgress[] = {"Searching the", "Fetching the", "Fetching more",
                                     "Exporting",     "Opening the",  "Looking for"};

constexpr int kDialogs[] = {100, 133, 135, 136, 137, 138, 139, 140, 142, 143, 149,
                            150, 166, 173, 189, 196, 203, 205, 212, 213, 214, 216};

Soak* theSoak = nullptr;

void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    // What the off-screen platform lacks.
    if (type == QtDebugMsg || type == QtInfoMsg || text.startsWith("This plugin does not support")) return;
    if (theSoak) theSoak->Fail("the toolkit warns: " + text.toStdString());
}

ScriptedServer::Answer AnswerOf(const std::string& request) {
    const std::pair<const char*, std::string> kAnswers[] = {
        {"start=0", "0:1:3:one^!d^!1^!pdb^!1^!two^!d^!2^!pdb^!1^!"},
        {"start=2", "2:2:3:pack^!e^!3^!zip^!1^!"},
        {"qly_detail", "Ann^!^!Two\nlines^!^!^!^!4.5^!9^!"},
        {"qly_view_zip", "0:0:1:y.pdb^!/p/y^!1^!file^!1.25^!"},
        {"file_id=1", PeopleParts().Build()},
        {"file_id=2", PeopleParts().Build()},
        {"/p/y", PeopleParts().Build()},
    };
    for (const auto& [part, body] : kAnswers) {
        if (request.find(part) != std::string::npos) return {ScriptedServer::Ok(body)};
    }
    return {"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"};
}

int CommandOf(const QAction& action) {
    const auto* item = dynamic_cast<const CMenuCommand*>(&action);
    return item ? item->Command() : action.objectName().toInt();
}

}  // namespace

// ---- The run

Soak::Soak(const Options& options, const Path& folder) : root(folder), server(AnswerOf), m_options(options) {
    theSoak = this;
    QApplication::setKeyboardInputInterval(0);  // no search goes on by the time that passed
    qInstallMessageHandler(OnQtMessage);
    for (const char* name : {"Documents/Work", "card", "trash", "state", "config"}) {
        std::filesystem::create_directories(root / name);
    }
    locations.cards = {(root / "card/").string()};
    locations.folders[locations.mainFolder] = {"Work"};
    for (const auto name : {kCatalogueServer, kDownloadServer}) settings.WriteText(name, server.Address());
    for (const char* scheme : {"mailto", "https"}) launcher.programs[scheme] = Launcher::Program::There;
    launcher.programs["tel"] = Launcher::Program::There;
    launcher.bluetooth = Launcher::Bluetooth::There;

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
    qApp->installEventFilter(this);
    m_watchdog = std::thread([this] { Watch(); });
}

Soak::~Soak() {
    m_ends = true;
    m_watchdog.join();
    qApp->removeEventFilter(this);
    app.reset();
    qInstallMessageHandler(nullptr);
    theSoak = nullptr;
}

void Soak::Watch() {
    while (!m_ends) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        if (++m_secondsInStep > kSlowestStep) Fail("the action takes more than 20 s");
    }
}

void Soak::Run() {
    StartAgain();
    Settle();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(m_options.seconds);
    while (m_options.steps > 0 ? m_step < m_options.steps : std::chrono::steady_clock::now() < end) Step();
    if (open) Command(ID_FILE_OPEN), Closed(), Settle();
    Check(true);
    if (m_options.coverage) CheckCoverage();
    std::cout << m_step << " actions, nothing found\n";
}

void Soak::Step() {
    // Each action has its own chances: one that takes more or fewer of them changes none that follow.
    m_chance.seed(static_cast<unsigned>(m_options.seed) * 1'000'003U + static_cast<unsigned>(++m_step));
    m_secondsInStep = 0;
    int sum = 0;
    const auto weight = [this](const Action& action) {
        const bool fits = action.needs == Action::Any || (action.needs == Action::List ? !open : open.has_value());
        return fits && !(action.needs == Action::Writing && readOnly) ? action.weight : 0;
    };
    for (const Action& action : Actions()) sum += weight(action);
    int at = Pick(sum);
    const Action* chosen = nullptr;
    for (const Action& action : Actions()) {
        if (at >= 0) chosen = &action;
        at -= weight(action);
    }
    Log(std::string("== ") + chosen->name);
    Cover(std::string("action ") + chosen->name);
    CountCommands();
    On(166, [this](CQuillaryDialog& page) {
        Type(page.Control<QLineEdit>(1034), Password(handedOver ? *handedOver : *open));
        Press(page, kOkButton);
    });
    chosen->run(*this);
    Settle();
    Check(m_step % 20 == 0);
    m_steps.clear();
    m_answers.clear();
    m_told.clear();
    chosenFile.clear();
}

void Soak::Settle() {
    QTest::qWait(0);
    if (handedOver) {
        const Path path = *std::exchange(handedOver, std::nullopt);
        if (path != open) {
            WaitFor([&] { return !recentFiles.paths.empty() && recentFiles.paths.back() == path; }, "it is opened");
            Opened(path);
        }
    }
    if (!Frame().isVisible()) {
        Log("starts again");
        StartAgain();
    }
    QApplication::setActiveWindow(&Frame());
    WaitFor([this] { return IsListComplete(); }, "the list of databases is complete");
    // By name: in another order, the times of the files would count.
    if (auto* list = Frame().findChild<QTreeView*>("58378")) list->header()->setSortIndicator(0, Qt::AscendingOrder);
    const Path recovery = files.RecoveryPath(root / "x.pdb").parent_path();
    WaitFor([&] { return !std::filesystem::exists(recovery) || std::filesystem::is_empty(recovery); },
            "no recovery copy is left");
}

bool Soak::IsListComplete() {
    for (const QWidget* widget : Frame().findChildren<QWidget*>()) {
        if (const auto* page = dynamic_cast<const CDocListPage*>(widget); page && page->IsScanning()) return false;
    }
    const auto* list = Frame().findChild<QTreeView*>("58378");
    return isPlaying || open || static_cast<CDocListModel*>(list->model())->FoundCount() == disk.size();
}

void Soak::Pause() {
    QTest::qWait(0);  // nobody is faster than the event loop
    // Nor does the time that a search for databases takes decide what is done next.
    if (isPlaying && app) WaitFor([this] { return IsListComplete(); }, "the search for databases ends");
}

void Soak::StartAgain() {
    Closed();
    app.reset();
    app = std::make_unique<CQuillaryApp>(Desktop{files, locations, settings, trash, inputPanel, windowSettings,
                                                 recentFiles, folderWatcher, fileWatcher, launcher, clock, locale,
                                                 [this] { return std::make_unique<FakePersonalStore>(items); },
                                                 [] { return std::make_unique<CurlSession>(); }});
    app->InitInstance({});
    Expect(QTest::qWaitForWindowActive(&Frame()), "the window shows");
}

// ---- Log

QString Soak::Word() {
    static const QStringList kWords =
        QStringLiteral(
            u"Ann|bob|Zo\u00EB|stra\u00DFe|\u00C4rger|10%d|50%%|x\u00A0y|2003-05-17|5/17/03|07:45 pm|13:05||42|"
            "-7.5|a.b@c.org|(555) 123-4567|5551234|call 5551234|true|No Date|red|1e3|two\nlines")
            .split(u'|');
    return kWords[Pick(kWords.size())] + (Chance(30) ? QString::number(Pick(100)) : QString());
}

void Soak::Log(const std::string& what) {
    m_log.push_back(std::to_string(m_step) + ' ' + what);
    if (m_options.verbose) std::cout << m_log.back() << std::endl;
    if (m_log.size() > kLogged) m_log.pop_front();
}

void Soak::Fail(const std::string& why) {
    for (const std::string& line : m_options.verbose ? decltype(m_log)() : m_log) std::cout << line << '\n';
    std::cout << "FAILED in action " << m_step << ": " << why << "\nThe files are in " << root.string()
              << "\nAgain: quillary-soak --seed " << m_options.seed << " --steps " << m_step << " --verbose"
              << std::endl;
    _exit(1);
}

int Soak::Rarest(std::size_t count, const std::function<std::string(int)>& name) {
    std::vector<int> rarest;
    for (int k = 0; At(k) < count; ++k) {
        const int less = rarest.empty() ? -1 : m_covered[name(k)] - m_covered[name(rarest[0])];
        if (less < 0) rarest.clear();
        if (less <= 0) rarest.push_back(k);
    }
    return Chance(50) ? Pick(count) : Of(rarest);
}

void Soak::WaitFor(const std::function<bool()>& holds, const std::string& what) {
    Expect(QTest::qWaitFor(holds, kSlowestWait), what);
}

void Soak::CheckCoverage() {
    std::set<std::string> wanted;
    const auto add = [&wanted](const auto& commands) {
        for (const auto& entry : commands) wanted.insert("command " + std::to_string(entry.id));
    };
    add(CMainFrame::Commands()), add(CQuillaryApp::Commands()), add(CQuillaryView::Commands());
    add(CDocumentSession::Commands()), add(CEditRecordDlg::Commands()), add(CFieldDefinitionsDlg::Commands());
    add(CListItemsEditor::Commands());
    for (const int id :
         {ID_INFO_UNLOCK, ID_INFO_LOCK, ID_RESULTS_NEXT, ID_RESULTS_INFORMATION, ID_RESULTS_NEW_SEARCH}) {
        wanted.insert("command " + std::to_string(id));
    }
    for (const int id : kDialogs) wanted.insert("dialog " + std::to_string(id));
    for (const Action& action : Actions()) wanted.insert(std::string("action ") + action.name);
    for (const FieldTypeInfo& type : AllFieldTypes()) {
        wanted.insert("editor " + std::string(type.name));
        for (const auto operation : type.operators)
            wanted.insert("filter " + std::string(type.name) + ' ' + std::string(operation));
    }
    std::string missed;
    for (const std::string& what : wanted) missed += m_covered[what] == 0 ? "\n  " + what : "";
    if (!missed.empty()) Fail("never reached:" + missed);
}

void Soak::CountCommands() {
    for (QAction* action : Frame().findChildren<QAction*>()) {
        const int id = CommandOf(*action);
        if (id == 0 || action->property("counted").toBool()) continue;
        action->setProperty("counted", true);
        connect(action, &QAction::triggered, this, [this, id] { Cover("command " + std::to_string(id)); });
    }
}

// ---- What opens

bool Soak::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show) return false;
    if (auto* box = dynamic_cast<QMessageBox*>(watched)) {
        QTimer::singleShot(0, box, [this, box] { AnswerMessage(*box); });
    } else if (auto* chooser = dynamic_cast<QFileDialog*>(watched)) {
        QTimer::singleShot(0, chooser, [this, chooser] { AnswerChooser(*chooser); });
    } else if (auto* dialog = dynamic_cast<CQuillaryDialog*>(watched)) {
        QTimer::singleShot(0, dialog, [this, dialog] { AnswerDialog(*dialog); });
    }
    return false;
}

void Soak::Answer(const QString& part, std::deque<QString> buttons) {
    m_answers.insert(m_answers.begin(), {part, std::move(buttons)});
}

void Soak::AnswerDialog(CQuillaryDialog& dialog) {
    if (dialog.isHidden() || !m_answering.insert(&dialog).second) return;
    const QString name = dialog.objectName();
    Cover("dialog " + name.toStdString());
    if (name != "213") Log("dialog " + name.toStdString());  // which shows what takes long
    CountCommands();
    QTest::qWait(0);                          // the menu has gone
    QApplication::setActiveWindow(&Frame());  // as a window manager does
    const auto found = m_steps.find(name.toInt());
    if (found == m_steps.end() && !isPlaying) Fail("dialog " + name.toStdString() + " was not expected");
    if (found != m_steps.end() && !isPlaying) {
        const Steps steps = found->second;
        steps(dialog);
    } else {
        // Those with passwords would lock what was there; those of downloads go on by themselves.
        static const QStringList kLeft = {"138", "143", "166", "203", "205", "213", "214"};
        if (!kLeft.contains(name)) PlayAbout(dialog, 1 + Pick(12));
        if (dialog.isVisible()) dialog.reject();
    }
    m_answering.erase(&dialog);
    if (dialog.isVisible() && !Frame().IsEndingDialogs()) Fail("dialog " + name.toStdString() + " did not end");
}

void Soak::AnswerMessage(QMessageBox& box) {
    if (box.isHidden()) return;
    for (const char* progress : kProgress) {
        if (box.text().startsWith(progress)) return;
    }
    QString wanted;
    for (auto& [part, buttons] : m_answers) {
        if (isPlaying || !(box.text() + box.informativeText()).contains(part)) continue;
        wanted = buttons.front();
        if (buttons.size() > 1) buttons.pop_front();
        ++m_told[part];
        break;
    }
    const auto all = box.buttons();
    if (isPlaying) wanted = all[Pick(all.size())]->text().remove(u'&');
    if (isPlaying && box.text().contains("about to be deleted") && disk.size() < 4) wanted = "No";
    Log("message \"" + box.text().toStdString() + "\": " + wanted.toStdString());
    const auto pressed =
        std::find_if(all.begin(), all.end(), [&](auto* b) { return b->text().remove(u'&') == wanted; });
    if (pressed == all.end()) Fail("this message was not expected, or has no such button");
    QTest::mouseClick(*pressed, Qt::LeftButton);
}

void Soak::AnswerChooser(QFileDialog& chooser) {
    Log("file chooser: " + chosenFile.toStdString());
    if (chosenFile.isEmpty()) {
        if (!isPlaying) Fail("a file chooser was not expected");
        return chooser.reject();
    }
    chooser.findChild<QLineEdit*>()->setText(chosenFile);
    const bool saves = chooser.acceptMode() == QFileDialog::AcceptSave;
    QTest::mouseClick(
        chooser.findChild<QDialogButtonBox*>()->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open),
        Qt::LeftButton);
}

// ---- Hands

CQuillaryView* Soak::View() {
    for (auto* table : Frame().findChildren<QTableView*>()) {
        if (auto* view = dynamic_cast<CQuillaryView*>(table)) return view;
    }
    return nullptr;
}

QWidget* Soak::Focus() {
    QApplication::setActiveWindow(&Frame());
    QWidget* focus = QApplication::focusWidget();
    return focus ? focus : &Frame();
}

void Soak::Click(QWidget* widget, const QPoint& at, bool twice) {
    if (twice) {
        QTest::mouseDClick(widget, Qt::LeftButton, {}, at);
        QTest::mouseRelease(widget, Qt::LeftButton, {}, at);
    } else {
        QTest::mouseClick(widget, Qt::LeftButton, {}, at);
    }
    Pause();
}

void Soak::Key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    if (text.isNull()) {
        QTest::keyClick(widget, static_cast<Qt::Key>(key), modifiers);
    } else {
        QTest::sendKeyEvent(QTest::Click, widget, static_cast<Qt::Key>(key), text, modifiers);
    }
    Pause();
}

void Soak::Type(QWidget* widget, const QString& text) {
    Expect(widget && widget->isVisible(), "there is something to type into");
    const QPointer<QWidget> there(widget);
    widget->setFocus();
    Key(widget, Qt::Key_A, Qt::ControlModifier);
    if (there) Key(widget, Qt::Key_Delete);
    for (const QChar c : text) {
        Expect(!there.isNull(), "what is typed into stays open");
        c == u'\n' ? Key(widget, Qt::Key_Return)
                   : Key(widget, c.unicode() < 0x80 ? c.toUpper().unicode() : int{Qt::Key_unknown}, {}, c);
    }
}

void Soak::Choose(QComboBox* list, int index) {
    if (list->count() == 0) return;
    list->setFocus();
    Key(list, Qt::Key_Home);
    for (int k = 0; k < index; ++k) Key(list, Qt::Key_Down);
    Expect(list->currentIndex() == index, "the list is at its entry " + std::to_string(index));
}

void Soak::Fill(QWidget& page, int percent, int only) {
    for (auto* widget : page.findChildren<QWidget*>()) {
        const int id = widget->objectName().toInt();
        if (id < 100 || (only >= 0 && id != only) || !widget->isVisible() || !widget->isEnabled() || !Chance(percent))
            continue;
        if (auto* list = qobject_cast<QComboBox*>(widget)) {
            Choose(list, Pick(list->count()));
        } else if (auto* picker = dynamic_cast<CValuePicker*>(widget)) {
            const QTime time(Pick(24), Pick(60));
            const QDate date = QDate(2000, 1, 1).addDays(Pick(3000));
            const QString text = dynamic_cast<CDatePicker*>(picker)
                                     ? date.toString(Of<QString>({"MM/dd/yyyy", "yyyy-MM-dd"}))
                                     : time.toString(Of<QString>({"hh:mmap", "hh:mm", "hh:mm ap"}));
            Type(picker->focusProxy(), only >= 0 && Chance(10) ? "12:99" : Chance(80) ? text : QString());
        } else if (qobject_cast<QCheckBox*>(widget)) {
            Key(widget, Qt::Key_Space);
        } else if (qobject_cast<QRadioButton*>(widget)) {
            Click(widget, {8, 8});
        } else if (dynamic_cast<CValuePicker*>(widget->parentWidget()->parentWidget())) {
            continue;  // its line
        } else if (qobject_cast<QLineEdit*>(widget) || qobject_cast<QPlainTextEdit*>(widget)) {
            const QString text = Word();
            Type(widget, qobject_cast<QLineEdit*>(widget) ? text.section('\n', 0, 0) : text);
        }
    }
}

void Soak::Press(CQuillaryDialog& page, int control) {
    auto* button = page.Control<QWidget>(control);
    Expect(button && button->isVisible() && button->isEnabled(),
           "button " + std::to_string(control) + " can be pressed");
    if (qobject_cast<QPushButton*>(button) && control > kCancelButton) Cover("command " + std::to_string(control));
    Log("presses " + std::to_string(control));
    Click(button, button->rect().center());
}

void Soak::Command(int id, bool isEnabled) {
    Log("command " + std::to_string(id));
    QApplication::setActiveWindow(&Frame());
    std::vector<std::function<void()>> ways;
    auto* bar = Frame().findChild<QMenuBar*>();
    const auto expect = [=, this](const QAction* action) {
        Expect(action->isEnabled() == isEnabled,
               "command " + std::to_string(id) + " is enabled: " + (isEnabled ? "yes" : "no"));
    };
    for (QAction* caption : bar->actions()) {
        for (QAction* item : caption->menu()->actions()) {
            if (CommandOf(*item) != id) continue;
            ways.emplace_back([=, this] {
                Click(bar, bar->actionGeometry(caption).center());
                expect(item);
                Click(caption->menu(), caption->menu()->actionGeometry(item).center());
                caption->menu()->hide();
            });
        }
    }
    for (auto* action : Frame().findChildren<QAction*>(QString::number(id), Qt::FindDirectChildrenOnly)) {
        expect(action);
        for (const QKeySequence& key : action->shortcuts()) {
            ways.emplace_back([=, this] { Key(Focus(), key[0].key(), key[0].keyboardModifiers()); });
        }
    }
    for (auto* button : Frame().findChildren<QToolButton*>(QString::number(id))) {
        if (button->isVisible()) ways.emplace_back([=, this] { Click(button, button->rect().center()); });
    }
    Expect(!ways.empty(), "there is a way to command " + std::to_string(id));
    Of(ways)();
    QApplication::setActiveWindow(&Frame());
}

void Soak::CommandRarest() {
    std::vector<int> enabled;
    for (const QAction* caption : Frame().findChild<QMenuBar*>()->actions()) {
        for (const QAction* item : caption->menu()->actions()) {
            if (!item->isSeparator() && item->isEnabled()) enabled.push_back(CommandOf(*item));
        }
    }
    Command(enabled[At(Rarest(enabled.size(), [&](int k) { return "command " + std::to_string(enabled[At(k)]); }))]);
}

void Soak::FromContextMenu(QWidget* viewport, const QPoint& at, const QString& item) {
    Log("menu: " + item.toStdString());
    QContextMenuEvent asked(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QApplication::sendEvent(viewport, &asked);
    QTest::qWait(0);
    QApplication::setActiveWindow(&Frame());  // as a window manager leaves it
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    Expect(menu, "a menu opens");
    const auto all = menu->actions();
    const auto found = std::find_if(all.begin(), all.end(), [&](auto* a) { return a->text().remove(u'&') == item; });
    Expect(found != all.end(), "the menu has " + item.toStdString());
    Click(menu, menu->actionGeometry(*found).center());
}

void Soak::PlayAbout(QWidget& page, int count) {
    static const QStringList kKeys = QString(
                                         "Up Down Left Right Home End PgUp PgDown Tab Backtab Space Return Del "
                                         "Backspace Ins F1 F2 F3 F4 F5 F10 Esc Menu "
                                         "Ctrl+Z Ctrl+X Ctrl+C Ctrl+V Ctrl+A Ctrl+S Ctrl+N Ctrl+PgUp Ctrl+PgDown "
                                         "Alt+Up Alt+Down Shift+Return Shift+Down F24")
                                         .split(u' ');
    const auto waits = [](QWidget* widget) {  // its menu has an event loop of its own
        return qobject_cast<QScrollBar*>(widget) || qobject_cast<QAbstractSpinBox*>(widget);
    };
    const QPointer<QWidget> there(&page);
    for (int k = 0; k < count && there && there->isVisible(); ++k) {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* focus = popup ? popup : Focus();
        const int what = Pick(12);
        if (what > 9) {
            auto buttons = page.findChildren<QAbstractButton*>();
            buttons.removeIf(
                [](auto* b) { return b->objectName().toInt() == 0 || !b->isVisible() || !b->isEnabled(); });
            const auto name = [&](int at) { return "command " + buttons[at]->objectName().toStdString(); };
            if (popup || buttons.isEmpty()) continue;
            const int at = Rarest(static_cast<std::size_t>(buttons.size()), name);
            Log("presses " + name(at));
            if (!qobject_cast<QToolButton*>(buttons[at])) Cover(name(at));
            Click(buttons[at], buttons[at]->rect().center());
        } else if (what < 4) {
            const QString name = kKeys[Pick(kKeys.size())];
            const QKeyCombination key = QKeySequence(name)[0];
            Log(name.toStdString() + " on " + focus->metaObject()->className() + ' ' +
                focus->objectName().toStdString());
            Key(focus, key.key(), key.keyboardModifiers(), key.key() == Qt::Key_F24 ? QString("") : QString());
        } else if (what < 6) {
            const QChar c = QString("abc XYZ019.-/:;,@é")[Pick(18)];
            Log("types " + QString(c).toStdString());
            Key(focus, c.toUpper().unicode(), {}, c);
        } else {
            QWidgetList widgets = (popup ? popup : &page)->findChildren<QWidget*>();
            widgets.removeIf([](QWidget* w) { return !w->isVisible() || w->width() < 2 || w->height() < 2; });
            QWidget* widget = widgets.isEmpty() ? focus : widgets[Pick(widgets.size())];
            const QPoint at(Pick(widget->width()), Pick(widget->height()));
            Log("mouse " + std::to_string(what) + " on " + widget->metaObject()->className() + ' ' +
                widget->objectName().toStdString() + ' ' + std::to_string(at.x()) + ',' + std::to_string(at.y()));
            if (what < 8) {
                if (!widget->objectName().startsWith("qt_calendar_month")) Click(widget, at);
            } else if (what == 8) {
                QWheelEvent wheel(at, widget->mapToGlobal(QPointF(at)), {}, {0, Chance(50) ? 120 : -120}, {}, {},
                                  Qt::NoScrollPhase, false);
                QApplication::sendEvent(widget, &wheel);
            } else if (!waits(widget) && !waits(widget->parentWidget())) {
                QContextMenuEvent asked(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
                QApplication::sendEvent(widget, &asked);
            }
        }
        Pause();
    }
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
}

bool Soak::Finish(CQuillaryDialog& page, Ends ends) {
    if (Chance(10)) Frame().resize(240 + Pick(900), 320 + Pick(500));
    if (Chance(5)) Key(Focus(), Qt::Key_F1);
    const int way = Pick(100);
    const bool isAlone = ends == Ends::Any && OpenDialog::All().size() == 1;
    const auto refused = [this] { return Told("would hide") + Told("Change the fields all the same?"); };
    const auto ended = [&, before = refused()] { return page.isHidden() || refused() > before; };
    if (isAlone && way < 3) {
        handedOver = AnyPath();
        Log("hands over " + handedOver->string());
        Answer("Save the changes before opening", {Of<QString>({"Save", "Discard"})});
        app->HandOver().Receive({handedOver->native(), {}});
        WaitFor(ended, "the dialog ends");
        if (page.isVisible()) handedOver.reset();
    } else if (isAlone && way < 6) {
        Log("closes the window");
        const QString answer = Of<QString>({"Save", "Discard", "Cancel"});
        const bool asks = page.IsChanged();
        Answer("Save the changes before closing?", {answer});
        Frame().close();
        if (!asks || answer != "Cancel") WaitFor(ended, "the dialog ends");
    } else if (way < 85) {
        Press(page, kOkButton);
    } else if (way < 92) {
        Press(page, kCancelButton);
    }
    for (int k = 0; k < 3 && page.isVisible(); ++k) {
        Log("Escape");
        Key(page.focusWidget() ? page.focusWidget() : &page, Qt::Key_Escape);
    }
    return page.result() == QDialog::Accepted;
}

// ---- The model

QString Soak::Password(const Path& path) const {
    const auto opens = [&](const QString& one) {
        return HashPassword(kDatabasePassword, one.toStdU16String(), AnsiText::Windows1252()) == disk.at(path).password;
    };
    return *std::find_if(kPasswords.begin(), kPasswords.end() - 1, opens);
}

const Path& Soak::AnyPath() { return std::next(disk.begin(), Pick(disk.size()))->first; }

void Soak::Closed() {
    open.reset();
    readOnly = isUnsaved = false;
    files.readOnly.clear();
}

void Soak::Opened(const Path& path) {
    readOnly = files.readOnly.contains(path);
    isUnsaved = false;
    open = path;
    mem = disk.at(path);
    Expect(View(), "a database is open");
}

void Soak::AdoptNewFiles() {
    for (const char* folder : {"Documents", "card"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            if (!entry.is_regular_file() || disk.contains(entry.path())) continue;
            const auto found = ReadFile(others, entry.path());
            Expect(found.has_value(), entry.path().string() + " is a database");
            disk[entry.path()] = *found;
        }
    }
}

void Soak::Adopt() {
    const auto before = std::exchange(disk, {});
    AdoptNewFiles();
    for (const Path& path : files.readOnly) {
        Expect(!disk.contains(path) || before.at(path).Difference(disk[path]).empty(),
               "what is read only stays as it is");
    }
    Closed();
    if (View()) Opened(recentFiles.paths.back());
}

void Soak::Check(bool allFiles) {
    Expect(OpenDialog::All().empty() && !QApplication::activeModalWidget() && !QApplication::activePopupWidget(),
           "nothing is left open");
    Expect(QGuiApplication::mouseButtons() == Qt::NoButton, "no mouse button is held");
    for (const auto& [path, database] : disk) {
        if (!allFiles && path != open) continue;
        const auto found = ReadFile(others, path);
        Expect(found.has_value(), path.string() + " opens");
        const std::string difference = database.Difference(*found);
        if (!difference.empty()) Fail(path.string() + ' ' + difference);
        const std::string departure = CheckFile(path);
        if (!departure.empty()) Fail(path.string() + " departs from the format: " + departure);
    }
    for (const char* folder : {"Documents", "card", "config", "state"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            const bool isKnown =
                entry.is_directory() || disk.contains(entry.path()) || entry.path() == root / "config/Quillary.conf";
            Expect(isKnown, entry.path().string() + " is no stray file");
        }
    }
    const std::string shown = WindowDifference();
    if (!shown.empty()) Fail(shown);
}

std::string Soak::WindowDifference() {
    if (open.has_value() != (View() != nullptr)) return open ? "no database is open" : "a database is open";
    std::string difference;
    const auto expect = [&difference](const QString& shown, const QString& wanted, const std::string& where) {
        if (difference.empty() && shown != wanted) {
            difference = where + " shows [" + shown.toStdString() + "], not [" + wanted.toStdString() + ']';
        }
    };
    const auto wide = [](const std::string& text) {
        return QString::fromStdU16String(AnsiText::Windows1252().ToWide(text));
    };
    const QString mark = readOnly ? " (read only)" : isUnsaved ? "*" : "";
    expect(Frame().windowTitle(), open ? wide(mem.name) + mark : "Quillary", "the title");
    if (!open) return difference;
    const QAbstractItemModel& list = *View()->model();
    const int rows = static_cast<int>(mem.shown.size());
    expect(QString::number(list.rowCount()), QString::number(rows), "the number of rows");
    for (int cell = 0; cell < rows * static_cast<int>(mem.fields.size()); ++cell) {
        const int row = cell % rows;
        const int column = cell / rows;
        expect(list.index(row, column).data().toString(), wide(mem.Cell(row, column)),
               "row " + std::to_string(row) + ", column " + std::to_string(column));
    }
    auto* label = Frame().findChild<QLabel*>("1039");
    expect(label->text(), QString("%1 of %2").arg(rows > 0 ? View()->GetSelectedRow() + 1 : 0).arg(rows),
           "the counter");
    const auto hidden = mem.hidden.size();
    expect(label->accessibleDescription(), hidden > 0 ? QString("%1 records are hidden").arg(hidden) : QString(),
           "the counter's tooltip");
    return difference;
}

}  // namespace quillary::soak
