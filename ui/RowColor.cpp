#include "ui/RowColor.h"

#include <cmath>

#include "admin/Settings.h"

namespace quillary {

namespace {

// The part of light that an sRGB channel stands for (IEC 61966-2-1).
double Linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

}  // namespace

std::optional<QColor> RowColor(std::int32_t preference) {
    const std::int32_t color = preference & 0xFFFFFF;
    if (color == kNoRowColor) return std::nullopt;
    return QColor(color & 0xFF, color >> 8 & 0xFF, color >> 16);
}

std::int32_t RowColorPreference(const QColor& color) { return color.blue() << 16 | color.green() << 8 | color.red(); }

QColor TextColorOn(const QColor& background) {
    const double luminance =
        0.2126 * Linear(background.redF()) + 0.7152 * Linear(background.greenF()) + 0.0722 * Linear(background.blueF());
    // The contrast with black is (L + 0.05) / 0.05, that with white 1.05 / (L + 0.05) (WCAG 2).
    return (luminance + 0.05) * (luminance + 0.05) > 1.05 * 0.05 ? Qt::black : Qt::white;
}

}  // namespace quillary
