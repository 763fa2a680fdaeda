#include "integration/ItemText.h"

#include <algorithm>
#include <cmath>

#include "db/Utf.h"

namespace quillary {

std::string PlainLines(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        const bool isLineEnd = unit == u'\u0085' || unit == u'\u2028' || unit == u'\u2029';  // to some readers
        if (isLineEnd) {
            out += u'\n';
        } else if (unit == u'\n' || unit == u'\r') {
            out += u'\n';
            const char16_t other = unit == u'\n' ? u'\r' : u'\n';
            if (i + 1 < text.size() && text[i + 1] == other) ++i;
        } else if ((unit >= 0x20 && unit != 0x7F) || unit == u'\t') {
            out += unit;
        }
    }
    return WideToUtf8(out);
}

CivilDate DateOfDay(double day) {
    constexpr double kDaysTo1904 = 1462;
    static const double kFirst = *DateToDay({100, 1, 1});
    static const double kLast = *DateToDay({9999, 12, 31});
    return DayToDate(static_cast<std::int32_t>(std::clamp(std::floor(day) - kDaysTo1904, kFirst, kLast)));
}

}  // namespace quillary
