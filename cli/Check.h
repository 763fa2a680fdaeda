// Finds everything in which a file departs from the database format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/AnsiText.h"

namespace quillary {

struct Departure {
    std::uint64_t offset;
    std::string problem;  // UTF-8, one line
};

/// By offset; beyond the first 10,000 only their number is told, by a last one. Nothing in `image` is trusted.
///
/// No departures are: what the format carries or reserves, dirty bits, format versions below 3, a file without an
/// application-info block, bytes in a text that equal an entry number and hide nothing. Nor are values that their field
/// cannot read, as changing a field's type lawfully leaves such.
[[nodiscard]] std::vector<Departure> CheckImage(std::string_view image, const AnsiText& page = AnsiText::Windows1252());

}  // namespace quillary
