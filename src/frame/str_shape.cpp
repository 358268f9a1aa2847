// In-place case changes and trimming, and the repeated-character buffer.
#include <tivlib/str.h>

#include <cstring>

#include "frame/str_text.h"

using tiv::frame::is_blank;

namespace {

constexpr int32_t kRptMax = STR_RPT_MAX;
char rpt_buffer[kRptMax + 1];  // the one result of str_rpt, overwritten by each call

// Moves the text behind its leading blanks to the start of s.
void drop_leading_blanks(char* s) {
  char* p = s;
  while (is_blank(*p)) ++p;
  if (p != s) std::memmove(s, p, std::strlen(p) + 1);
}

void drop_trailing_blanks(char* s) {
  size_t n = std::strlen(s);
  while (n > 0 && is_blank(s[n - 1])) --n;
  s[n] = '\0';
}

}  // namespace

extern "C" {

char* str_cap(char* s) noexcept {
  if (s != nullptr)
    for (char* p = s; *p != '\0'; ++p) *p = tiv::frame::upper_ascii(*p);
  return s;
}

char* str_low(char* s) noexcept {
  if (s != nullptr)
    for (char* p = s; *p != '\0'; ++p) *p = tiv::frame::lower_ascii(*p);
  return s;
}

char* str_trim(char* s) noexcept {
  if (s == nullptr) return s;
  drop_trailing_blanks(s);
  drop_leading_blanks(s);
  return s;
}

char* str_ltrim(char* s) noexcept {
  if (s != nullptr) drop_leading_blanks(s);
  return s;
}

char* str_rtrim(char* s) noexcept {
  if (s != nullptr) drop_trailing_blanks(s);
  return s;
}

char* str_rpt(char c, int32_t n) noexcept {
  if (n < 0) n = 0;
  if (n > kRptMax) n = kRptMax;
  std::memset(rpt_buffer, c, static_cast<size_t>(n));
  rpt_buffer[n] = '\0';
  return rpt_buffer;
}

}  // extern "C"
