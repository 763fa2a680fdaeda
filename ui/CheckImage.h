// The image of a check box in the record list, drawn in the colour of the text around it so that it fits every palette
// and scale.
#pragma once

class QColor;
class QPainter;
class QRect;

namespace quillary {

inline constexpr int kCheckImageSize = 11;

/// Where the image stands in a cell, and where a click toggles it: in the middle.
[[nodiscard]] QRect CheckImageRect(const QRect& cell);

void PaintCheckImage(QPainter& painter, const QRect& image, bool checked, const QColor& color);

}  // namespace quillary
