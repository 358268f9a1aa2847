// Fuzz target: the environment text form. The input is read with env_read, written back,
// read again, walked and looked up in; nothing may crash, hang or leak, whatever the bytes.
#include <tivlib/env.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "support/scratch_dir.h"

namespace {

struct Source {
  const uint8_t* data;
  std::size_t size;
  std::size_t at;
};

int32_t next_char(intptr_t user) {
  auto* s = reinterpret_cast<Source*>(user);
  if (s->at >= s->size) return -1;
  return static_cast<signed char>(s->data[s->at++]);
}

int32_t append_char(int32_t c, intptr_t user) {
  reinterpret_cast<std::string*>(user)->push_back(static_cast<char>(c));
  return 0;
}

int32_t count_leaf(env_handle*, const char*, char*, intptr_t user) {
  ++*reinterpret_cast<long*>(user);
  return 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  tiv::fuzz::enter_scratch_directory("/tmp/tivlib-fuzz-env.XXXXXX");
  env_handle* env = env_open(0, nullptr);
  Source source{data, size, 0};
  env_read(next_char, reinterpret_cast<intptr_t>(&source), env);

  std::string text;
  env_write(append_char, reinterpret_cast<intptr_t>(&text), env);
  env_handle* again = env_open(1, env);
  Source copy{reinterpret_cast<const uint8_t*>(text.data()), text.size(), 0};
  env_read(next_char, reinterpret_cast<intptr_t>(&copy), again);

  long leaves = 0;
  env_traverse_leafs(again, count_leaf, reinterpret_cast<intptr_t>(&leaves));
  char names[256];
  env_list_elem_names(env, nullptr, nullptr, 1, ',', sizeof names, names);
  if (env_count_elements(env, nullptr, nullptr, 1) > 0) {
    char section[256];
    char value[256];
    int32_t id = 0;
    intptr_t word = 0;
    if (env_get_pos(env, nullptr, nullptr, 1, 1, &id, sizeof section, section, 0, nullptr, &word) ==
        ENV_IS_BLOCK) {
      env_list_elem_names(env, section, nullptr, 1, ' ', sizeof names, names);
      env_get_pos(env, section, nullptr, 1, 1, &id, sizeof names, names, sizeof value, value, &word);
      double d = 0;
      env_get_double(again, section, names, 0, &d);
      env_sink(again, env, ENV_SINK_APPEND);
    }
  }
  env_close(again, 0);
  env_close(env, 0);
  return 0;
}
