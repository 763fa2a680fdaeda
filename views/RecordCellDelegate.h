// Paints a cell of the record list: its text, or the image of a check box.
#pragma once

#include <QColor>
#include <QStyledItemDelegate>
#include <optional>

namespace quillary {

class CQuillaryDoc;
class CRecordListModel;

class CRecordCellDelegate : public QStyledItemDelegate {
  public:
    /// Left and right of a cell's text, on the average.
    static constexpr int kTextMargin = 3;

    CRecordCellDelegate(const CQuillaryDoc& doc, const CRecordListModel& model, QObject* parent)
        : QStyledItemDelegate(parent), m_doc(doc), m_model(model) {}

    /// The colour of every second row.
    void SetRowColor(const std::optional<QColor>& color) { m_rowColor = color; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Tells the text of a cell that is too narrow for it.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    [[nodiscard]] bool IsCheckBox(const QModelIndex& index) const;

    /// Where the text of a cell or a heading stands; the same in every row, of whatever colour.
    [[nodiscard]] static QRect TextPlace(const QRect& cell, int column, Qt::Alignment alignment);

    /// The height of a row in `font`.
    [[nodiscard]] static int RowHeight(const QFontMetrics& font);

  private:
    const CQuillaryDoc& m_doc;
    const CRecordListModel& m_model;
    std::optional<QColor> m_rowColor;
};

}  // namespace quillary
