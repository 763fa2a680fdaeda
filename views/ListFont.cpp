#include "views/ListFont.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <algorithm>

namespace quillary {

namespace {

constexpr qreal kDigitWidth = 6.3;  // ten digits of a date and the margins of the cell are 70 pixels
constexpr int kPixelsLess = 1;
constexpr int kNarrowest = 85;  // percent of the letters' usual width; below it they are hard to read

qreal DigitWidth(const QFont& font) { return QFontMetricsF(font).horizontalAdvance(QLatin1Char('0')); }

}  // namespace

QFont ListFont(const QFont& font) {
    QFont narrow = font;
    if (DigitWidth(narrow) <= kDigitWidth) return narrow;
    narrow.setPixelSize(QFontInfo(font).pixelSize() - kPixelsLess);
    const auto stretch = static_cast<int>(100 * kDigitWidth / DigitWidth(narrow));
    if (stretch < 100) narrow.setStretch(std::max(stretch, kNarrowest));
    return narrow;
}

}  // namespace quillary
