// The colour of every second row of a list.
#pragma once

#include <QColor>
#include <cstdint>
#include <optional>

namespace quillary {

/// A preference's colour, 0x00BBGGRR. White means that no row is coloured: nullopt.
[[nodiscard]] std::optional<QColor> RowColor(std::int32_t preference);

/// The preference that stands for a colour.
[[nodiscard]] std::int32_t RowColorPreference(const QColor& color);

/// Black or white, whichever is easier to read on `background`.
[[nodiscard]] QColor TextColorOn(const QColor& background);

}  // namespace quillary
