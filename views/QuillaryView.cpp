#include "views/QuillaryView.h"

#include <QScrollBar>
#include <algorithm>

#include "admin/DatabaseOptionsDlg.h"
#include "db/QuillaryDoc.h"
#include "query/Sort.h"
#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"
#include "views/RecordCellDelegate.h"
#include "views/RecordHeader.h"

namespace quillary {

namespace {

constexpr int kSmallestFiller = 10;
constexpr int kLargestWidth = 4096;

}  // namespace

std::span<const CommandEntry<CQuillaryView>> CQuillaryView::Commands() {
    using View = CQuillaryView;
    static constexpr CommandEntry<View> kCommands[] = {
        {ID_DATABASE_OPTIONS, &View::OnOptions, &View::UpdateOptions},
        {ID_RECORD_BOTTOM, &View::OnBottom, &View::UpdateTopAndBottom},
        {ID_RECORD_TOP, &View::OnTop, &View::UpdateTopAndBottom},
    };
    return kCommands;
}

CQuillaryView::CQuillaryView(CDocumentSession& session, FrameWindow& frame)
    : m_session(session),
      m_doc(session.Doc()),
      m_frame(frame),
      m_model(session.Doc()),
      m_header(new CRecordHeader(this)) {
    setAccessibleName(QStringLiteral("Records"));
    setModel(&m_model);
    setItemDelegate(new CRecordCellDelegate(m_doc, m_model, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    SetUpHeaders();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &CQuillaryView::UpdateRecordCounter);
    RebuildList(false, false);
}

void CQuillaryView::SetUpHeaders() {
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(CRecordCellDelegate::RowHeight(fontMetrics()));

    m_header->onDragging = [this] { FitFiller(); };
    m_header->onDragged = [this](int column) { StoreWidth(column); };
    setHorizontalHeader(m_header);
}

bool CQuillaryView::RebuildList(bool resort, bool save) {
    {
        const WaitCursor wait;
        const int row = GetSelectedRow();
        const int column = currentIndex().column();
        const int horizontal = horizontalScrollBar()->value();
        const int vertical = verticalScrollBar()->value();
        if (resort) SortRecords(m_doc);
        BuildColumns();
        SelectCell(row, column);
        horizontalScrollBar()->setValue(horizontal);
        verticalScrollBar()->setValue(vertical);
    }
    const bool saved = !save || m_session.Save();
    UpdateRecordCounter();
    return saved;
}

void CQuillaryView::BuildColumns() {
    m_model.Rebuild();
    if (m_model.columnCount() == 0) return;
    for (int k = 0; k < m_model.FieldColumns(); ++k) {
        m_header->SetWidth(k, ShownWidth(m_doc.Fields()[static_cast<std::size_t>(k)]));
    }
    m_header->setSectionResizeMode(m_model.FieldColumns(), QHeaderView::Fixed);
    FitFiller();
}

void CQuillaryView::FitFiller() {
    if (m_model.columnCount() == 0) return;
    int sum = 0;
    for (int k = 0; k < m_model.FieldColumns(); ++k) sum += m_header->sectionSize(k);
    const int client = viewport()->width();
    m_header->SetWidth(m_model.FieldColumns(), sum < client - kSmallestFiller ? client - sum : kSmallestFiller);
}

void CQuillaryView::StoreWidth(int column) {
    const auto before = m_session.BeforeChange();
    m_doc.SetFieldWidth(static_cast<std::size_t>(column), std::min(m_header->sectionSize(column), kLargestWidth));
    if (!m_session.Save()) {
        m_doc.Restore(*before);
        RebuildList(false, false);
    }
    m_frame.DocumentChanged();
}

void CQuillaryView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        verticalHeader()->setDefaultSectionSize(CRecordCellDelegate::RowHeight(fontMetrics()));
    }
}

void CQuillaryView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    FitFiller();
}

void CQuillaryView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    UpdateRecordCounter();
}

QModelIndex CQuillaryView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex current = currentIndex();
    if (!modifiers.testFlag(Qt::ControlModifier) && current.isValid()) {
        // The keys of a list: Home and End go to the first and the last record.
        if (action == MoveHome) return current.siblingAtRow(0);
        if (action == MoveEnd) return current.siblingAtRow(m_model.rowCount() - 1);
    }
    const QModelIndex moved = QTableView::moveCursor(action, modifiers);
    return moved.isValid() && m_model.IsFiller(moved.column()) ? moved.siblingAtColumn(moved.column() - 1) : moved;
}

void CQuillaryView::UpdateRecordCounter() {
    const int rows = m_model.rowCount();
    m_frame.ShowRecordCounter(rows > 0 ? GetSelectedRow() + 1 : 0, rows);
}

int CQuillaryView::GetSelectedRow() const {
    const QItemSelection selection = selectionModel()->selection();
    return selection.isEmpty() ? -1 : selection.first().top();
}

void CQuillaryView::CancelDialog() { m_frame.CancelDialog(); }

void CQuillaryView::SelectCell(int row, int column) {
    if (m_model.rowCount() == 0) return;
    setCurrentIndex(m_model.index(std::clamp(row, 0, m_model.rowCount() - 1), std::max(column, 0)));
}

void CQuillaryView::OnOptions() {
    CDatabaseOptionsDlg dialog({m_doc.Style() == DateStyle::Long, m_doc.EditOnSelect()}, m_frame);
    if (dialog.exec() != QDialog::Accepted) return;
    const auto before = m_session.BeforeChange();
    m_doc.SetStyle(dialog.Options().longDates ? DateStyle::Long : DateStyle::Numeric);
    m_doc.SetEditOnSelect(dialog.Options().editOnSelect);
    if (!RebuildList(false, true)) {
        m_doc.Restore(*before);
        RebuildList(false, false);
    }
}

void CQuillaryView::OnTop() { SelectCell(0, currentIndex().column()); }

void CQuillaryView::OnBottom() { SelectCell(m_model.rowCount() - 1, currentIndex().column()); }

void CQuillaryView::UpdateOptions(CommandState& state) const {
    if (m_doc.IsReadOnly()) state.Disable(FromUtf8(MessageText(Message::ReadOnly)));
}

void CQuillaryView::UpdateTopAndBottom(CommandState& state) const { state.Enable(m_model.rowCount() >= 2); }

}  // namespace quillary
