// An appointment as an iCalendar object (RFC 5545), the form in which calendars exchange events.
#pragma once

#include <ctime>
#include <string>

namespace quillary {

struct Appointment;

/// UTF-8 with CR LF line ends. `uid` names the event for good; `stamp` is when it was made, in seconds since 1970.
/// Empty when there is not enough memory.
[[nodiscard]] std::string CalendarText(const Appointment& appointment, const std::string& uid, std::time_t stamp);

}  // namespace quillary
