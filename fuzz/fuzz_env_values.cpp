// Fuzz target: paths and typed values. The first byte picks the delimiter, the input up to the
// first newline is a path, and the rest a value; both go through puts, typed reads, counts
// and walks. Nothing may crash, hang or leak.
#include <tivlib/env.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "support/scratch_dir.h"

namespace {

int32_t ignore_leaf(env_handle*, const char*, char*, intptr_t) { return 0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  tiv::fuzz::enter_scratch_directory("/tmp/tivlib-fuzz-env.XXXXXX");
  if (size == 0) return 0;
  static const char* const kDelimiters[] = {"@", "/", "@.", "::"};
  char* saved = env_set_delimiter(kDelimiters[data[0] % 4]);
  std::string previous = saved;
  const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::size_t cut = input.find('\n');
  const std::string path = input.substr(0, cut);
  const std::string value = cut == std::string::npos ? std::string() : input.substr(cut + 1);
  // Positions make fillers, and walks over n siblings cost n squared by design: keep the
  // numbers small so that a run measures robustness, not that cost.
  std::size_t digits = 0;
  for (char ch : path) {
    digits = ch >= '0' && ch <= '9' ? digits + 1 : 0;
    if (digits > 3) {
      env_set_delimiter(previous.c_str());
      return 0;
    }
  }

  env_handle* env = env_open(0, nullptr);
  env_put(env, "s", path.c_str(), value.c_str());
  env_put(env, "s", "v", value.c_str());

  double d[8];
  int32_t l[8];
  char a[8], b[8], c[8];
  char* slots[] = {a, b, c};
  int32_t count = 8;
  env_get_doubles(env, "s", "v", 1, &count, d);
  count = 8;
  env_get_longs(env, "s", "v", 1, &count, l);
  count = 3;
  env_get_strings(env, "s", "v", 1, &count, 8, slots);
  env_get_double(env, "s", path.c_str(), 0, d);
  env_get_long(env, "s", path.c_str(), 1, l);
  char text[64];
  env_get_string(env, "s", path.c_str(), 1, sizeof text, text);
  env_count_path(env, "s", path.c_str(), 1);
  env_count_elements(env, "s", path.c_str(), 0);
  env_insert_before(env, "s", path.c_str(), "x");
  env_traverse_leafs(env, ignore_leaf, 0);
  env_handle* sub = env_create_subenv(env, "s", path.c_str());
  if (sub != nullptr) {
    env_put_doubles(sub, nullptr, "d", 3, d);
    env_close(sub, 0);
  }
  env_delete(env, "s", path.c_str());
  env_close(env, 0);
  env_set_delimiter(previous.c_str());
  return 0;
}
