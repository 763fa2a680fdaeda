// One appointment as an export hands it to the store of the user's calendar.
#pragma once

#include <string>

namespace quillary {

/// Dates count days since 30 December 1899, their fraction the time of day; all of it in local time of no zone.
struct Appointment {
    double date = 0;          // whole days
    bool isDateRead = false;  // false: the record has no readable date, and `date` is 0
    double startTime = 0;     // a fraction of the day; 0 when there is none
    double endTime = 0;
    std::u16string subject;
    std::u16string body;  // a line a field, with "\n\r" between them

    [[nodiscard]] bool IsAllDay() const { return startTime == 0 && endTime == 0; }
};

}  // namespace quillary
