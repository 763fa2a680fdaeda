// The user's habits, asked of the desktop once and handed to the rules that need them.
#pragma once

#include <cstdint>

namespace quillary {

enum class DateOrder : std::uint8_t { MonthDayYear, DayMonthYear, YearMonthDay };

class UserLocale {
  public:
    virtual ~UserLocale() = default;
    /// The order of numbers in a date.
    [[nodiscard]] virtual DateOrder Order() const = 0;
};

}  // namespace quillary
