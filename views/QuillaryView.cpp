#include "views/QuillaryView.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "admin/ChangePasswordDlg.h"
#include "admin/DatabaseInfoDlg.h"
#include "admin/DatabaseOptionsDlg.h"
#include "admin/FieldDefinitionsDlg.h"
#include "db/Clock.h"
#include "db/RecordCommit.h"
#include "query/Filter.h"
#include "query/FilterRecordsDlg.h"
#include "query/Sort.h"
#include "ui/CheckImage.h"
#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/StepLog.h"
#include "ui/TypedText.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"
#include "views/Exports.h"
#include "views/ListFont.h"
#include "views/RecordCellDelegate.h"
#include "views/RecordHeader.h"

namespace quillary {

namespace {

/// As spreadsheets take it: in quotes when it holds what separates cells.
QString ForClipboard(const QString& text) {
    if (!text.contains(u'\t') && !text.contains(u'\n') && !text.contains(u'\r') && !text.contains(u'"')) return text;
    return u'"' + QString(text).replace(QStringLiteral("\""), QStringLiteral("\"\"")) + u'"';
}

}  // namespace

std::span<const CommandEntry<CQuillaryView>> CQuillaryView::Commands() {
    using View = CQuillaryView;
    static constexpr CommandEntry<View> kCommands[] = {
        {ID_DATABASE_CHANGE_PASSWORD, &View::OnChangePassword, &View::UpdateChange},
        {ID_DATABASE_DELETE, &View::OnDelete, &View::UpdateChange},
        {ID_DATABASE_FIELDS, &View::OnFieldDefinitions, &View::UpdateChange},
        {ID_DATABASE_INFO, &View::OnInfo},  // read only, it can be looked at
        {ID_DATABASE_OPTIONS, &View::OnOptions, &View::UpdateChange},
        {ID_DATABASE_SEND_INFRARED, &View::OnSendByInfrared, &View::UpdateSendByInfrared},
        {ID_DATABASE_SEND_MAIL, &View::OnSendByMail},
        {ID_EDIT_COPY, &View::OnCopy, &View::UpdateCopy},
        {ID_EXPORT_CALENDAR, &View::OnExportCalendar, &View::UpdateExportCalendar},
        {ID_EXPORT_CONTACTS, &View::OnExportContacts, &View::UpdateExportContacts},
        {ID_RECORD_BOTTOM, &View::OnBottom, &View::UpdateTopAndBottom},
        {ID_RECORD_FILTER, &View::OnFilterRecords},
        {ID_RECORD_FIND, &View::OnFind},
        {ID_RECORD_REPEAT_FIND, &View::OnRepeatFind, &View::UpdateRepeatFind},
        {ID_RECORD_SHOW_ALL, &View::OnShowAll, &View::UpdateShowAll},
        {ID_RECORD_SORT, &View::OnSortRecords},  // read only, in memory
        {ID_RECORD_TOP, &View::OnTop, &View::UpdateTopAndBottom},
    };
    return kCommands;
}

CQuillaryView::CQuillaryView(CDocumentSession& session, FrameWindow& frame, Trash& trash,
                             const FormSurroundings& surroundings)
    : m_session(session),
      m_doc(session.Doc()),
      m_frame(frame),
      m_trash(trash),
      m_surroundings(surroundings),
      m_model(session.Doc()),
      m_delegate(new CRecordCellDelegate(m_doc, m_model, this)),
      m_header(new CRecordHeader(this)),
      m_columns(session, *this, *m_header, m_model, frame),
      m_sorting(m_doc, *this, *m_header, m_frame),
      m_find(m_doc, frame),
      m_typedSearch(m_doc),
      m_sending(session, surroundings.launcher, frame) {
    setAccessibleName(QStringLiteral("Records"));
    setModel(&m_model);
    setItemDelegate(m_delegate);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setFont(ListFont(QApplication::font(this)));
    SetUpHeaders();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &CQuillaryView::UpdateRecordCounter);
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& cell) {
        if (!QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier)) Tap(cell, m_tapPoint);
    });
    session.OnUpdate([this](int hint) { OnUpdate(hint); });
    RebuildList(false, false);
    m_sorting.ShowSortMark();
}

void CQuillaryView::SetUpHeaders() {
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(CRecordCellDelegate::RowHeight(fontMetrics()));

    m_header->onDragging = [this] { m_columns.FitFiller(); };
    m_header->onDragged = [this](int column) { m_columns.StoreWidth(column); };
    m_header->onFit = [this](int column) { m_columns.Fit(column); };
    m_header->onTap = [this](int column) { m_sorting.OnHeaderItemClick(column); };
    setHorizontalHeader(m_header);
    // The toolkit's own way to fit a column looks at some rows only.
    disconnect(m_header, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);
}

