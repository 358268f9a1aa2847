// Generated paths of the walks; see walk_path.h.
#include "env/walk_path.h"

#include <cstdio>
#include <cstring>

#include "env/path.h"

namespace tiv::env {

namespace {
bool fits(int n, char* out) {
  if (n < 0 || n > kWalkPathMax) {
    out[0] = '\0';
    return false;
  }
  return true;
}
}  // namespace

bool join_walk_path(char* out, const char* prefix, const char* name, long position) noexcept {
  const char* d = delimiter();
  if (*name == '\0' || std::strpbrk(name, d) != nullptr) {
    out[0] = '\0';
    return false;
  }
  const int n = prefix != nullptr
                    ? std::snprintf(out, kWalkPathMax + 1, "%s%s%s%s%ld", prefix, d, name, d, position)
                    : std::snprintf(out, kWalkPathMax + 1, "%s%s%ld", name, d, position);
  return fits(n, out);
}

bool join_full_path(char* out, const char* prefix, const char* path) noexcept {
  const int n = prefix != nullptr
                    ? std::snprintf(out, kWalkPathMax + 1, "%s%s%s", prefix, delimiter(), path)
                    : std::snprintf(out, kWalkPathMax + 1, "%s", path);
  return fits(n, out);
}

}  // namespace tiv::env
