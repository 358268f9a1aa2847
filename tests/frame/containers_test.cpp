// The queue and the stack of opaque words.
#include <tivlib/queue.h>
#include <tivlib/stack.h>

#include "frame/fault.h"
#include "frame_test_util.h"

namespace tiv::test {
namespace {

TEST(Queue, FirstInFirstOutAndEmptyGivesZero) {
  queue_handle* q = queue_open();
  ASSERT_NE(q, nullptr);
  EXPECT_EQ(queue_get(q), 0);
  queue_post(q, 1);
  queue_post(q, 2);
  EXPECT_EQ(queue_look(q), 1);
  EXPECT_EQ(queue_get(q), 1);
  EXPECT_EQ(queue_get(q), 2);
  EXPECT_EQ(queue_get(q), 0);
  EXPECT_EQ(queue_look(q), 0);
  queue_post(q, 3);  // the stale tail is not used after the queue ran empty
  queue_post(q, 4);
  EXPECT_EQ(queue_get(q), 3);
  EXPECT_EQ(queue_get(q), 4);
  queue_post(q, 5);
  queue_clear(q);
  EXPECT_EQ(queue_get(q), 0);
  queue_close(q);
}

TEST(Stack, LastInFirstOutAndNilIsHarmless) {
  stack_handle* s = stack_open();
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(stack_pop(s), 0);
  stack_push(s, 1);
  stack_push(s, 2);
  EXPECT_EQ(stack_get(s), 2);
  EXPECT_EQ(stack_pop(s), 2);
  EXPECT_EQ(stack_pop(s), 1);
  EXPECT_EQ(stack_get(s), 0);
  stack_push(s, INTPTR_MIN);
  stack_close(s);
  stack_push(nullptr, 1);
  EXPECT_EQ(stack_pop(nullptr), 0);
  EXPECT_EQ(stack_get(nullptr), 0);
  stack_close(nullptr);
}

#ifdef TIVLIB_FAULT_INJECTION

using QueueMemory = InTempDir;

TEST_F(QueueMemory, OutOfMemoryIsReportedAndLosesOnlyTheValue) {
  tiv::fault::fail_allocation_at(1);
  EXPECT_EQ(queue_open(), nullptr);
  EXPECT_NE(log_text().find("  queue_open: out of space!\n"), std::string::npos);
  queue_handle* q = queue_open();
  ASSERT_NE(q, nullptr);
  queue_post(q, 1);
  tiv::fault::fail_allocation_at(1);
  queue_post(q, 2);
  EXPECT_NE(log_text().find("  queue_post: out of space!\n  value has been lost!\n"),
            std::string::npos);
  queue_post(q, 3);
  EXPECT_EQ(queue_get(q), 1);
  EXPECT_EQ(queue_get(q), 3);
  queue_close(q);
}

TEST(StackMemory, PushLosesTheValueSilently) {
  tiv::fault::fail_allocation_at(1);
  EXPECT_EQ(stack_open(), nullptr);
  stack_handle* s = stack_open();
  stack_push(s, 1);
  tiv::fault::fail_allocation_at(1);
  stack_push(s, 2);
  EXPECT_EQ(stack_pop(s), 1);
  stack_close(s);
}

#endif

}  // namespace
}  // namespace tiv::test
