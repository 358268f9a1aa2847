// Moves a fuzz target, once per run, into a fresh directory under /tmp, so that the library's
// reports (zv.err in the current directory) stay out of the way.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace tiv::fuzz {

inline void enter_scratch_directory(const char* pattern_text) {
  static bool done = false;
  if (done) return;
  done = true;
  char pattern[64];
  std::snprintf(pattern, sizeof pattern, "%s", pattern_text);
  if (const char* dir = ::mkdtemp(pattern)) {
    if (::chdir(dir) != 0) std::abort();
  }
}

}  // namespace tiv::fuzz
