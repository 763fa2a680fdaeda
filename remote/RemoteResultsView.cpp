#include "remote/RemoteResultsView.h"

#include <QAction>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <utility>

#include "db/AnsiText.h"
#include "db/FieldValue.h"
#include "remote/RemoteCatalog.h"
#include "ui/ToolTip.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kName = 0;
constexpr int kSize = 1;
constexpr int kRowPadding = 10;  // pixels; a finger needs more than the text's height
constexpr qsizetype kMostLetters = 500;

QString Shown(const std::string& text, const AnsiText& page) {
    return OnOneLine(FromWide(page.ToWide(text)).left(kMostLetters));
}

}  // namespace

class CRemoteResultsView::Row : public QTreeWidgetItem {
  public:
    explicit Row(CRemoteResult& shown) : result(shown) {}

    bool operator<(const QTreeWidgetItem& other) const override {
        if (treeWidget()->sortColumn() == kName) {
            return text(kName).compare(other.text(kName), Qt::CaseInsensitive) < 0;
        }
        return ReadNumber(result.size) < ReadNumber(static_cast<const Row&>(other).result.size);
    }

    [[nodiscard]] QVariant data(int column, int role) const override {
        // A screen reader has no state for it.
        const bool isPartly = role == Qt::AccessibleDescriptionRole && column == kName &&
                              QTreeWidgetItem::data(kName, Qt::CheckStateRole).toInt() == Qt::PartiallyChecked;
        return isPartly ? QVariant(QStringLiteral("partly ticked")) : QTreeWidgetItem::data(column, role);
    }

    CRemoteResult& result;
};

class CRemoteResultsView::Delegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), std::max(size.height(), option.fontMetrics.height() + kRowPadding)};
    }
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // Style "Fusion" draws the frame of a box a little darker than this, which on dark colours nobody would see.
        option->palette.setColor(QPalette::Window, option->palette.color(QPalette::Text));
    }
    // The whole of a text that does not fit.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (event->type() != QEvent::ToolTip || sizeHint(option, index).width() <= option.rect.width()) {
            QToolTip::hideText();
            return false;
        }
        QToolTip::showText(event->globalPos(), PlainToolTip(index.data().toString()), view);
        return true;
    }
};

CRemoteResultsView::CRemoteResultsView(CRemoteCatalog& catalog, const AnsiText& page)
    : m_catalog(catalog), m_page(page) {
    setHeaderLabels({QStringLiteral("File Name"), QStringLiteral("Size (KB)")});
    headerItem()->setTextAlignment(kSize, Qt::AlignRight | Qt::AlignVCenter);
    setItemDelegate(new Delegate(this));
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(true);
    header()->setHighlightSections(false);
    header()->setMinimumSectionSize(1);
    header()->setSectionResizeMode(kName, QHeaderView::Stretch);
    header()->setSectionResizeMode(kSize, QHeaderView::ResizeToContents);
    header()->setSortIndicator(-1, Qt::AscendingOrder);  // as the catalogue has them, until a heading is clicked
    header()->setSortIndicatorShown(true);
    connect(header(), &QHeaderView::sortIndicatorChanged, this, &CRemoteResultsView::Sort);
    // A quick second click turns the order around as a slow one does.
    connect(header(), &QHeaderView::sectionDoubleClicked, this, &CRemoteResultsView::SortBy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    const std::pair<int, QString> kSorting[] = {{kName, QStringLiteral("Sort by &Name")},
                                                {kSize, QStringLiteral("Sort by &Size")}};
    for (const auto& [column, text] : kSorting) {
        auto* action = new QAction(text, this);
        action->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + column)));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, clicked = column] { SortBy(clicked); });
        addAction(action);
    }
    connect(this, &QTreeWidget::itemExpanded, this, &CRemoteResultsView::OnExpanded);
    connect(this, &QTreeWidget::itemChanged, this, &CRemoteResultsView::OnChanged);
}

