#include "app/DocListPage.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>
#include <set>
#include <system_error>
#include <utility>

#include "admin/Settings.h"
#include "admin/StorageLocations.h"
#include "app/DocListView.h"
#include "app/FolderBox.h"
#include "app/NoDatabasesPage.h"
#include "platform/FolderWatcher.h"
#include "platform/NativePath.h"
#include "ui/Captions.h"
#include "ui/CommandIds.h"
#include "ui/Icon.h"
#include "ui/Mnemonics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kDocumentList = 58378;
// The column from 1, negative when it descends.
constexpr std::string_view kSortSetting = "DocumentListSort";
// Changes come in crowds; looking for databases once for each would keep a slow disk busy.
constexpr int kChangeMilliseconds = 250;

QString CountText(std::size_t count) {
    return count == 1 ? QStringLiteral("1 database")
                      : QStringLiteral("%L1 databases").arg(static_cast<qulonglong>(count));
}

constexpr int kTextCharacters = 50;  // of a page on which the button has its text beside the icon

}  // namespace

CDocListPage::CDocListPage(const Desktop& desktop, QWidget& window, Requests requests)
    : m_desktop(desktop),
      m_requests(std::move(requests)),
      m_files(desktop.files, desktop.trash, desktop.launcher, window),
      m_scanner(
          desktop.files, [this](std::vector<DocListRow> rows) { OnFound(std::move(rows)); },
          [this](const CDocListScanner::Result& result) { OnScanned(result); }),
      m_view(new CDocListView(m_model)),
      m_new(new QToolButton),
      m_folders(new CFolderBox),
      m_other(new QPushButton(QStringLiteral("Open &Other..."))),
      m_body(new QStackedWidget),
      m_state(new QLabel),
      m_noticeLabel(new QLabel),
      m_menu(new QMenu(this)),
      m_changed(new QTimer(this)) {
    m_view->setObjectName(QString::number(kDocumentList));
    ReadSortOrder();
    BuildActions();
    BuildLayout();
    connect(m_view, &QAbstractItemView::activated, this, [this] { OpenSelected(); });
    m_view->onMenu = [this](const QPoint& global) {
        m_menuTarget = m_view->Selected();
        m_menu->popup(global);
    };
    // What was chosen in it runs right after the menu has gone.
    connect(m_menu, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, [this] { m_menuTarget.reset(); }); });
    m_view->onRename = [this](const Path& path, const QString& name) { Rename(path, name); };
    connect(m_folders, &QComboBox::activated, this, [this] {
        m_model.ShowFolder(m_folders->Chosen());
        m_view->SelectFirst();
        ShowState();
    });
    m_changed->setSingleShot(true);
    m_changed->setInterval(kChangeMilliseconds);
    connect(m_changed, &QTimer::timeout, this, [this] { m_requests.changed(); });
    m_desktop.folderWatcher.OnChange([this] { OnFoldersChanged(); });
}

CDocListPage::~CDocListPage() { m_desktop.folderWatcher.OnChange({}); }

void CDocListPage::ReadSortOrder() {
    const std::int32_t stored = m_desktop.settings.ReadInt(kSortSetting, 1);
    const bool known = stored != 0 && std::abs(std::int64_t{stored}) <= CDocListModel::kColumnCount;
    m_view->header()->setSortIndicator(known ? std::abs(stored) - 1 : 0,
                                       stored < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
    m_view->setSortingEnabled(true);
    connect(m_view->header(), &QHeaderView::sortIndicatorChanged, this, [this](int sorted, Qt::SortOrder order) {
        m_desktop.settings.WriteInt(kSortSetting, order == Qt::DescendingOrder ? -(sorted + 1) : sorted + 1);
    });
}

std::optional<Path> CDocListPage::Target() const { return m_menuTarget ? m_menuTarget : m_view->Selected(); }

void CDocListPage::BuildActions() {
    const struct {
        QString text;
        QKeySequence key;
        std::function<void()> run;
    } kItems[] = {
        {QStringLiteral("Open"), {}, [this] { OpenSelected(); }},
        {QStringLiteral("Show in Folder"),
         {},
         [this] {
             if (const auto path = Target()) m_files.ShowInFolder(*path);
         }},
        {},
        {QStringLiteral("Rename"), Qt::Key_F2,
         [this] {
             if (const auto path = Target()) m_view->EditName(*path);
         }},
        {QStringLiteral("Make a Copy"), {}, [this] { CopySelected(); }},
        {},
        {QStringLiteral("Delete..."), QKeySequence::Delete, [this] { DeleteSelected(); }},
    };
    QStringList texts;
    for (const auto& item : kItems) texts << item.text;
    texts << QStringLiteral("Sort by");
    texts = WithMnemonics(texts);
    for (const auto& item : kItems) {
        const QString text = texts.takeFirst();
        QAction* action = m_menu->addAction(text);
        action->setSeparator(text.isEmpty());
        action->setShortcut(item.key);
        action->setShortcutContext(Qt::WidgetShortcut);
        if (item.run) connect(action, &QAction::triggered, this, item.run);
    }
    m_view->addActions(m_menu->actions());
    BuildSorting(texts.takeFirst());
    auto* refresh = new QAction(this);
    refresh->setShortcut(Qt::Key_F5);
    refresh->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(refresh, &QAction::triggered, this, [this] { m_requests.changed(); });
    addAction(refresh);
}

// What a click on a heading does, by key and from the menu.
void CDocListPage::BuildSorting(const QString& caption) {
    QStringList headings;
    for (int column = 0; column < CDocListModel::kColumnCount; ++column) {
        headings << m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    headings = WithMnemonics(headings);
    m_menu->addSeparator();
    QMenu* menu = m_menu->addMenu(caption);
    for (int column = 0; column < CDocListModel::kColumnCount; ++column) {
        QAction* action = menu->addAction(headings[column]);
        action->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + column)));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [header = m_view->header(), column] {
            const bool turns =
                header->sortIndicatorSection() == column && header->sortIndicatorOrder() == Qt::AscendingOrder;
            header->setSortIndicator(column, turns ? Qt::DescendingOrder : Qt::AscendingOrder);
        });
    }
    m_view->addActions(menu->actions());
}

