// The wall clock to the millisecond and local-time conversions.
#pragma once

#include <cstdint>
#include <ctime>

namespace tiv::platform {

struct WallTime {
  std::int64_t seconds;  // since 1970-01-01 00:00:00 UTC
  std::int32_t millis;   // 0 to 999
};

// The wall clock (not monotonic: it follows changes of the system time).
WallTime wall_now() noexcept;

// Breaks a time down into local time; false when the conversion fails.
bool to_local(std::time_t value, std::tm& out) noexcept;

// The time of a local moment given by second, minute, hour, day, month and year of `fields`
// (out-of-range fields carry over). Daylight saving is left to the time-zone rules of that
// moment (tm_isdst = -1). Stores weekday and yearday in `fields`; the other fields keep
// their values. False when the moment cannot be represented.
bool from_local(std::tm& fields, std::time_t& out) noexcept;

}  // namespace tiv::platform
