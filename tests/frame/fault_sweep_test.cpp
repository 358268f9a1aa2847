// Allocation-failure sweeps: every allocation of a scenario fails in turn, and each run must
// end without a crash, with the specified result and with its objects still closable.
#include <tivlib/heap.h>
#include <tivlib/queue.h>
#include <tivlib/stack.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

#include <functional>

#include "fault_sweep.h"
#include "frame/fault.h"
#include "frame_test_util.h"

#ifdef TIVLIB_FAULT_INJECTION

namespace tiv::test {
namespace {

// Runs scenario with the nth allocation failing, for n = 1, 2, ... until a run passes
// without hitting the failure; scenario gets told whether this run is the clean one.
void sweep(const std::function<void()>& scenario) {
  for (long n = 1; n < 1000; ++n) {
    const bool hit = tiv::test::fails_at(n, [&] { scenario(); });
    if (!hit) return;
  }
  FAIL() << "the scenario never ran clean";
}

using FaultSweep = InTempDir;

TEST_F(FaultSweep, ArenaOpenAllocateClose) {
  sweep([] {
    heap_id* id = heap_open(32, 1);
    if (id == nullptr) {
      EXPECT_NE(log_text().find("heap_open: out of space!"), std::string::npos);
      return;
    }
    int served = 0;
    for (int i = 0; i < 20; ++i)
      if (auto* p = static_cast<char*>(heap_allocate(id, 16)); p != nullptr) {
        p[15] = 1;
        ++served;
      }
    if (!tiv::fault::allocation_failure_hit()) {
      EXPECT_EQ(served, 20);
    }
    heap_close(id);
  });
}

TEST_F(FaultSweep, QueueOpenPostGetClose) {
  sweep([] {
    queue_handle* q = queue_open();
    if (q == nullptr) {
      EXPECT_NE(log_text().find("  queue_open: out of space!\n"), std::string::npos);
      return;
    }
    for (intptr_t v = 1; v <= 5; ++v) queue_post(q, v);
    if (tiv::fault::allocation_failure_hit()) {
      EXPECT_NE(log_text().find("  queue_post: out of space!\n  value has been lost!\n"),
                std::string::npos);
    }
    intptr_t last = 0, count = 0;
    for (intptr_t v; (v = queue_get(q)) != 0; ++count) {
      EXPECT_GT(v, last);  // order kept even when a value was lost
      last = v;
    }
    EXPECT_EQ(count, tiv::fault::allocation_failure_hit() ? 4 : 5);
    queue_close(q);
  });
}

TEST_F(FaultSweep, StackOpenPushPopClose) {
  sweep([] {
    stack_handle* s = stack_open();
    for (intptr_t v = 1; v <= 5; ++v) stack_push(s, v);
    intptr_t count = 0;
    while (stack_pop(s) != 0) ++count;
    if (s == nullptr) EXPECT_EQ(count, 0);
    else EXPECT_EQ(count, tiv::fault::allocation_failure_hit() ? 4 : 5);
    stack_close(s);
  });
}

TEST_F(FaultSweep, StringCopy) {
  sweep([] {
    char* copy = str_alloc("a\tb");
    if (copy != nullptr) {
      EXPECT_STREQ(copy, "a\tb");
    }
    heap_free(copy);
  });
}

TEST_F(FaultSweep, PutEnvironment) {
  sweep([] {
    const int32_t result = zv_putenv("TIV_FAULT_SWEEP=1");
    if (result == 0) EXPECT_STREQ(zv_getenv("TIV_FAULT_SWEEP", nullptr), "1");
    else EXPECT_EQ(result, -1);
  });
}

}  // namespace
}  // namespace tiv::test

#endif