void CDocListPage::BuildLayout() {
    // Not shown: what the box is for can be seen, but a screen reader takes its name from a label.
    auto* folders = new QLabel(QStringLiteral("Folder"), this);
    folders->setBuddy(m_folders);
    folders->hide();
    m_other->setObjectName(QString::number(ID_FILE_OPEN));
    connect(m_other, &QPushButton::clicked, this, [this] { m_requests.openOther(); });
    m_new->setIcon(Icon("new"));
    m_new->setText(u'&' + FromWide(Caption(kCaptionNew)));
    m_new->setFocusPolicy(Qt::StrongFocus);
    m_new->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);  // as high as its neighbours
    m_new->setObjectName(QString::number(ID_FILE_NEW));
    m_new->setToolTip(FromWide(Caption(kCaptionNew)));
    connect(m_new, &QToolButton::clicked, this, [this] { m_requests.create(); });

    m_emptyPage = new CNoDatabasesPage(OnOneLine(FromPath(Path(m_desktop.locations.MainFolder()).parent_path())),
                                       m_requests.create);
    m_body->addWidget(m_view);
    m_body->addWidget(m_emptyPage);
    for (QLabel* label : {m_state, m_noticeLabel}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }

    const int gap = fontMetrics().averageCharWidth();
    auto* top = new QHBoxLayout;
    top->setContentsMargins(gap, gap, gap, gap);
    top->addWidget(m_new);
    top->addWidget(m_folders, 1000);  // on a small screen before the free space
    top->addStretch(1);
    top->setSpacing(gap);
    top->addWidget(m_other);
    auto* bottom = new QVBoxLayout;
    bottom->setContentsMargins(gap, gap / 2, gap, gap / 2);
    bottom->addWidget(m_noticeLabel);
    bottom->addWidget(m_state);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(top);
    column->addWidget(m_body, 1);
    column->addLayout(bottom);
    setTabOrder(m_view, m_new);
    setTabOrder(m_new, m_folders);
    setTabOrder(m_folders, m_other);
    ShowState();
}

void CDocListPage::FitColumns() { m_view->FitColumns(); }

void CDocListPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const bool isWide = width() >= kTextCharacters * fontMetrics().averageCharWidth();
    m_new->setToolButtonStyle(isWide ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    m_requests.resized();
}

void CDocListPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_requests.shown();
}

void CDocListPage::Scan() {
    const std::string mainFolder = m_desktop.locations.MainFolder();
    m_roots = {mainFolder};
    for (const std::string& card : m_desktop.locations.CardFolders()) m_roots.emplace_back(card);
    m_found.clear();
    m_showsWhileScanning = m_model.FoundCount() == 0;
    m_changedWhileScanning = false;
    m_changed->stop();
    m_scanTime.start();
    m_scanner.Start(mainFolder, m_roots);
    if (m_showsWhileScanning) ShowState();
}

void CDocListPage::OnFoldersChanged() {
    if (m_scanner.IsRunning()) {
        m_changedWhileScanning = true;  // a scan that never ended would never show anything new
    } else if (!m_changed->isActive()) {
        m_changed->start();
    }
}

void CDocListPage::OnFound(std::vector<DocListRow> rows) {
    if (m_showsWhileScanning) {
        m_model.Append(std::move(rows));
        FillFolders();
    } else {
        std::move(rows.begin(), rows.end(), std::back_inserter(m_found));
    }
    ShowState();
}