bool CQuillaryView::RebuildList(bool resort, bool save) {
    {
        const WaitCursor wait;
        const Place place = CurrentPlace();
        if (resort) SortRecords(m_doc);
        m_columns.Build();
        GoTo(place);
    }
    const bool saved = !save || m_session.Save();
    UpdateRecordCounter();
    return saved;
}

CQuillaryView::Place CQuillaryView::CurrentPlace() const {
    return {GetSelectedRow(), currentIndex().column(), horizontalScrollBar()->value(), verticalScrollBar()->value(),
            m_find.LastSought()};
}

void CQuillaryView::GoTo(const Place& place) {
    SelectCell(place.row, place.column);
    horizontalScrollBar()->setValue(place.horizontal);
    verticalScrollBar()->setValue(place.vertical);
    m_find.TakeUp(place.sought);
}

void CQuillaryView::SetRowColor(const std::optional<QColor>& color) {
    m_delegate->SetRowColor(color);
    viewport()->update();
}

void CQuillaryView::mousePressEvent(QMouseEvent* event) {
    m_tapPoint = event->position().toPoint();
    QTableView::mousePressEvent(event);
}

void CQuillaryView::Tap(const QModelIndex& cell, const QPoint& point) {
    m_doc.SetCurrentRecord(static_cast<std::size_t>(cell.row()));
    if (!m_doc.EditOnSelect() || !m_delegate->IsCheckBox(cell)) {
        OpenEditForm(false);
    } else if (CheckImageRect(visualRect(cell)).contains(point)) {
        ToggleCheckBox(static_cast<std::size_t>(cell.row()), static_cast<std::size_t>(cell.column()));
    }
}

void CQuillaryView::OnUpdate(int hint) {
    if (hint == kNewRecordHint) OpenEditForm(true);
}

void CQuillaryView::OpenEditForm(bool newRecord) {
    if (newRecord && !CEditRecordDlg::HasRoomFor(1, m_doc, m_frame)) return;
    using Opening = CEditRecordDlg::Opening;
    CEditRecordDlg dialog(m_session, m_surroundings, newRecord ? Opening::NewRecord : Opening::CurrentRecord, m_frame);
    dialog.exec();
    if (dialog.HasCommitted()) RebuildList(true, true);
    UpdateRecordCounter();
    m_frame.DocumentChanged();
}

void CQuillaryView::ToggleCheckBox(std::size_t row, std::size_t field) {
    if (m_doc.IsReadOnly()) {
        ShowMessage(m_frame.Window(), FromUtf8(MessageText(Message::ReadOnly)));
        return;
    }
    const bool checked = m_model.CellText(static_cast<int>(row), static_cast<int>(field)) == QLatin1String("true");
    const EnteredValue toggled{field, StoredCheckBox(!checked)};
    bool changed = false;
    Failure failure;
    if (!CommitRecord(m_doc, row, {&toggled, 1}, changed, failure)) {
        ShowMessage(m_frame.Window(), FromUtf8(failure.text));
        return;
    }
    const bool refilters = IsFilteredBy(m_doc, field);
    if (refilters) ApplyFilter(m_doc);
    if (refilters || IsSortKey(field)) {
        RebuildList(true, true);
    } else {
        viewport()->update();
        m_session.Save();
    }
    m_frame.DocumentChanged();
}

bool CQuillaryView::IsSortKey(std::size_t field) const {
    return std::any_of(m_doc.Sort().begin(), m_doc.Sort().end(),
                       [&](const SortKey& key) { return key.field == m_doc.Fields()[field].name; });
}

void CQuillaryView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (!m_painted) LogStep(QStringLiteral("records painted"));
    m_painted = true;
    if (m_model.rowCount() > 0) return;
    QPainter painter(viewport());
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlphaF(0.7);
    painter.setPen(quiet);
    painter.setFont(QApplication::font());
    const QRect room = viewport()->rect().adjusted(16, 16, -16, -16);
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, WhyEmpty());
}

QString CQuillaryView::WhyEmpty() const {
    const auto hidden = static_cast<qulonglong>(m_doc.Hidden().size());
    if (hidden > 0) {
        // Of a filter that is no more, or that lost its fields, no command shows all.
        const QString way =
            EffectiveFilter(m_doc).conditions.empty()
                ? QStringLiteral("A filter on all records (Record > Filter...) shows those that pass it.")
                : QStringLiteral("Record > Show All brings back what the filter hides.");
        return (hidden == 1 ? QStringLiteral("The one record is hidden. ")
                            : QStringLiteral("All %L1 records are hidden. ").arg(hidden)) +
               way;
    }
    return m_doc.IsReadOnly() ? QStringLiteral("No records.")
                              : QStringLiteral("No records yet. New (Ctrl+N) adds one.");
}

