// The process-wide timer table, for tests and the report.
#pragma once

#include <cstdint>

#include <tivlib/clock.h>

// A stopwatch. elapsed and stops wrap in 32 bits; start fields stay after a stop.
struct clock_timer {
  char name[80];           // at most 79 characters and a terminator
  int32_t start_seconds;   // seconds of the last start
  uint32_t start_millis;   // milliseconds of the last start, 0 to 999
  uint32_t elapsed;        // total of all measured spans in milliseconds
  int32_t stops;           // stops since the last reset
};

namespace tiv::clock {

// Timers opened so far (0 to CLOCK_TIMER_MAX); they never leave the table.
int32_t timer_count() noexcept;

}  // namespace tiv::clock
