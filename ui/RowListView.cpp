#include "ui/RowListView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "ui/MenuPlace.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kRowPadding = 10;  // pixels; a finger needs more than the text's height
constexpr int kNamePercent = 60;
constexpr int kNameLess = 2;  // pixels

}  // namespace

class CRowListView::NameDelegate : public QStyledItemDelegate {
  public:
    explicit NameDelegate(CRowListView& view) : QStyledItemDelegate(&view), m_view(view) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        editor->setAccessibleName(m_view.m_nameOfEditor);
        m_view.m_editor = qobject_cast<QLineEdit*>(editor);
        return editor;
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const bool isAlone = index.model()->columnCount() == 1;
        if (isAlone || !(option.state & QStyle::State_HasFocus)) return;
        // Which cell of the selected row the keys are for.
        const bool selected = option.state & QStyle::State_Selected;
        painter->setPen(QPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight), 1));
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
    [[nodiscard]] QString displayText(const QVariant& value, const QLocale& /*locale*/) const override {
        return OnOneLine(value.toString());
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
                m_view.FinishEditing();
                m_view.focusNextPrevChild(key == Qt::Key_Tab);
                return true;
            }
        }
        return QStyledItemDelegate::eventFilter(watched, event);
    }

  private:
    CRowListView& m_view;
};

CRowListView::CRowListView(const QStringList& headings, QString nameOfEditor, Tap tap)
    : m_nameOfEditor(std::move(nameOfEditor)), m_tap(tap) {
    m_model.setColumnCount(std::max(1, static_cast<int>(headings.size())));
    m_model.setHorizontalHeaderLabels(headings);
    setModel(&m_model);
    setItemDelegate(new NameDelegate(*this));
    SetUp(headings);
    connect(this, &QAbstractItemView::clicked, this, &CRowListView::OnClick);
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& cell) {
        if (m_tap == Tap::Selects) Open(cell);
    });
}

void CRowListView::SetUp(const QStringList& headings) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setVisible(!headings.isEmpty());
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    if (m_tap == Tap::Selects) viewport()->grabGesture(Qt::TapAndHoldGesture);
    FitRows();
}

// ---- Rows

void CRowListView::InsertAt(int at, const Row& row) {
    QList<QStandardItem*> items;
    for (const QString& text : row.texts) {
        items << new QStandardItem(text);
        items.last()->setEditable(items.size() == 1);
    }
    items.first()->setData(row.value);
    m_model.insertRow(at, items);
}

void CRowListView::Append(const Row& row) { InsertAt(RowCount(), row); }

void CRowListView::Insert(const Row& row) {
    FinishEditing();
    const int selected = SelectedRow();
    const int at = selected < 0 ? RowCount() : selected + 1;
    InsertAt(at, row);
    EditName(at);
}

void CRowListView::RemoveSelected() {
    FinishEditing();
    const int first = SelectedRow();
    if (first < 0) return;
    const int column = currentIndex().column();
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) m_model.removeRow(row->row());
    if (RowCount() > 0) Select(std::max(first - 1, 0), column);
    onSelection();
}

void CRowListView::MoveSelected(int by) {
    FinishEditing();
    const int row = SelectedRow();
    if (row < 0 || row + by < 0 || row + by >= RowCount()) return;
    const int column = currentIndex().column();
    setUpdatesEnabled(false);
    m_model.insertRow(row + by, m_model.takeRow(row));
    Select(row + by, column);
    setUpdatesEnabled(true);
}

void CRowListView::Select(int row, int column) {
    // Whatever keys are held: setCurrentIndex would only add to the selection with Shift, and keep it with Ctrl.
    selectionModel()->setCurrentIndex(m_model.index(row, std::max(column, 0)),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(currentIndex());
}

int CRowListView::SelectedRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    const auto first = std::min_element(rows.begin(), rows.end());
    return first == rows.end() ? -1 : first->row();
}

void CRowListView::EditName(int row) {
    FinishEditing();
    Select(row);
    setFocus();
    edit(currentIndex());
}

