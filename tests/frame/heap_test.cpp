// The allocators, the arena's block rules and its reports, and injected allocation failures.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>

#include "frame/fault.h"
#include "frame_test_util.h"

namespace tiv::test {
namespace {

using Heap = InTempDir;

// Whether the log starts with an error of the source "Heap" and ends with the record of this
// text; the line is not pinned here.
bool log_has_error(const std::string& text) {
  const std::string log = log_text();
  return log.starts_with(">ERROR   in \"Heap\" line ") && log.ends_with(":\n  " + text + "!\n\n\n\n\n");
}

TEST_F(Heap, SmartFreeFreesAndClearsTheVariableAndReportsANilReference) {
  void* block = heap_malloc(4);
  ASSERT_NE(block, nullptr);
  std::memcpy(block, "abc", 4);
  block = heap_realloc(block, 4096);  // keeps the content
  ASSERT_NE(block, nullptr);
  EXPECT_STREQ(static_cast<char*>(block), "abc");
  heap_smart_free(&block);
  EXPECT_EQ(block, nullptr);
  heap_smart_free(&block);  // holds nil: nothing happens
  EXPECT_FALSE(file_exists("zv.err"));
  heap_smart_free(nullptr);
  EXPECT_EQ(log_text().substr(0, 25), "> MESSAGE in \"Heap\" line ");
  EXPECT_NE(log_text().find(":\n  heap_smart_free: NIL-reference!\n\n\n"), std::string::npos);
  heap_free(nullptr);
  heap_statistic();
}

TEST_F(Heap, ClearingArenaZeroesExactlyTheBytesAsked) {
  heap_id* id = heap_open(64, 1);
  auto* p = static_cast<unsigned char*>(heap_allocate(id, 8));
  std::memset(p, 0xAB, 16);  // dirty this piece and the next one
  auto* q = static_cast<unsigned char*>(heap_allocate(id, 5));
  ASSERT_EQ(q, p + 8);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(q[i], 0) << i;
  for (int i = 5; i < 8; ++i) EXPECT_EQ(q[i], 0xAB) << i;
  heap_close(id);
}

TEST_F(Heap, ArenaRoundsCacheSizeToEightsAndReportsBadIdsAndSizes) {
  heap_id* id = heap_open(100, 0);
  ASSERT_NE(id, nullptr);
  EXPECT_NE(heap_allocate(id, 104), nullptr);  // 100 became 104
  EXPECT_FALSE(file_exists("zv.err"));
  EXPECT_EQ(heap_allocate(id, 105), nullptr);
  EXPECT_TRUE(log_has_error("heap_allocate: parameter 'size' greater than cachesize"));
  heap_close(id);
  // Bad ids and sizes are reported.
  EXPECT_EQ(heap_allocate(nullptr, 8), nullptr);
  EXPECT_TRUE(log_has_error("heap_allocate: incorrect ID for this heap"));
  heap_deallocate(nullptr);
  EXPECT_TRUE(log_has_error("heap_deallocate: incorrect ID for this heap"));
  id = heap_open(16, 0);
  EXPECT_EQ(heap_allocate(id, -8), nullptr);
  EXPECT_TRUE(log_has_error("heap_allocate: negative parameter 'size'"));
  EXPECT_EQ(heap_allocate(id, INT32_MAX), nullptr);
  EXPECT_TRUE(log_has_error("heap_allocate: parameter 'size' greater than cachesize"));
  heap_close(id);
  heap_close(nullptr);
  EXPECT_EQ(heap_open(-1, 0), nullptr);
  EXPECT_TRUE(log_has_error("heap_open: out of space"));
  EXPECT_EQ(heap_open(INT32_MAX, 0), nullptr);
  EXPECT_TRUE(log_has_error("heap_open: out of space"));
}

#ifdef TIVLIB_FAULT_INJECTION

TEST_F(Heap, ArenaOutOfSpaceIsReportedAndTheArenaStaysUsable) {
  tiv::fault::fail_allocation_at(1);
  EXPECT_EQ(heap_open(32, 0), nullptr);
  EXPECT_TRUE(log_has_error("heap_open: out of space"));
  heap_id* id = heap_open(32, 0);
  ASSERT_NE(id, nullptr);
  tiv::fault::fail_allocation_at(1);
  EXPECT_EQ(heap_allocate(id, 32), nullptr);  // needs a second block
  EXPECT_TRUE(log_has_error("heap_allocate: out of space"));
  EXPECT_NE(heap_allocate(id, 8), nullptr);
  EXPECT_NE(heap_allocate(id, 32), nullptr);
  heap_close(id);
}

#endif

}  // namespace
}  // namespace tiv::test
