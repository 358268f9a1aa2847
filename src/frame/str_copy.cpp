// Copying and appending. dst is a buffer that the caller has sized; a nil dst is left alone
// and given back, and a nil src reads as an empty text.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>

#include "frame/str_text.h"

using tiv::frame::length32;
using tiv::frame::or_empty;

namespace {

// Writes src[first..last] (last clipped to the end of src) to out and terminates it; an
// invalid or empty range gives false and writes nothing.
bool copy_range(char* out, const char* src, int32_t first, int32_t last) {
  if (first < 0 || last < 0 || last < first) return false;
  const int32_t end = length32(src) - 1;
  if (last > end) last = end;
  if (first > last) return false;
  const auto n = static_cast<size_t>(last - first + 1);
  std::memmove(out, src + first, n);
  out[n] = '\0';
  return true;
}

}  // namespace

extern "C" {

char* str_cpy(char* dst, const char* src) noexcept {
  if (dst == nullptr) return dst;
  const char* s = or_empty(src);
  std::memmove(dst, s, std::strlen(s) + 1);
  return dst;
}

// A copy the caller owns and frees with heap_free; nil for a nil src or when memory is out.
char* str_alloc(const char* src) noexcept {
  if (src == nullptr) return nullptr;
  const size_t n = std::strlen(src) + 1;
  if (n > UINT32_MAX) return nullptr;
  auto* copy = static_cast<char*>(heap_calloc(static_cast<uint32_t>(n), 1));
  if (copy != nullptr) std::memcpy(copy, src, n);
  return copy;
}

// Copies at most n characters and always terminates; nothing is written behind the
// terminator (unlike strncpy, which pads).
char* str_ncpy(char* dst, const char* src, int32_t n) noexcept {
  if (dst == nullptr) return dst;
  const char* s = or_empty(src);
  size_t count = 0;
  if (n > 0) {
    const auto limit = static_cast<size_t>(n);
    while (count < limit && s[count] != '\0') ++count;
    std::memmove(dst, s, count);
  }
  dst[count] = '\0';
  return dst;
}

char* str_pcpy(char* dst, const char* src, int32_t first, int32_t last) noexcept {
  if (dst == nullptr) return dst;
  if (!copy_range(dst, or_empty(src), first, last)) dst[0] = '\0';
  return dst;
}

char* str_cat(char* dst, const char* src) noexcept {
  if (dst == nullptr) return dst;
  const char* s = or_empty(src);
  std::memmove(dst + std::strlen(dst), s, std::strlen(s) + 1);
  return dst;
}

// A count of 0 or below appends nothing.
char* str_ncat(char* dst, const char* src, int16_t n) noexcept {
  if (dst == nullptr || n <= 0) return dst;
  std::strncat(dst, or_empty(src), static_cast<size_t>(n));
  return dst;
}

// An invalid range leaves dst exactly as it was.
char* str_pcat(char* dst, const char* src, int32_t first, int32_t last) noexcept {
  if (dst == nullptr) return dst;
  copy_range(dst + std::strlen(dst), or_empty(src), first, last);
  return dst;
}

}  // extern "C"