void CQuillaryView::keyPressEvent(QKeyEvent* event) {
    const QModelIndex cell = currentIndex();
    if (event->modifiers() == Qt::AltModifier && SetWidthByKey(event->key(), std::max(cell.column(), 0))) return;
    if (event->key() == Qt::Key_Space && cell.isValid()) {
        const Qt::KeyboardModifiers keys = event->modifiers();
        if (m_doc.EditOnSelect() && m_delegate->IsCheckBox(cell)) {
            const bool isTap = keys == Qt::NoModifier && !event->isAutoRepeat();
            if (isTap) Tap(cell, CheckImageRect(visualRect(cell)).center());
        } else if ((keys & ~Qt::KeyboardModifiers(Qt::ShiftModifier)) == 0 && m_typedSearch.IsUnderWay()) {
            keyboardSearch(event->text());  // between two words
        }
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && cell.isValid()) {
        if (event->isAutoRepeat()) return;  // the rest of one that was held down to leave a dialog
        m_doc.SetCurrentRecord(static_cast<std::size_t>(cell.row()));
        OpenEditForm(false);
        return;
    }
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        // Not the rest of one that was held down to leave a dialog.
        if (!event->isAutoRepeat()) m_frame.PostCommand(ID_FILE_OPEN);
        return;
    }
    QTableView::keyPressEvent(event);
}

bool CQuillaryView::SetWidthByKey(int key, int column) {
    if (key == Qt::Key_Down) {
        m_columns.Fit(column);
    } else if (key == Qt::Key_Left || key == Qt::Key_Right) {
        m_columns.Widen(column, key == Qt::Key_Right ? 1 : -1);
    } else {
        return false;
    }
    if (currentIndex().isValid()) scrollTo(currentIndex());
    return true;
}

void CQuillaryView::keyboardSearch(const QString& typed) {
    if (!IsWriting(typed)) return;
    if (const auto row = m_typedSearch.Type(typed, GetSelectedRow())) SelectCell(*row, currentIndex().column());
}

QItemSelectionModel::SelectionFlags CQuillaryView::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
    const auto flags = QTableView::selectionCommand(index, event);
    // With Ctrl, too, a click selects; a row of this list is never without a mark.
    return flags & (QItemSelectionModel::Toggle | QItemSelectionModel::Deselect)
               ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
               : flags;
}

void CQuillaryView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange) setFont(ListFont(QApplication::font(this)));
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        verticalHeader()->setDefaultSectionSize(CRecordCellDelegate::RowHeight(fontMetrics()));
    }
}

void CQuillaryView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    m_columns.FitFiller();
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
    const QString description = rows > 0 ? QString() : WhyEmpty();
    if (accessibleDescription() != description) setAccessibleDescription(description);
}

int CQuillaryView::GetSelectedRow() const {
    const QItemSelection selection = selectionModel()->selection();
    return selection.isEmpty() ? -1 : selection.first().top();
}

void CQuillaryView::CancelDialog() { m_frame.CancelDialog(); }

void CQuillaryView::SelectCell(int row, int column) {
    if (m_model.rowCount() == 0) return;
    setCurrentIndex(
        m_model.index(std::clamp(row, 0, m_model.rowCount() - 1), std::clamp(column, 0, m_model.FieldColumns() - 1)));
}

void CQuillaryView::OnCopy() {
    m_doc.SetCurrentRecord(static_cast<std::size_t>(GetSelectedRow()));
    QStringList names;
    QStringList values;
    for (std::size_t field = 0; field < m_doc.FieldCount(); ++field) {
        names << ForClipboard(FromWide(m_doc.FieldName(field)));
        values << ForClipboard(FromWide(m_doc.FieldText(field, true).value_or(std::u16string())));
    }
    QGuiApplication::clipboard()->setText(names.join(u'\t') + u'\n' + values.join(u'\t') + u'\n');
}

void CQuillaryView::OnDelete() {
    const QString name = m_session.DisplayName();
    const QString question = QStringLiteral("The database \"%1\" is about to be deleted.  Are you sure?").arg(name);
    if (AskUser(m_frame.Window(), question, {QStringLiteral("Yes"), QStringLiteral("No")}, 1) == 0) {
        m_session.DeleteDatabase(m_trash);
    }
}

