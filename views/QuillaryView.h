// The record list: the one view of the open database, and the first to receive commands while it is open.
#pragma once

#include <QColor>
#include <QTableView>
#include <optional>

#include "db/QuillaryDoc.h"
#include "ui/CommandTarget.h"
#include "views/DatabaseSending.h"
#include "views/EditRecordDlg.h"
#include "views/ListColumns.h"
#include "views/ListFind.h"
#include "views/ListSorting.h"
#include "views/RecordListModel.h"
#include "views/TypedSearch.h"

namespace quillary {

class CDocumentSession;
class CRecordCellDelegate;
class CRecordHeader;
class FrameWindow;
class Trash;

class CQuillaryView : public QTableView, public CommandMap<CQuillaryView> {
  public:
    CQuillaryView(CDocumentSession& session, FrameWindow& frame, Trash& trash, const FormSurroundings& surroundings);

    void SetRowColor(const std::optional<QColor>& color);

    /// Builds columns and rows anew, keeping the selected row and the scroll position. False, after telling the user,
    /// when saving failed: the change is then still in the document.
    bool RebuildList(bool resort, bool save);
    /// What a person looks at: the current cell and how far the list is scrolled; and what was last looked for.
    struct Place {
        int row, column, horizontal, vertical;
        CListFind::Sought sought;
    };
    [[nodiscard]] Place CurrentPlace() const;
    void GoTo(const Place& place);
    void UpdateRecordCounter();
    /// Shows the document's current record, or a new one, in the edit record form.
    void OpenEditForm(bool newRecord);
    /// The first selected row, or -1.
    [[nodiscard]] int GetSelectedRow() const;
    /// Ends the dialog that a command has opened, if there is one, with Cancel.
    void CancelDialog();

    [[nodiscard]] static std::span<const CommandEntry<CQuillaryView>> Commands();

  protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString& typed) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void resizeEvent(QResizeEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

  private:
    void OnChangePassword();
    void OnCopy();
    void OnDelete();
    void OnExportCalendar();
    void OnExportContacts();
    void OnFieldDefinitions();
    void OnFilterRecords();
    void OnFind();
    void OnInfo();
    void OnOptions();
    void OnRepeatFind();
    void OnSendByInfrared() { m_sending.SendByInfrared(); }
    void OnSendByMail() { m_sending.SendByMail(); }
    void OnShowAll();
    void OnSortRecords();
    void OnTop();
    void OnBottom();
    void UpdateRepeatFind(CommandState& state) const;
    void UpdateSendByInfrared(CommandState& state) const { m_sending.UpdateInfrared(state); }
    void UpdateShowAll(CommandState& state) const;
    void UpdateCopy(CommandState& state) const;
    void UpdateExportCalendar(CommandState& state) const;
    void UpdateExportContacts(CommandState& state) const;
    /// For all that changes the database.
    void UpdateChange(CommandState& state) const;
    void UpdateTopAndBottom(CommandState& state) const;
    /// What stands in a list without rows.
    [[nodiscard]] QString WhyEmpty() const;

    /// Shows and saves a change of the whole database; takes it back, after telling the user, when saving fails.
    [[nodiscard]] bool SaveOrRestore(const CQuillaryDoc::State& before, bool resort);

    void SetUpHeaders();
    /// False when the key sets no width.
    [[nodiscard]] bool SetWidthByKey(int key, int column);
    void ShowFound(std::optional<std::size_t> row);
    /// What a click or touch does in a cell.
    void Tap(const QModelIndex& cell, const QPoint& point);
    void OnUpdate(int hint);
    void ToggleCheckBox(std::size_t row, std::size_t field);
    [[nodiscard]] bool IsSortKey(std::size_t field) const;
    /// Makes the cell current and its row the selected one; one beyond the last row or column means the last.
    void SelectCell(int row, int column);

    CDocumentSession& m_session;
    CQuillaryDoc& m_doc;
    FrameWindow& m_frame;
    Trash& m_trash;
    const FormSurroundings m_surroundings;
    CRecordListModel m_model;
    CRecordCellDelegate* m_delegate;
    CRecordHeader* m_header;
    CListColumns m_columns;
    CListSorting m_sorting;
    CListFind m_find;
    CTypedSearch m_typedSearch;
    CDatabaseSending m_sending;
    bool m_painted = false;
    QPoint m_tapPoint;  // where the mouse or finger last went down
};

}  // namespace quillary
