// A short list that a person makes in place: rows are added, removed and moved, and named in the first column.
#pragma once

#include <QPointer>
#include <QStandardItemModel>
#include <QTableView>
#include <functional>

class QLineEdit;

namespace quillary {

class CRowListView : public QTableView {
  public:
    enum class Tap { Selects, EditsName };
    /// Without headings there is one column. `nameOfEditor` is what a screen reader says of the editor of a name.
    CRowListView(const QStringList& headings, QString nameOfEditor, Tap tap);

    struct Row {
        QStringList texts;  // one a column, the name first
        QVariant value;     // what the row stands for
    };
    void Append(const Row& row);
    /// Behind the selected row, or at the end when none is selected, and opens its name for editing.
    void Insert(const Row& row);
    /// All selected rows; then selects the one before them.
    void RemoveSelected();
    /// The first selected row, one place up (-1) or down (1); nothing at the ends.
    void MoveSelected(int by);
    void Select(int row, int column = 0);
    void EditName(int row);
    /// Ends the editing of a name; it keeps what the editor holds.
    void FinishEditing();
    /// Whether a name is being edited and the editor holds another one.
    [[nodiscard]] bool IsEditingAnother() const;

    [[nodiscard]] int RowCount() const { return m_model.rowCount(); }
    [[nodiscard]] QString Text(int row, int column = 0) const { return m_model.item(row, column)->text(); }
    void SetText(int row, int column, const QString& text) { m_model.item(row, column)->setText(text); }
    [[nodiscard]] QVariant Value(int row) const { return m_model.item(row)->data(); }
    /// The first one, or -1.
    [[nodiscard]] int SelectedRow() const;

    std::function<void()> onSelection;
    /// The Insert key, and Return in an empty list.
    std::function<void()> onInsert;
    /// What the list shows when it is empty.
    void SetHint(const QString& hint);
    /// A click, Return or the space bar in a column behind the first.
    std::function<void(int row)> onOpen;
    /// Where a menu was asked for, over a row, which is then selected. With Tap::Selects only.
    std::function<void(const QPoint& global)> onMenu;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    class NameDelegate;

    void SetUp(const QStringList& headings);
    void FitRows();
    void FitColumns();
    void OnClick(const QModelIndex& cell);
    void Open(const QModelIndex& cell);
    void InsertAt(int at, const Row& row);
    void AskForMenu(const QPoint& inViewport);

    QStandardItemModel m_model;
    QString m_nameOfEditor;
    QString m_hint;
    Tap m_tap;
    QPointer<QLineEdit> m_editor;  // of a name, the last one that was opened
};

}  // namespace quillary
