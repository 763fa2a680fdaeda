// What the texts of appointments and contacts have in common.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "db/FieldValue.h"

namespace quillary {

/// UTF-8 with every line end, CR LF, LF CR or either alone, as LF, and without the other control characters but tabs,
/// which neither iCalendar nor vCard can hold.
[[nodiscard]] std::string PlainLines(std::u16string_view text);

/// Whole days since 30 December 1899; outside the years 100 to 9999 the nearest day inside.
[[nodiscard]] CivilDate DateOfDay(double day);

}  // namespace quillary
