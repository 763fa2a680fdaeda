#include "views/RecordHeader.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "views/RecordCellDelegate.h"

namespace quillary {

namespace {

constexpr int kSortMarkWidth = 9;
constexpr int kSortMarkMargin = 2;
constexpr int kSmallestDraggedWidth = 10;  // a narrower column is hard to get hold of again

}  // namespace

CRecordHeader::CRecordHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setHighlightSections(false);
    setSectionsClickable(true);
    setMinimumSectionSize(kSmallestDraggedWidth);
    connect(this, &QHeaderView::sectionResized, this, [this](int column) {
        if (m_settingWidth) return;
        m_draggedColumn = column;
        if (onDragging) onDragging();
    });
    connect(this, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
        if (onFit) onFit(column);
    });
    connect(this, &QHeaderView::sectionClicked, this, &CRecordHeader::Tap);
    connect(this, &QHeaderView::sectionDoubleClicked, this, [this] { m_isTapAgain = true; });
}

void CRecordHeader::SetWidth(int column, int pixels) {
    const QScopedValueRollback setting(m_settingWidth, true);
    resizeSection(column, pixels);
}

void CRecordHeader::ShowSortMark(int column, Qt::SortOrder order) {
    setSortIndicatorShown(true);
    setSortIndicator(column, order);
}

void CRecordHeader::Tap(int column) {
    if (column < 0 || !onTap || QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier)) return;
    // Later, as a drag's end: sorting saves.
    QMetaObject::invokeMethod(
        this, [this, column] { onTap(column); }, Qt::QueuedConnection);
}

// The second of two quick taps is one too; of an edge there are only drags and double clicks.
void CRecordHeader::mouseDoubleClickEvent(QMouseEvent* event) {
    QHeaderView::mouseDoubleClickEvent(event);
    if (std::exchange(m_isTapAgain, false)) mousePressEvent(event);
}

void CRecordHeader::mouseReleaseEvent(QMouseEvent* event) {
    const int marked = sortIndicatorSection();
    const Qt::SortOrder order = sortIndicatorOrder();
    QHeaderView::mouseReleaseEvent(event);
    setSortIndicator(marked, order);  // the toolkit has turned it, whatever comes of the tap
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
    const bool isFiller = column == count() - 1;
    if (isFiller) option.state &= ~(QStyle::State_Sunken | QStyle::State_MouseOver);  // nothing to be tapped
    painter->save();
    painter->setClipRect(rect);
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    painter->restore();
    QRect place = rect;
    if (option.sortIndicator != QStyleOptionHeader::None) {
        QStyleOptionHeaderV2 mark = option;
        mark.rect.setLeft(rect.right() - kSortMarkWidth);
        mark.rect.adjust(0, (rect.height() - kSortMarkWidth) / 2, -kSortMarkMargin,
                         -(rect.height() - kSortMarkWidth) / 2);
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &mark, painter, this);
        place.setRight(mark.rect.left());
    }
    QRect text = CRecordCellDelegate::TextPlace(place, column, option.textAlignment);
    // A heading that all but fits gives up its margins before it is cut.
    const int spare = place.width() - fontMetrics().horizontalAdvance(option.text);
    if (spare >= 0 && spare < place.width() - text.width()) text = place.adjusted(spare / 2, 0, 0, 0);
    painter->drawText(text, static_cast<int>(option.textAlignment) | Qt::TextSingleLine,
                      fontMetrics().elidedText(option.text, Qt::ElideRight, text.width()));
}

QSize CRecordHeader::sectionSizeFromContents(int column) const {
    const QString text = model()->headerData(column, orientation(), Qt::DisplayRole).toString();
    return {fontMetrics().horizontalAdvance(text) + 2 * CRecordCellDelegate::kTextMargin + 1,
            CRecordCellDelegate::RowHeight(fontMetrics()) + 2};
}

}  // namespace quillary
