#include "views/RecordCellDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "db/QuillaryDoc.h"
#include "ui/CheckImage.h"
#include "ui/RowColor.h"
#include "ui/ToolTip.h"
#include "views/RecordListModel.h"

namespace quillary {

namespace {

constexpr int kFirstColumnMargin = 2;  // where a text begins
constexpr int kOtherMargin = 5;
constexpr int kRowPadding = 7;  // above and below a line of text, together

}  // namespace

bool CRecordCellDelegate::IsCheckBox(const QModelIndex& index) const {
    return !m_model.IsFiller(index.column()) &&
           m_doc.TypeOf(static_cast<std::size_t>(index.column())) == FieldType::Checkbox;
}

QRect CRecordCellDelegate::TextPlace(const QRect& cell, int column, Qt::Alignment alignment) {
    const int before = column == 0 ? kFirstColumnMargin : kOtherMargin;
    const int behind = 2 * kTextMargin - before;
    return alignment & Qt::AlignRight ? cell.adjusted(behind, 0, -before, 0) : cell.adjusted(before, 0, -behind, 0);
}

int CRecordCellDelegate::RowHeight(const QFontMetrics& font) { return font.height() + kRowPadding; }

void CRecordCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group = !(option.state & QStyle::State_Enabled)  ? QPalette::Disabled
                                       : !(option.state & QStyle::State_Active) ? QPalette::Inactive
                                                                                : QPalette::Active;
    const bool colored = m_rowColor && index.row() % 2 == 1 && !selected;
    if (selected) painter->fillRect(option.rect, option.palette.brush(group, QPalette::Highlight));
    if (colored) painter->fillRect(option.rect, *m_rowColor);
    if (m_model.IsFiller(index.column())) return;
    const QColor color = colored ? TextColorOn(*m_rowColor)
                                 : option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QString text = m_model.CellText(index.row(), index.column());
    if (IsCheckBox(index)) {
        painter->save();
        painter->setClipRect(option.rect, Qt::IntersectClip);
        PaintCheckImage(*painter, CheckImageRect(option.rect), text == QLatin1String("true"), color);
        painter->restore();
    } else if (!text.isEmpty()) {
        // In rows that the list colours itself numbers stand at the left, too.
        const Qt::Alignment alignment =
            colored ? Qt::AlignLeft | Qt::AlignVCenter : m_model.AlignmentOf(index.column());
        const QRect box = TextPlace(option.rect, index.column(), alignment);
        painter->setPen(color);
        painter->setFont(option.font);
        painter->drawText(box, static_cast<int>(alignment) | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(text, option.textElideMode, box.width()));
    }
    if (option.state & QStyle::State_HasFocus) {
        painter->setPen(QPen(color, 1, Qt::DotLine));
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
}

bool CRecordCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
    const bool cut = index.isValid() && sizeHint(option, index).width() > view->visualRect(index).width();
    QToolTip::showText(event->globalPos(),
                       cut ? PlainToolTip(m_model.CellText(index.row(), index.column())) : QString(), view);
    return true;
}

QSize CRecordCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int content = IsCheckBox(index)
                            ? kCheckImageSize
                            : option.fontMetrics.horizontalAdvance(m_model.CellText(index.row(), index.column()));
    return {content + 2 * kTextMargin + 1, RowHeight(option.fontMetrics)};
}

}  // namespace quillary
