// Guarded access to the process environment.
#include <tivlib/str.h>
#include <tivlib/heap.h>
#include <tivlib/zv.h>

#include "platform/environment.h"

extern "C" {

const char* zv_getenv(const char* name, const char* fallback) noexcept {
  const char* value = tiv::platform::get_variable(name);
  return value != nullptr ? value : fallback;
}

// The copy belongs to the environment for the rest of the process once it is handed over;
// it is freed only when the environment refuses it. A nil text or no memory gives -1.
int32_t zv_putenv(const char* text) noexcept {
  char* copy = str_alloc(text);
  if (copy == nullptr) return -1;
  if (tiv::platform::put_variable(copy) != 0) {
    heap_free(copy);
    return -1;
  }
  return 0;
}

}  // extern "C"
