#include "app/DocListView.h"

#include <QContextMenuEvent>
#include <QDateTime>
#include <QHeaderView>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <algorithm>

#include "app/DocListModel.h"
#include "ui/MenuPlace.h"
#include "views/RecordCellDelegate.h"

namespace quillary {

namespace {

constexpr int kFewestNameLetters = 14;
constexpr int kFewestFolderLetters = 12;

/// Hands an edited name to the view instead of the model: it is the disk's to say whether it can be.
class NameDelegate : public QStyledItemDelegate {
  public:
    NameDelegate(CDocListView& view, const CDocListModel& model)
        : QStyledItemDelegate(&view), m_view(view), m_model(model) {}

    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
        const QString text = static_cast<QLineEdit*>(editor)->text();
        const DocListRow& row = m_model.Row(index.row());
        if (text == row.name) return;
        QMetaObject::invokeMethod(
            &m_view, [view = &m_view, path = row.path, text] { view->onRename(path, text); }, Qt::QueuedConnection);
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), std::max(size.height(), CRecordCellDelegate::RowHeight(option.fontMetrics))};
    }

  private:
    CDocListView& m_view;
    const CDocListModel& m_model;
};

}  // namespace

CDocListView::CDocListView(CDocListModel& model) : m_model(model) {
    setAccessibleName(QStringLiteral("Databases"));
    setModel(&model);
    setItemDelegate(new NameDelegate(*this, model));  // the toolkit forgets the editor of one for a column alone
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setFrameShape(NoFrame);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setHighlightSections(false);
    viewport()->grabGesture(Qt::TapAndHoldGesture);
    FitColumns();
}

void CDocListView::FitColumns() {
    const QFontMetrics metrics = fontMetrics();
    const int letter = metrics.averageCharWidth();
    const int margin = 2 * letter;
    // The widest day of the year, as far as digits go.
    const std::int64_t day = QDateTime(QDate(2028, 12, 28), QTime(20, 58)).toSecsSinceEpoch();
    const int date = std::max(metrics.horizontalAdvance(CDocListModel::DateText(day)) + margin,
                              header()->sectionSizeHint(CDocListModel::kDate));
    const int size = std::max(metrics.horizontalAdvance(CDocListModel::SizeText(888800000)) + margin,
                              header()->sectionSizeHint(CDocListModel::kSize));
    int room = viewport()->width() - kFewestNameLetters * letter;
    bool fits = true;  // once one does not, the others make room for the name
    const auto take = [&](int column, int width) {
        fits = fits && width <= room;
        header()->setSectionHidden(column, !fits);
        if (!fits) return 0;
        header()->resizeSection(column, width);
        room -= width;
        return width;
    };
    int taken = take(CDocListModel::kDate, date);
    taken += take(CDocListModel::kSize, size);
    // Two fifths of the rest, and what the names leave of theirs when the folders need more.
    const int rest = viewport()->width() - taken;
    const int share = std::max(kFewestFolderLetters * letter, rest * 2 / 5);
    const int names = std::max(sizeHintForColumn(CDocListModel::kName), kFewestNameLetters * letter);
    const int most = std::max(share, rest - names);
    taken += take(CDocListModel::kFolder, std::clamp(sizeHintForColumn(CDocListModel::kFolder), share, most));
    header()->resizeSection(CDocListModel::kName, viewport()->width() - taken);
}

std::optional<Path> CDocListView::Selected() const {
    const QModelIndex current = currentIndex();
    if (!current.isValid() || !selectionModel()->isRowSelected(current.row())) return std::nullopt;
    return m_model.Row(current.row()).path;
}

bool CDocListView::Select(const Path& path) {
    const QModelIndex row = m_model.IndexOf(path);
    if (!row.isValid()) return false;
    setCurrentIndex(row);
    scrollTo(row);
    return true;
}

void CDocListView::SelectFirst() {
    if (!Selected() && m_model.rowCount() > 0) setCurrentIndex(m_model.index(0, CDocListModel::kName));
}

void CDocListView::EditName(const Path& path, const std::optional<QString>& text) {
    if (!Select(path)) return;
    auto* editor = qobject_cast<QLineEdit*>(indexWidget(currentIndex()));
    if (editor) {
        editor->setFocus();  // a dialog may have left it open
    } else {
        edit(currentIndex());
        editor = qobject_cast<QLineEdit*>(indexWidget(currentIndex()));
    }
    if (!editor || !text) return;
    editor->setText(*text);
    editor->selectAll();
}

void CDocListView::keyboardSearch(const QString& search) {
    // A click elsewhere in a row makes that column the current one; names are what people type.
    if (currentIndex().column() > CDocListModel::kName) {
        setCurrentIndex(currentIndex().siblingAtColumn(CDocListModel::kName));
    }
    QTreeView::keyboardSearch(search);
}

void CDocListView::contextMenuEvent(QContextMenuEvent* event) { AskForMenu(MenuPlace(*event, *this)); }

bool CDocListView::viewportEvent(QEvent* event) {
    const auto held = HeldPlace(*event, *this);
    if (held) AskForMenu(*held);
    return held || QTreeView::viewportEvent(event);
}

void CDocListView::AskForMenu(const QPoint& inViewport) {
    const QModelIndex row = indexAt(inViewport);
    if (!row.isValid() || !onMenu) return;
    setCurrentIndex(row.siblingAtColumn(CDocListModel::kName));
    onMenu(viewport()->mapToGlobal(inViewport));
}

void CDocListView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    FitColumns();
}

// When the row that is edited goes away, the toolkit takes its editor away too, but stays in the state of editing, in
// which a double click opens nothing.
void CDocListView::updateEditorGeometries() {
    QTreeView::updateEditorGeometries();
    if (IsEditing() && !indexWidget(currentIndex())) setState(NoState);
}

void CDocListView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitColumns();
}

}  // namespace quillary
