#include "platform/posix/PosixClock.h"

#include <chrono>
#include <ctime>

namespace quillary {

namespace {

std::tm LocalNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

}  // namespace

std::int32_t PosixClock::Today() const {
    using namespace std::chrono;
    const std::tm local = LocalNow();
    const sys_days today = year(local.tm_year + 1900) / month(static_cast<unsigned>(local.tm_mon + 1)) /
                           day(static_cast<unsigned>(local.tm_mday));
    constexpr sys_days kFirstDay = year(1904) / January / 1;
    return static_cast<std::int32_t>((today - kFirstDay).count());
}

std::int32_t PosixClock::SecondsSinceMidnight() const {
    const std::tm local = LocalNow();
    // A leap second would be a second of the next day.
    return local.tm_hour * 3600 + local.tm_min * 60 + (local.tm_sec < 60 ? local.tm_sec : 59);
}

}  // namespace quillary
