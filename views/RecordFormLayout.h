// Where the rows of the record form stand: the label, the editor and the action button of each field.
#pragma once

#include <QFontMetrics>
#include <memory>
#include <span>

#include "db/FieldType.h"

class QToolButton;

namespace quillary {

class CFieldLabel;
class CRecordEditor;

struct RecordFormRow {
    FieldType type;
    std::unique_ptr<CRecordEditor> editor;
    CFieldLabel* label;
    QToolButton* action;  // null for a type without one
};

inline constexpr int kFormTop = 3;       // above the first row, in pixels
inline constexpr int kFormRowStep = 25;  // from one row of a single line to the next, with a small font

/// Puts the rows below each other into a form of that width, whose vertical scroll bar takes `scrollBarWidth` where it
/// shows. Returns how high they are together.
[[nodiscard]] int LayOutRows(std::span<const RecordFormRow> rows, int formWidth, int scrollBarWidth,
                             const QFontMetrics& metrics);

}  // namespace quillary
