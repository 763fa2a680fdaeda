#include "views/RecordHeader.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <utility>

#include "views/RecordCellDelegate.h"

namespace quillary {

namespace {

constexpr int kSmallestDraggedWidth = 10;  // a narrower column is hard to get hold of again

}  // namespace

CRecordHeader::CRecordHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setHighlightSections(false);
    setSectionsClickable(false);
    setMinimumSectionSize(kSmallestDraggedWidth);
    connect(this, &QHeaderView::sectionResized, this, [this](int column) {
        if (m_settingWidth) return;
        m_draggedColumn = column;
        if (onDragging) onDragging();
    });
}

void CRecordHeader::SetWidth(int column, int pixels) {
    const QScopedValueRollback setting(m_settingWidth, true);
    resizeSection(column, pixels);
}

void CRecordHeader::mouseReleaseEvent(QMouseEvent* event) {
    QHeaderView::mouseReleaseEvent(event);
    const int column = std::exchange(m_draggedColumn, -1);
    if (column < 0 || !onDragged) return;
    // Later, as a message about a failed save must not come while the mouse's event is still on its way.
    QMetaObject::invokeMethod(
        this, [this, column] { onDragged(column); }, Qt::QueuedConnection);
}

void CRecordHeader::paintSection(QPainter* painter, const QRect& rect, int column) const {
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.rect = rect;
    initStyleOptionForIndex(&option, column);
    painter->save();
    painter->setClipRect(rect);
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    painter->restore();
    const QRect text = rect.adjusted(CRecordCellDelegate::kTextMargin, 0, -CRecordCellDelegate::kTextMargin, 0);
    painter->drawText(text, static_cast<int>(option.textAlignment) | Qt::TextSingleLine,
                      fontMetrics().elidedText(option.text, Qt::ElideRight, text.width()));
}

QSize CRecordHeader::sectionSizeFromContents(int column) const {
    const QString text = model()->headerData(column, orientation(), Qt::DisplayRole).toString();
    return {fontMetrics().horizontalAdvance(text) + 2 * CRecordCellDelegate::kTextMargin + 1,
            CRecordCellDelegate::RowHeight(fontMetrics()) + 2};
}

}  // namespace quillary
