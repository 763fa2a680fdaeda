#include "db/Clock.h"

#include "db/FieldValue.h"

namespace quillary {

int CenturyOf(const Clock& clock) {
    const int year = DayToDate(clock.Today()).year;
    return year - year % 100;
}

}  // namespace quillary
