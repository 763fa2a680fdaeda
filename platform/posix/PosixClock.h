// The system's clock in the user's time zone.
#pragma once

#include "db/Clock.h"

namespace quillary {

class PosixClock : public Clock {
  public:
    std::int32_t Today() const override;
    std::int32_t SecondsSinceMidnight() const override;
};

}  // namespace quillary
