#include "scratch.h"

#include <stdlib.h>

#include <cstdlib>
#include <string>
#include <system_error>

#include "context.h"

namespace tiv::cli {

namespace {

std::filesystem::path g_scratch;

}  // namespace

const std::filesystem::path& scratch_directory() {
  if (!g_scratch.empty()) return g_scratch;
  const char* base = std::getenv("TMPDIR");
  std::string pattern = std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/tiv-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) fail(kIo, "cannot make a private temporary directory", pattern);
  g_scratch = pattern;
  static const bool registered = std::atexit([] { remove_scratch_directory(); }) == 0;
  (void)registered;
  return g_scratch;
}

void remove_scratch_directory() noexcept {
  if (g_scratch.empty()) return;
  std::error_code ec;
  std::filesystem::remove_all(g_scratch, ec);
  g_scratch.clear();
}

}  // namespace tiv::cli
