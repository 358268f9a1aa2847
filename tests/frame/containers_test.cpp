// The queue and the stack of opaque words.
#include <tivlib/queue.h>
#include <tivlib/stack.h>

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

}  // namespace
}  // namespace tiv::test
