#include "views/RecordFormLayout.h"

#include <QToolButton>
#include <algorithm>

#include "ui/QuillaryDialog.h"
#include "views/FieldLabel.h"
#include "views/RecordEditor.h"

namespace quillary {

namespace {

// In pixels, as on the handheld's screen; what a large font needs is added.
constexpr int kLabelLeft = 2;
constexpr int kLabelWidth = 73;
constexpr int kLabelGap = 4;
constexpr int kRightMargin = 18;  // the scroll bar's place
constexpr int kRowGap = 2;
constexpr int kLineHeight = kFormRowStep - kRowGap;
constexpr int kLinePadding = 6;  // of an editor, around its text
constexpr int kTextHeight = 69;
constexpr int kTextLines = 3;
constexpr int kCheckTop = 2;
constexpr int kHandheldWidth = 240;
constexpr int kActionWidth = 29;
constexpr int kActionPlace = 39;  // by which the editor is narrower
constexpr int kWideMargin = 9;    // as the other parts of the page have it

/// Puts a row at `y`; its height.
int Place(const RecordFormRow& row, const QRect& column, int labelWidth, int y, const QFontMetrics& metrics) {
    const int lineHeight = std::max(kLineHeight, metrics.height() + kLinePadding);
    const int labelTop = (lineHeight - metrics.height()) / 2;
    int height = lineHeight;
    if (row.type == FieldType::Text) {
        height = std::max(kTextHeight, kTextLines * metrics.lineSpacing() + 2 * kLinePadding);
    }
    row.label->setGeometry(column.left(), y + labelTop, labelWidth, row.label->HeightFor(labelWidth));
    QRect place(column.left() + labelWidth + kLabelGap, y, 0, height);
    place.setRight(column.right());
    if (row.type == FieldType::Checkbox) place.setTop(y + kCheckTop);
    if (row.action) {
        const int width = std::max(kActionWidth, metrics.height() + kLinePadding);
        row.action->setGeometry(place.right() + 1 - width, y, width, height);
        place.setRight(place.right() - width - (kActionPlace - kActionWidth));
    }
    row.editor->Widget().setGeometry(place);
    return std::max(height, labelTop + row.label->height());
}

}  // namespace

int LayOutRows(std::span<const RecordFormRow> rows, int formWidth, int scrollBarWidth, const QFontMetrics& metrics) {
    // Whether the scroll bar shows makes no difference to the layout.
    const int scrollBar = std::max(kRightMargin, scrollBarWidth);
    const int outside = std::max(0, formWidth - CQuillaryDialog::ComfortableWidth(metrics)) / 2;
    const int margin = formWidth > kHandheldWidth ? kWideMargin : kLabelLeft;
    QRect column(outside + margin, 0, 0, 0);
    column.setRight(formWidth - 1 - std::max(outside + margin, scrollBar));
    int labelWidth = 0;
    for (const RecordFormRow& row : rows) labelWidth = std::max(labelWidth, row.label->NaturalWidth());
    labelWidth = std::max(std::min(labelWidth, column.width() * 3 / 10), kLabelWidth);
    int y = kFormTop;
    for (const RecordFormRow& row : rows) y += Place(row, column, labelWidth, y, metrics) + kRowGap;
    return y;
}

}  // namespace quillary
