// A list of which any number of entries can be picked: a click or the space bar picks one, or lets it go again.
#pragma once

#include <QListWidget>
#include <vector>

namespace quillary {

/// The selected entries are the picked ones. Each shows a check box and, when there are several, the place in which it
/// was picked. With Shift, a click picks all from the last one on; Ctrl+A picks all.
class CPickList : public QListWidget {
  public:
    explicit CPickList(QWidget* parent = nullptr);

    /// The rows, in the order in which they were picked.
    [[nodiscard]] const std::vector<int>& Picked() const { return m_picked; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

  protected:
    /// Where the page that it stands on scrolls too, that follows.
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

  private:
    [[nodiscard]] QSize HeightOf(int rows) const;

    std::vector<int> m_picked;
};

}  // namespace quillary
