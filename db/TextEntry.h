// Reads dates, times, numbers and check boxes as a person or a table writes them, into the stored form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "db/UserLocale.h"

namespace quillary {

/// A year of three digits is how the record list writes one before 1000, and what a person leaves who has not typed the
/// fourth.
enum class ShortYears { Read, Refused };

/// Days since 1 January 1904. Accepts YYYY-MM-DD (whatever the order), March 07, 2004 (month names in any case), and
/// three numbers in `order` separated by "/", "." or "-". A year of two digits is put into `century` (2000 for 2026),
/// or refused when that is nullopt. Blanks at the ends are ignored. nullopt when it is no date.
[[nodiscard]] std::optional<std::int32_t> ParseDate(std::string_view text, DateOrder order, std::optional<int> century,
                                                    ShortYears shortYears = ShortYears::Read);

/// Seconds since midnight, whole minutes: HH:MM or HH:MM:SS, with or without am/pm in either case; seconds are dropped.
[[nodiscard]] std::optional<std::int32_t> ParseTime(std::string_view text);

/// "No Date", "No Time" and blank texts are none.
[[nodiscard]] bool IsNoDate(std::string_view text);
[[nodiscard]] bool IsNoTime(std::string_view text);

/// true/false, 1/0, yes/no in any case.
[[nodiscard]] std::optional<bool> ParseCheckBox(std::string_view text);

/// An optional "-", digits, at most one "." (a whole number: none), at least one digit.
[[nodiscard]] bool IsPlainNumber(std::string_view text);
[[nodiscard]] bool IsPlainInteger(std::string_view text);

}  // namespace quillary
