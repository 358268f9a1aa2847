// Delimiter and path splitting; see path.h.
#include "env/path.h"

#include <cstring>

#include "env/report.h"

namespace tiv::env {

namespace {

// The delimiter, the cell env_set_delimiter hands out, and a table of the separator bytes
// that always agrees with the delimiter.
char g_delimiter[kDelimiterMax + 1] = "@";
char g_cell[kDelimiterMax + 1] = "";

struct SeparatorTable {
  bool is[256] = {};
  SeparatorTable() { is[static_cast<unsigned char>('@')] = true; }
  void rebuild(const char* text) {
    for (bool& b : is) b = false;
    for (const char* p = text; *p; ++p) is[static_cast<unsigned char>(*p)] = true;
  }
};
SeparatorTable g_separators;

void copy_limited(char* dst, const char* src) {
  std::size_t n = std::strlen(src);
  if (n > static_cast<std::size_t>(kDelimiterMax)) n = kDelimiterMax;
  std::memmove(dst, src, n);
  dst[n] = '\0';
}

}  // namespace

const char* delimiter() noexcept { return g_delimiter; }
char delimiter_first() noexcept { return g_delimiter[0]; }

char* set_delimiter(const char* text) noexcept {
  copy_limited(g_cell, g_delimiter);
  if (text != nullptr && *text != '\0') {
    copy_limited(g_delimiter, text);
    g_separators.rebuild(g_delimiter);
  }
  return g_cell;
}

bool all_digits(const char* text) noexcept {
  if (*text == '\0') return false;
  for (const char* p = text; *p; ++p)
    if (*p < '0' || *p > '9') return false;
  return true;
}

bool SplitPath::split(const char* path, int line) noexcept {
  count = next_token = 0;
  name = nullptr;
  position = 0;
  if (path == nullptr) {
    report("Unexpected nil path", line);
    report("Can not separate path", line);
    return false;
  }
  const bool* sep = g_separators.is;
  std::size_t length = 0;
  int separators = 0;
  for (const char* p = path; *p; ++p, ++length) {
    if (length >= static_cast<std::size_t>(kPathMax)) break;
    if (sep[static_cast<unsigned char>(*p)]) ++separators;
  }
  if (path[length] != '\0' || separators > kPathDelimitersMax) {
    report("Can not separate path", line);
    return false;
  }
  std::memcpy(copy, path, length + 1);
  char* p = copy;
  while (*p) {
    while (*p && sep[static_cast<unsigned char>(*p)]) *p++ = '\0';
    if (!*p) break;
    tokens[count++] = p;
    while (*p && !sep[static_cast<unsigned char>(*p)]) ++p;
  }
  if (count == 0) {
    report("Bad Path was given", line);
    return false;
  }
  step();
  return true;
}

void SplitPath::step() noexcept {
  if (next_token >= count) {
    name = nullptr;
    position = 0;
    return;
  }
  name = tokens[next_token++];
  position = 1;
  if (next_token < count && all_digits(tokens[next_token])) {
    const char* digits = tokens[next_token++];
    int64_t value = 0;
    for (const char* d = digits; *d && value <= kPositionMax; ++d) value = value * 10 + (*d - '0');
    position = value > kPositionMax ? kPositionMax : static_cast<int32_t>(value);
  }
}

}  // namespace tiv::env
