#include "frame/fault.h"

namespace tiv::fault {

#ifdef TIVLIB_FAULT_INJECTION

namespace {
// Allocations still to pass before the armed one fails; 0 when nothing is armed.
long countdown = 0;
bool hit = false;
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
  return true;
}

#else

void fail_allocation_at(long) {}
bool allocation_failure_hit() { return false; }
bool allocation_should_fail() { return false; }

#endif

}  // namespace tiv::fault