CRemoteResultsView::Row* CRemoteResultsView::RowAt(int index) const { return static_cast<Row*>(topLevelItem(index)); }

CRemoteResultsView::Row* CRemoteResultsView::MakeRow(CRemoteResult& result) const {
    auto* row = new Row(result);
    row->setText(kName, Shown(result.name, m_page));
    row->setTextAlignment(kSize, Qt::AlignRight | Qt::AlignVCenter);
    row->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
    row->setCheckState(kName, Qt::Unchecked);
    return row;
}

void CRemoteResultsView::Refresh() {
    const QSignalBlocker blocker(this);  // ticks that come from the results
    const auto& results = m_catalog.Results();
    QList<QTreeWidgetItem*> added;
    for (std::size_t i = static_cast<std::size_t>(topLevelItemCount()); i < results.size(); ++i) {
        added << MakeRow(*results[i]);
    }
    addTopLevelItems(added);
    for (int i = 0; i < topLevelItemCount(); ++i) {
        Row& row = *RowAt(i);
        CRemoteResult& result = row.result;
        const bool mayOpen = !result.IsSingleFile() && !result.hasFetchedFiles;
        row.setChildIndicatorPolicy(mayOpen ? QTreeWidgetItem::ShowIndicator
                                            : QTreeWidgetItem::DontShowIndicatorWhenChildless);
        if (row.childCount() == 0) {
            for (const auto& file : result.children) row.addChild(MakeRow(*file));
        }
        row.setText(kSize, Shown(result.size, m_page));
        if (row.childCount() == 0) row.setCheckState(kName, result.isTicked ? Qt::Checked : Qt::Unchecked);
        for (int k = 0; k < row.childCount(); ++k) {
            Row& file = static_cast<Row&>(*row.child(k));
            file.setText(kSize, Shown(file.result.size, m_page));
            file.setCheckState(kName, file.result.isTicked ? Qt::Checked : Qt::Unchecked);
        }
        result.isTicked = row.checkState(kName) == Qt::Checked;
    }
    Sort();
    if (!currentItem() && topLevelItemCount() > 0) setCurrentItem(topLevelItem(0));
}

CRemoteResult* CRemoteResultsView::Selected() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? nullptr : &static_cast<Row*>(selected.first())->result;
}

void CRemoteResultsView::Close(const CRemoteResult& package) {
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (&RowAt(i)->result == &package) RowAt(i)->setExpanded(false);
    }
}

void CRemoteResultsView::OnExpanded(QTreeWidgetItem* item) {
    CRemoteResult& result = static_cast<Row*>(item)->result;
    if (result.IsSingleFile() || result.hasFetchedFiles) return;
    QMetaObject::invokeMethod(
        this,
        [this, &result] {
            if (!result.hasFetchedFiles) onOpen(result);
        },
        Qt::QueuedConnection);
}

// A package's own change comes after those of its files, and theirs is told for it, too.
void CRemoteResultsView::OnChanged(QTreeWidgetItem* item, int column) {
    if (column == kName) static_cast<Row*>(item)->result.isTicked = item->checkState(kName) == Qt::Checked;
}

// As a click on the heading.
void CRemoteResultsView::SortBy(int column) {
    const bool turnsAround =
        header()->sortIndicatorSection() == column && header()->sortIndicatorOrder() == Qt::AscendingOrder;
    header()->setSortIndicator(column, turnsAround ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void CRemoteResultsView::Sort() {
    const int column = header()->sortIndicatorSection();
    if (column < 0) return;
    sortItems(column, header()->sortIndicatorOrder());
    scrollToItem(currentItem());
}

void CRemoteResultsView::keyPressEvent(QKeyEvent* event) {
    QTreeWidgetItem* item = currentItem();
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier || !item) {
        QTreeWidget::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        item->setCheckState(kName, item->checkState(kName) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    }
}

void CRemoteResultsView::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) scheduleDelayedItemsLayout();
}

}  // namespace quillary