void CRowListView::FinishEditing() {
    if (state() != EditingState || !m_editor) return;
    QLineEdit* const editor = m_editor;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

bool CRowListView::IsEditingAnother() const {
    return state() == EditingState && m_editor && m_editor->text() != currentIndex().siblingAtColumn(0).data();
}

// ---- Clicks and keys

void CRowListView::OnClick(const QModelIndex& cell) {
    const auto modifiers = QGuiApplication::keyboardModifiers();
    if (m_tap == Tap::EditsName && !(modifiers & (Qt::ControlModifier | Qt::ShiftModifier))) Open(cell);
}

void CRowListView::Open(const QModelIndex& cell) {
    if (cell.column() == 0) {
        EditName(cell.row());
    } else {
        Select(cell.row(), cell.column());
        onOpen(cell.row());
    }
}

void CRowListView::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
    const bool hasCurrent = currentIndex().isValid();
    const int key = event->key();
    if (event->modifiers() == Qt::AltModifier && (key == Qt::Key_Up || key == Qt::Key_Down)) {
        MoveSelected(key == Qt::Key_Up ? -1 : 1);
        return;
    }
    if (!isPlain || state() == EditingState) {
        QTableView::keyPressEvent(event);
        return;
    }
    switch (key) {
        case Qt::Key_Insert:
            onInsert();
            return;
        case Qt::Key_Delete:
            RemoveSelected();
            return;
        case Qt::Key_F2:
            if (hasCurrent) EditName(currentIndex().row());
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            // Not the rest of one that was held down to leave a dialog or an editor.
            if (event->isAutoRepeat()) return;
            RowCount() == 0 ? onInsert() : Open(currentIndex());
            return;
        case Qt::Key_Space:
            if (hasCurrent && currentIndex().column() > 0 && !event->isAutoRepeat()) Open(currentIndex());
            return;
        case Qt::Key_Escape:
            event->ignore();  // the dialog's
            return;
        default:
            QTableView::keyPressEvent(event);
    }
}

// The Tab key goes through the cells of one row, and then on.
bool CRowListView::focusNextPrevChild(bool next) {
    const int column = currentIndex().column() + (next ? 1 : -1);
    if (currentIndex().isValid() && column >= 0 && column < m_model.columnCount()) {
        Select(currentIndex().row(), column);
        return true;
    }
    return QTableView::focusNextPrevChild(next);
}

// The toolkit takes a list of names that can be edited for an editor; one writes in the editor alone, and only it needs
// the input panel.
void CRowListView::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    setAttribute(Qt::WA_InputMethodEnabled, false);
}

void CRowListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    setAttribute(Qt::WA_InputMethodEnabled, false);
}

void CRowListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (onSelection) onSelection();
}

void CRowListView::contextMenuEvent(QContextMenuEvent* event) { AskForMenu(MenuPlace(*event, *this)); }

bool CRowListView::viewportEvent(QEvent* event) {
    const auto held = HeldPlace(*event, *this);
    if (held) AskForMenu(*held);
    return held || QTableView::viewportEvent(event);
}

void CRowListView::AskForMenu(const QPoint& inViewport) {
    const QModelIndex row = indexAt(inViewport);
    if (!row.isValid() || !onMenu) return;
    FinishEditing();
    if (!selectionModel()->isRowSelected(row.row())) Select(row.row());
    onMenu(viewport()->mapToGlobal(inViewport));
}

void CRowListView::SetHint(const QString& hint) {
    m_hint = hint;
    const auto tell = [this] { setAccessibleDescription(RowCount() == 0 ? m_hint : QString()); };
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, tell);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, tell);
    tell();
}

void CRowListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (RowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}

// ---- Sizes

void CRowListView::FitRows() { verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding); }

void CRowListView::FitColumns() {
    const int width = viewport()->width();
    const bool isAlone = m_model.columnCount() == 1;
    const int name = isAlone ? width : width * kNamePercent / 100 - kNameLess;
    horizontalHeader()->resizeSection(0, name);
    if (!isAlone) horizontalHeader()->resizeSection(1, width - name);
}

void CRowListView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    FitColumns();
}

void CRowListView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitRows();
}

}  // namespace quillary
