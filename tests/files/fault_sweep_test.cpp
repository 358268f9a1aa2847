// Allocation failures at every step of opening, listing and timing: codes stay as specified
// and every object stays closable.
#ifdef TIVLIB_FAULT_INJECTION

#include <gtest/gtest.h>

#include <tivlib/clock.h>
#include <tivlib/fio.h>
#include <tivlib/heap.h>

#include "fault_sweep.h"
#include "frame/fault.h"
#include "files_test_util.h"

namespace tiv::test {
namespace {

using FaultSweep = InTempDir;

TEST_F(FaultSweep, OpenWriteReadClose) {
  bool completed = false;
  for (long n = 1; n < 20 && !completed; ++n) {
    fio_handle* h = nullptr;
    const bool hit =
        tiv::test::fails_at(n, [&] { h = fio_open(nullptr, "Sweep.bin", FIO_WRITE | FIO_HEADER); });
    if (n == 1) {
      EXPECT_EQ(h, nullptr);  // no handle: the stream is closed again
      continue;
    }
    ASSERT_NE(h, nullptr) << n;
    EXPECT_STREQ(fio_filename(h), hit ? "????" : "sweep.bin") << n;
    EXPECT_EQ(fio_putlong(h, 42), 0);
    EXPECT_EQ(fio_close(h), 0);
    EXPECT_EQ(read_file("sweep.bin").size(), 20u);
    completed = !hit;
  }
  EXPECT_TRUE(completed);
}

TEST_F(FaultSweep, Listdir) {
  for (int i = 0; i < 12; ++i) write_file("e" + std::to_string(i), "");
  bool completed = false;
  for (long n = 1; n < 20 && !completed; ++n) {
    fio_dir_entry* list = reinterpret_cast<fio_dir_entry*>(8);
    int32_t count = 9;
    int32_t rc{};
    const bool hit =
        tiv::test::fails_at(n, [&] { rc = fio_listdir(nullptr, nullptr, 0, &list, &count); });
    if (hit) {
      EXPECT_EQ(rc, n == 1 ? 0 : -1) << n;  // no first room gives 0, no growth -1
      EXPECT_EQ(list, nullptr);
      EXPECT_EQ(count, 0);
    } else {
      EXPECT_EQ(rc, 0);
      EXPECT_EQ(count, 14);
      heap_free(list);
      completed = true;
    }
  }
  EXPECT_TRUE(completed);
}

TEST_F(FaultSweep, TimerOpen) {
  tiv::fault::fail_allocation_at(1);
  clock_timer* t = clock_timeropen("lost");
  EXPECT_TRUE(tiv::fault::allocation_failure_hit());
  tiv::fault::fail_allocation_at(0);
  EXPECT_EQ(t, nullptr);
  clock_timerstart(t);
  clock_timerstop(t);
  EXPECT_EQ(clock_timerget(t), 0);
  EXPECT_NE(clock_timeropen("kept"), nullptr);
}

}  // namespace
}  // namespace tiv::test

#endif  // TIVLIB_FAULT_INJECTION
