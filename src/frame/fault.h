// Fault injection for tests (built in only with TIVLIB_FAULT_INJECTION).
//
// fail_allocation_at(n) makes the nth allocation from now through heap_malloc, heap_calloc,
// heap_realloc or str_alloc fail once (n counts from 1; 0 switches injection off).
// allocation_failure_hit() tells whether that failure has happened since the last arming.
// Without TIVLIB_FAULT_INJECTION both compile to nothing and the allocators carry no check.
#pragma once

namespace tiv::fault {

void fail_allocation_at(long n);
bool allocation_failure_hit();

// Called by the allocators: true when this allocation must fail.
bool allocation_should_fail();

}  // namespace tiv::fault
