// Small helpers shared by the str_ routines.
#pragma once

#include <cstdint>
#include <cstring>

namespace tiv::frame {

// The str_ routines take a nil text to read as an empty one.
inline const char* or_empty(const char* s) { return s != nullptr ? s : ""; }

// Length of a text as the 32-bit count of the interface.
inline int32_t length32(const char* s) {
  const size_t n = std::strlen(or_empty(s));
  return n > static_cast<size_t>(INT32_MAX) ? INT32_MAX : static_cast<int32_t>(n);
}

inline bool is_blank(char c) { return c == ' '; }
inline char lower_ascii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
inline char upper_ascii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// -1, 0 or 1 from any signed difference.
inline int32_t sign_of(int d) { return d < 0 ? -1 : (d > 0 ? 1 : 0); }

}  // namespace tiv::frame
