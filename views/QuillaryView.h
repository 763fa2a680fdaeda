// The record list: the one view of the open database, and the first to receive commands while it is open.
#pragma once

#include <QTableView>

#include "ui/CommandTarget.h"
#include "views/RecordListModel.h"

namespace quillary {

class CDocumentSession;
class CQuillaryDoc;
class CRecordHeader;
class FrameWindow;

class CQuillaryView : public QTableView, public CommandMap<CQuillaryView> {
  public:
    CQuillaryView(CDocumentSession& session, FrameWindow& frame);

    /// Builds columns and rows anew, keeping the selected row and the scroll position. False, after telling the user,
    /// when saving failed: the change is then still in the document.
    bool RebuildList(bool resort, bool save);
    void UpdateRecordCounter();
    /// The first selected row, or -1.
    [[nodiscard]] int GetSelectedRow() const;
    /// Ends the dialog that a command has opened, if there is one, with Cancel.
    void CancelDialog();

    [[nodiscard]] static std::span<const CommandEntry<CQuillaryView>> Commands();

  protected:
    void changeEvent(QEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void resizeEvent(QResizeEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

  private:
    void OnOptions();
    void OnTop();
    void OnBottom();
    void UpdateOptions(CommandState& state) const;
    void UpdateTopAndBottom(CommandState& state) const;

    void SetUpHeaders();
    void BuildColumns();
    /// Widens the filler column to the client area's edge.
    void FitFiller();
    void StoreWidth(int column);
    /// Makes the cell current and its row the selected one; a row beyond the last one means the last.
    void SelectCell(int row, int column);

    CDocumentSession& m_session;
    CQuillaryDoc& m_doc;
    FrameWindow& m_frame;
    CRecordListModel m_model;
    CRecordHeader* m_header;
};

}  // namespace quillary
