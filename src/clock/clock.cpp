// Time values, German date and time texts, and calendar fields.
#include <cstdio>
#include <cstring>
#include <ctime>

#include <tivlib/clock.h>

#include "platform/wall_clock.h"

static_assert(sizeof(clock_fields) == 8 * sizeof(int32_t));

namespace tiv::clock {
namespace {

constexpr const char* kMonthNames[12] = {"Januar",  "Februar", "Maerz",     "April",
                                         "Mai",     "Juni",    "Juli",      "August",
                                         "September", "Oktober", "November", "Dezember"};

constexpr std::size_t kTextSize = 64;  // room of the date and time texts

// The local time of a value (0 meaning now). A value the conversion rejects gives all
// fields 0, the same fields clock_makestruct gives, so the texts stay well-formed.
std::tm local_fields(int32_t value) {
  const std::time_t t = value == 0 ? static_cast<std::time_t>(platform::wall_now().seconds)
                                   : static_cast<std::time_t>(value);
  std::tm out{};
  if (!platform::to_local(t, out)) out = std::tm{};
  return out;
}

}  // namespace
}  // namespace tiv::clock

// Seconds since 1970 in 32 bits (the value wraps after January 2038).
extern "C" int32_t clock_value(void) noexcept {
  return static_cast<int32_t>(tiv::platform::wall_now().seconds);
}

extern "C" const char* clock_date(int32_t value, int32_t format) noexcept {
  static char text[tiv::clock::kTextSize];
  const std::tm t = tiv::clock::local_fields(value);
  const int month = t.tm_mon >= 0 && t.tm_mon < 12 ? t.tm_mon : 0;
  if (format == 0)
    std::snprintf(text, sizeof text, "%02d.%02d.%02d", t.tm_mday, t.tm_mon + 1, t.tm_year);
  else
    std::snprintf(text, sizeof text, "%02d. %s %4d", t.tm_mday, tiv::clock::kMonthNames[month],
                  t.tm_year + 1900);
  return text;
}

extern "C" const char* clock_time(int32_t value, int32_t format) noexcept {
  static char text[tiv::clock::kTextSize];
  const std::tm t = tiv::clock::local_fields(value);
  if (format == 0)
    std::snprintf(text, sizeof text, "%02d:%02d", t.tm_hour, t.tm_min);
  else
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", t.tm_hour, t.tm_min, t.tm_sec);
  return text;
}

extern "C" void clock_makestruct(int32_t value, clock_fields* fields) noexcept {
  if (fields == nullptr) return;
  const std::time_t t = value == 0 ? static_cast<std::time_t>(tiv::platform::wall_now().seconds)
                                   : static_cast<std::time_t>(value);
  std::tm l{};
  if (!tiv::platform::to_local(t, l)) {
    *fields = clock_fields{};
    return;
  }
  *fields = clock_fields{l.tm_sec, l.tm_min, l.tm_hour, l.tm_mday,
                         l.tm_mon, l.tm_year, l.tm_wday, l.tm_yday};
}

// Daylight saving is resolved by the time-zone rules of the local moment itself; for the
// repeated hour at the end of summer time the system's choice stands.
extern "C" int32_t clock_makevalue(clock_fields* fields) noexcept {
  if (fields == nullptr) return -1;
  std::tm t{};
  t.tm_sec = fields->second;
  t.tm_min = fields->minute;
  t.tm_hour = fields->hour;
  t.tm_mday = fields->day;
  t.tm_mon = fields->month;
  t.tm_year = fields->year;
  std::time_t value;
  if (!tiv::platform::from_local(t, value)) return -1;
  fields->weekday = t.tm_wday;
  fields->yearday = t.tm_yday;
  if (value < INT32_MIN || value > INT32_MAX) return -1;
  return static_cast<int32_t>(value);
}
