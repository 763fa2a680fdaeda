// Today and now in the user's time zone; rules never ask the system themselves.
#pragma once

#include <cstdint>

namespace quillary {

class Clock {
  public:
    virtual ~Clock() = default;
    /// Days since 1 January 1904.
    [[nodiscard]] virtual std::int32_t Today() const = 0;
    /// Seconds since midnight.
    [[nodiscard]] virtual std::int32_t SecondsSinceMidnight() const = 0;
};

/// The first year of the clock's century, for example 2000.
[[nodiscard]] int CenturyOf(const Clock& clock);

}  // namespace quillary