void CDocListPage::OnScanned(const CDocListScanner::Result& result) {
    if (!m_showsWhileScanning) {
        m_model.Replace(std::exchange(m_found, {}));
        FillFolders();
    }
    m_notice.clear();
    if (!result.unreadable.empty()) {
        m_notice = QStringLiteral("You may not look into %1").arg(OnOneLine(FromPath(result.unreadable.front())));
        const auto others = static_cast<qulonglong>(result.unreadable.size() - 1);
        m_notice += others > 0 ? QStringLiteral(" and %L1 more folders.").arg(others) : QStringLiteral(".");
    }
    WatchFolders();
    m_changed->setInterval(std::max(kChangeMilliseconds, 4 * static_cast<int>(m_scanTime.elapsed())));
    if (m_changedWhileScanning) m_changed->start();
    const Path next = std::exchange(m_selectNext, {});
    // Selecting another row would end the editing and store half a name.
    if (!next.empty() && !m_view->IsEditing()) m_view->Select(next);
    m_view->SelectFirst();
    ShowState();
}

void CDocListPage::WatchFolders() {
    std::set<Path> folders;
    for (const Path& root : m_roots) {
        // A documents folder that is still to be made shows up in the one above.
        std::error_code failed;
        folders.insert(std::filesystem::exists(root, failed) ? root : root.parent_path().parent_path());
    }
    for (const CDocListModel::Folder& folder : m_model.Folders()) {
        // Those above it too: one of them may get another name. Roots end in a separator, and end the way up.
        for (Path path = folder->path; !folders.contains(path / "") && folders.insert(path).second;) {
            path = path.parent_path();
        }
    }
    if (m_desktop.folderWatcher.Watch({folders.begin(), folders.end()})) return;
    if (!m_notice.isEmpty()) m_notice += u'\n';
    m_notice += QStringLiteral(
        "Not every folder is watched for changes, as the system watches no more of them. Press F5 to look again.");
}

void CDocListPage::FillFolders() {
    if (!m_folders->Fill(m_model.Folders())) m_model.ShowFolder(std::nullopt);  // its last database has gone
}

void CDocListPage::ShowState() {
    const bool scanning = m_scanner.IsRunning();
    const bool nothing = m_model.FoundCount() == 0;
    m_state->setVisible(scanning || !nothing);
    if (!scanning) {
        m_state->setText(CountText(static_cast<std::size_t>(m_model.rowCount())));
    } else if (const std::size_t found = m_model.FoundCount(); found == 0 || !m_showsWhileScanning) {
        m_state->setText(QStringLiteral("Looking for databases..."));
    } else {
        m_state->setText(QStringLiteral("Looking for databases: %1 so far").arg(CountText(found)));
    }
    m_noticeLabel->setText(m_notice);
    m_noticeLabel->setVisible(!m_notice.isEmpty());

    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    const bool wasEmpty = m_body->currentWidget() == m_emptyPage;
    m_folders->setEnabled(!nothing);
    m_body->setCurrentWidget(nothing && !scanning ? m_emptyPage : m_view);
    setFocusProxy(nothing && !scanning ? m_emptyPage : m_view);
    m_view->FitColumns();
    if (hadFocus && wasEmpty != (m_body->currentWidget() == m_emptyPage)) setFocus();
}

void CDocListPage::OpenSelected() {
    if (const auto path = Target()) m_requests.open(*path);
}

void CDocListPage::Rename(const Path& path, const QString& name) {
    const QModelIndex row = m_model.IndexOf(path);
    if (!row.isValid()) return;
    const auto renamed = m_files.Rename(path, name);
    if (!renamed) {
        m_view->EditName(path, name);  // what was typed is not lost
        return;
    }
    const DocListRow& old = m_model.Row(row.row());
    DocListRowMaker maker(m_desktop.locations.MainFolder());
    m_model.Rename(path, maker.Make({*renamed, old.size, old.modified}));
    m_view->Select(*renamed);
    m_requests.changed();
}

void CDocListPage::CopySelected() {
    const auto path = Target();
    const auto copy = path ? m_files.Copy(*path) : std::nullopt;
    if (!copy) return;
    m_selectNext = *copy;
    m_requests.changed();
}

void CDocListPage::DeleteSelected() {
    const auto path = Target();
    const QModelIndex target = path ? m_model.IndexOf(*path) : QModelIndex();
    if (!target.isValid() || !m_files.Delete(*path, m_model.Row(target.row()).name)) return;
    const int row = m_model.IndexOf(*path).row();
    m_model.Remove(*path);
    if (m_model.rowCount() > 0) m_view->setCurrentIndex(m_model.index(std::clamp(row, 0, m_model.rowCount() - 1), 0));
    FillFolders();
    m_requests.changed();
}

}  // namespace quillary
