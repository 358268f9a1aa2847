// Named stopwatches and their report.
#include "clock/timers.h"

#include <charconv>
#include <cstdio>
#include <cstring>

#include <tivlib/heap.h>

#include "platform/files.h"
#include "platform/wall_clock.h"

namespace tiv::clock {
namespace {

// Handles enter in opening order and never leave.
clock_timer* g_table[CLOCK_TIMER_MAX];
int32_t g_count = 0;

// Milliseconds as seconds with three decimals, always with a point whatever the locale.
void seconds_text(uint32_t millis, char (&out)[32]) {
  const auto r = std::to_chars(out, out + sizeof out - 1, static_cast<double>(millis) * 0.001,
                               std::chars_format::fixed, 3);
  *r.ptr = '\0';
}

constexpr const char* kRule = "   -%15s-|-%7s-|-%9s\n";

}  // namespace

int32_t timer_count() noexcept { return g_count; }

}  // namespace tiv::clock

extern "C" clock_timer* clock_timeropen(const char* name) noexcept {
  using tiv::clock::g_count;
  if (g_count >= CLOCK_TIMER_MAX) return nullptr;
  auto* t = static_cast<clock_timer*>(heap_malloc(sizeof(clock_timer)));
  if (t == nullptr) return nullptr;
  const std::size_t n = name ? strnlen(name, CLOCK_NAME_MAX) : 0;
  if (n) std::memcpy(t->name, name, n);
  t->name[n] = '\0';
  t->start_seconds = 0;
  t->start_millis = 0;
  t->elapsed = 0;
  t->stops = 0;
  tiv::clock::g_table[g_count++] = t;
  return t;
}

extern "C" void clock_timerreset(clock_timer* timer) noexcept {
  if (timer == nullptr) return;
  timer->start_seconds = 0;
  timer->start_millis = 0;
  timer->elapsed = 0;
  timer->stops = 0;
}

extern "C" void clock_timerstart(clock_timer* timer) noexcept {
  if (timer == nullptr) return;
  const auto now = tiv::platform::wall_now();
  timer->start_seconds = static_cast<int32_t>(now.seconds);
  timer->start_millis = static_cast<uint32_t>(now.millis);
}

// Adds the span since the last start (from 0 seconds without one); the start stays, so a
// second stop adds the whole span again. 32-bit arithmetic that wraps.
extern "C" void clock_timerstop(clock_timer* timer) noexcept {
  if (timer == nullptr) return;
  const auto now = tiv::platform::wall_now();
  const uint32_t span = (static_cast<uint32_t>(now.seconds) - static_cast<uint32_t>(timer->start_seconds)) * 1000u -
                        timer->start_millis + static_cast<uint32_t>(now.millis);
  timer->elapsed += span;
  timer->stops = static_cast<int32_t>(static_cast<uint32_t>(timer->stops) + 1u);
}

extern "C" int32_t clock_timerget(const clock_timer* timer) noexcept {
  return timer ? static_cast<int32_t>(timer->elapsed) : 0;
}

extern "C" void clock_timertable(const char* filename, int32_t append) noexcept {
  std::FILE* f = tiv::platform::open_file(filename, append == 1 ? "at" : "wt");
  if (f == nullptr) return;
  char date[64];
  std::snprintf(date, sizeof date, "%s", clock_date(0, 0));
  std::fprintf(f, "   Zeitmessung vom %s, %s\n\n", date, clock_time(0, 1));
  if (tiv::clock::g_count == 0) {
    std::fputs("keine Timer vorhanden.", f);
  } else {
    std::fprintf(f, "    %15s | %7s | %9s\n", "   Timername", " Starts", " Sekunden");
    std::fprintf(f, tiv::clock::kRule, "---------------", "-------", "---------");
    for (int32_t i = 0; i < tiv::clock::g_count; ++i) {
      const clock_timer* t = tiv::clock::g_table[i];
      char seconds[32];
      tiv::clock::seconds_text(t->elapsed, seconds);
      std::fprintf(f, "    %15s | %7d | %9s\n", t->name, static_cast<int>(t->stops), seconds);
      std::fprintf(f, tiv::clock::kRule, "---------------", "-------", "---------");
    }
  }
  std::fclose(f);
}
