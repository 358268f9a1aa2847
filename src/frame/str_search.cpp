// Lengths and searches. Addresses point into s; indexes count from 0, -1 means not found.
// A nil text is searched as an empty one and yields nil or -1.
#include <tivlib/str.h>

#include <cstring>

#include "frame/str_text.h"

using tiv::frame::length32;

namespace {

int32_t index_in(const char* s, const char* found) {
  return found != nullptr ? static_cast<int32_t>(found - s) : -1;
}

}  // namespace

extern "C" {

int32_t str_len(const char* s) noexcept { return length32(s); }

char* str_chr(const char* s, char c) noexcept {
  return s != nullptr ? const_cast<char*>(std::strchr(s, c)) : nullptr;
}

char* str_rchr(const char* s, char c) noexcept {
  return s != nullptr ? const_cast<char*>(std::strrchr(s, c)) : nullptr;
}

int32_t str_ichr(const char* s, char c) noexcept { return index_in(s, str_chr(s, c)); }

int32_t str_irchr(const char* s, char c) noexcept { return index_in(s, str_rchr(s, c)); }

char* str_pos(const char* s, const char* sub) noexcept {
  if (s == nullptr || sub == nullptr) return nullptr;
  return const_cast<char*>(std::strstr(s, sub));
}

int32_t str_ipos(const char* s, const char* sub) noexcept { return index_in(s, str_pos(s, sub)); }

}  // extern "C"
