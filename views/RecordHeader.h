// The headings of the record list: their texts line up with the cells below, and a heading's edge can be dragged.
#pragma once

#include <QHeaderView>
#include <functional>

namespace quillary {

class CRecordHeader : public QHeaderView {
  public:
    explicit CRecordHeader(QWidget* parent);

    /// Called while the user drags the edge of a column.
    std::function<void()> onDragging;
    /// Called once the user has let go of it, outside the mouse's event.
    std::function<void(int column)> onDragged;
    /// Called when the user double-clicks the right edge of a column.
    std::function<void(int column)> onFit;

    /// Called after a tap on a heading, outside the mouse's event. Neither a drag nor a double click of a heading's
    /// edge is one.
    std::function<void(int column)> onTap;

    /// Sets a width that is not the user's doing.
    void SetWidth(int column, int pixels);
    /// Marks the column by which the records are sorted.
    void ShowSortMark(int column, Qt::SortOrder order);

  protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int column) const override;
    [[nodiscard]] QSize sectionSizeFromContents(int column) const override;

  private:
    void Tap(int column);

    bool m_settingWidth = false;
    int m_draggedColumn = -1;
    bool m_isTapAgain = false;  // the double click that is being dealt with
};

}  // namespace quillary
