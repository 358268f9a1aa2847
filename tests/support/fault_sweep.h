// Test support for allocation-failure sweeps, in builds with TIVLIB_FAULT_INJECTION.
#pragma once

#include "frame/fault.h"

namespace tiv::test {

// Runs step with the nth allocation from now failing, disarms the failure afterwards and
// tells whether it was hit, i.e. whether step needed more than n - 1 allocations.
template <class Step>
bool fails_at(long n, Step&& step) {
  tiv::fault::fail_allocation_at(n);
  step();
  const bool hit = tiv::fault::allocation_failure_hit();
  tiv::fault::fail_allocation_at(0);
  return hit;
}

}  // namespace tiv::test
