// Comparisons. Characters compare as unsigned bytes; results are exactly -1, 0 or 1, except
// str_eq and str_ieq, which give 1 for equal and 0 for different.
#include <tivlib/str.h>

#include <cstring>

#include "frame/str_text.h"

using tiv::frame::lower_ascii;
using tiv::frame::or_empty;
using tiv::frame::sign_of;

extern "C" {

int32_t str_cmp(const char* a, const char* b) noexcept {
  return sign_of(std::strcmp(or_empty(a), or_empty(b)));
}

// A to Z count as a to z; other bytes compare as they are.
int32_t str_icmp(const char* a, const char* b) noexcept {
  const auto* p = reinterpret_cast<const unsigned char*>(or_empty(a));
  const auto* q = reinterpret_cast<const unsigned char*>(or_empty(b));
  for (;; ++p, ++q) {
    const auto x = static_cast<unsigned char>(lower_ascii(static_cast<char>(*p)));
    const auto y = static_cast<unsigned char>(lower_ascii(static_cast<char>(*q)));
    if (x != y) return x < y ? -1 : 1;
    if (x == 0) return 0;
  }
}

// A count of 0 or below compares nothing and gives 0.
int32_t str_ncmp(const char* a, const char* b, int32_t n) noexcept {
  if (n <= 0) return 0;
  return sign_of(std::strncmp(or_empty(a), or_empty(b), static_cast<size_t>(n)));
}

int32_t str_eq(const char* a, const char* b) noexcept { return str_cmp(a, b) == 0 ? 1 : 0; }

int32_t str_ieq(const char* a, const char* b) noexcept { return str_icmp(a, b) == 0 ? 1 : 0; }

}  // extern "C"
