// Wall clock and local time through clock_gettime, localtime_r and mktime.
#include "platform/wall_clock.h"

#include <cerrno>
#include <time.h>

namespace tiv::platform {

WallTime wall_now() noexcept {
  timespec t{};
  ::clock_gettime(CLOCK_REALTIME, &t);
  return {static_cast<std::int64_t>(t.tv_sec), static_cast<std::int32_t>(t.tv_nsec / 1000000)};
}

bool to_local(std::time_t value, std::tm& out) noexcept {
  return ::localtime_r(&value, &out) != nullptr;
}

bool from_local(std::tm& fields, std::time_t& out) noexcept {
  std::tm work = fields;
  work.tm_isdst = -1;
  work.tm_wday = -1;  // mktime leaves it untouched on failure
  errno = 0;
  const std::time_t value = ::mktime(&work);
  if (value == static_cast<std::time_t>(-1) && work.tm_wday == -1) return false;
  fields.tm_wday = work.tm_wday;
  fields.tm_yday = work.tm_yday;
  out = value;
  return true;
}

}  // namespace tiv::platform