void CQuillaryView::OnExportCalendar() { ExportToCalendar(m_doc, std::nullopt, m_surroundings, m_frame); }

void CQuillaryView::OnExportContacts() { ExportToContacts(m_doc, m_surroundings, m_frame); }

void CQuillaryView::OnOptions() {
    CDatabaseOptionsDlg dialog({m_doc.Style() == DateStyle::Long, m_doc.EditOnSelect()}, m_frame);
    dialog.StoreWith([&] {
        const auto before = m_session.BeforeChange();
        m_doc.SetStyle(dialog.Options().longDates ? DateStyle::Long : DateStyle::Numeric);
        m_doc.SetEditOnSelect(dialog.Options().editOnSelect);
        return SaveOrRestore(*before, false);
    });
    dialog.exec();
}

void CQuillaryView::OnFieldDefinitions() {
    RunFieldDefinitions(m_doc, CenturyOf(m_surroundings.clock), m_frame, [this](PreparedSchema schema) {
        const auto before = m_session.BeforeChange();
        const CListFind::Sought sought = m_find.LastSought();
        const std::string searched = m_find.FieldName();
        if (!ApplySchema(m_doc, std::move(schema))) return true;
        m_find.FollowField(searched);
        const bool isStored = SaveOrRestore(*before, true);
        if (!isStored) m_find.TakeUp(sought);
        return isStored;
    });
}

bool CQuillaryView::SaveOrRestore(const CQuillaryDoc::State& before, bool resort) {
    RebuildList(resort, false);
    const bool saved = m_session.SaveOrRestore(before);
    if (!saved) RebuildList(false, false);
    m_sorting.ShowSortMark();
    return saved;
}

void CQuillaryView::OnInfo() {
    CDatabaseInfoDlg dialog(m_doc, m_frame);
    dialog.StoreWith([&] {
        const auto before = m_session.BeforeChange();
        m_doc.SetInfo(dialog.Text(), dialog.Lock());
        return m_session.SaveOrRestore(*before);
    });
    dialog.exec();
}

void CQuillaryView::OnChangePassword() {
    const auto before = m_session.BeforeChange();
    CChangePasswordDlg dialog(m_doc, m_frame);
    dialog.StoreWith([&] { return m_session.SaveOrRestore(*before); });
    dialog.exec();
}

void CQuillaryView::OnFind() { ShowFound(m_find.OnFind()); }

void CQuillaryView::OnRepeatFind() {
    const int next = GetSelectedRow() + 1;
    ShowFound(m_find.FindFrom(static_cast<std::size_t>(next)));
}

void CQuillaryView::ShowFound(std::optional<std::size_t> row) {
    if (row) SelectCell(static_cast<int>(*row), currentIndex().column());
    UpdateRecordCounter();
}

void CQuillaryView::OnFilterRecords() {
    CFilterRecordsDlg dialog(m_doc, m_surroundings.clock, m_surroundings.locale.Order(), m_frame);
    if (dialog.exec() != QDialog::Accepted) return;
    {
        const WaitCursor wait;
        SetAndApplyFilter(m_doc, dialog.Settings());
    }
    RebuildList(true, true);
}

void CQuillaryView::OnShowAll() {
    RemoveFilter(m_doc);
    RebuildList(true, true);
}

void CQuillaryView::OnSortRecords() { m_sorting.OnSortRecords(); }

void CQuillaryView::OnTop() { SelectCell(0, currentIndex().column()); }

void CQuillaryView::OnBottom() { SelectCell(m_model.rowCount() - 1, currentIndex().column()); }

void CQuillaryView::UpdateCopy(CommandState& state) const { state.Enable(GetSelectedRow() >= 0); }

void CQuillaryView::UpdateExportCalendar(CommandState& state) const { RequireDateField(m_doc, state); }

void CQuillaryView::UpdateExportContacts(CommandState& state) const {
    if (m_doc.Shown().empty()) state.Disable(QStringLiteral("No record is shown."));
}

void CQuillaryView::UpdateRepeatFind(CommandState& state) const { state.Enable(m_find.CanRepeat()); }

void CQuillaryView::UpdateShowAll(CommandState& state) const {
    state.Enable(!EffectiveFilter(m_doc).conditions.empty());
}

void CQuillaryView::UpdateChange(CommandState& state) const {
    if (m_doc.IsReadOnly()) state.Disable(FromUtf8(MessageText(Message::ReadOnly)));
}

void CQuillaryView::UpdateTopAndBottom(CommandState& state) const { state.Enable(m_model.rowCount() >= 2); }

}  // namespace quillary
