// The plain allocators: the one allocation layer of the library. They report nothing.
#include <tivlib/heap.h>
#include <tivlib/zv.h>

#include <cstdlib>

#include "frame/fault.h"

namespace {

constexpr const char* kSource = "Heap";

#ifdef TIVLIB_FAULT_INJECTION
inline bool injected_failure() { return tiv::fault::allocation_should_fail(); }
#else
constexpr bool injected_failure() { return false; }
#endif

}  // namespace

extern "C" {

void* heap_malloc(uint32_t size) noexcept {
  if (injected_failure()) return nullptr;
  return std::malloc(size);
}

void* heap_calloc(uint32_t count, uint32_t size) noexcept {
  if (injected_failure()) return nullptr;
  // Both factors are 32-bit, so the product fits a 64-bit size_t.
  return std::calloc(count, size);
}

void* heap_realloc(void* block, uint32_t size) noexcept {
  if (injected_failure()) return nullptr;
  return std::realloc(block, size);
}

void heap_free(void* block) noexcept { std::free(block); }

void heap_smart_free(void** ref) noexcept {
  if (ref == nullptr) {
    zv_message("heap_smart_free: NIL-reference", nullptr, nullptr, kSource, __LINE__);
    return;
  }
  if (*ref == nullptr) return;
  heap_free(*ref);
  *ref = nullptr;
}

void heap_statistic(void) noexcept {}

}  // extern "C"
