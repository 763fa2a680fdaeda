// Finds everything in which a file departs from the database format.
#pragma once

#include <string_view>

#include "cli/Departures.h"
#include "cli/Progress.h"
#include "db/AnsiText.h"

namespace quillary {

/// Hands every departure to `take` while it goes: first, by offset, those of header, record list and block, then those
/// of each record in the order of the list. `progress` counts records. Nothing in `image` is trusted.
///
/// No departures are: what the format carries or reserves, dirty bits, format versions below 3, a file without an
/// application-info block, bytes in a text that equal an entry number and hide nothing. Nor are values that their field
/// cannot read and operators that its type lacks, as changing a field's type lawfully leaves such.
void CheckImage(std::string_view image, const AnsiText& page, Progress& progress, TakeDeparture take);

}  // namespace quillary
