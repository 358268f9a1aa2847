#include "frame/fault.h"

#ifdef TIVLIB_FAULT_INJECTION
#include <cstdio>
#include <cstdlib>
#endif

namespace tiv::fault {

#ifdef TIVLIB_FAULT_INJECTION

namespace {
// Allocations still to pass before the armed one fails; 0 when nothing is armed.
long countdown = 0;
bool hit = false;
// Failures injected in this process; told on stderr at exit when TIV_FAULT_COUNT is set, so
// a sweep's number of failure points can be read off a test run.
long injected = 0;
struct InjectedReport {
  ~InjectedReport() {
    if (std::getenv("TIV_FAULT_COUNT") != nullptr)
      std::fprintf(stderr, "fault: %ld allocation failures injected\n", injected);
  }
} injected_report;
}  // namespace

void fail_allocation_at(long n) {
  countdown = n > 0 ? n : 0;
  hit = false;
}

bool allocation_failure_hit() { return hit; }

bool allocation_should_fail() {
  if (countdown == 0) return false;
  if (--countdown != 0) return false;
  hit = true;
  ++injected;
  return true;
}

#else

void fail_allocation_at(long) {}
bool allocation_failure_hit() { return false; }
bool allocation_should_fail() { return false; }

#endif

}  // namespace tiv::fault
