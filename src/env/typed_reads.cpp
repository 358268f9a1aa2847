// Reads of text and elements (env_get, env_get_reference, env_get_external, env_get_pos and
// the iteration env_get_first / env_get_next) and the typed reads over the value parser.
//
// A nil output buffer counts as a buffer with no room: the read then gives -7 where a value
// would have been copied. A nil count of a list read gives -10.
#include <tivlib/env.h>

#include <cstring>

#include "env/iteration.h"
#include "env/locate.h"
#include "env/report.h"
#include "env/value_parser.h"

using namespace tiv::env;

namespace {

constexpr int kAddressMax = ENV_ADDRESS_MAX;

// The running iteration of env_get_first / env_get_next; one for the whole library.
struct Iteration {
  bool active = false;
  env_handle* env = nullptr;
  int32_t id = 0;
  bool has_section = false;
  char section[kAddressMax + 1] = {};
  bool has_path = false;
  char path[kAddressMax + 1] = {};
  int32_t next_position = 0;
  int32_t exact = 0;
};
Iteration g_iteration;

bool fits(const char* text, int32_t size) {
  return size > 0 && std::strlen(text) < static_cast<std::size_t>(size);
}
void copy(char* buffer, const char* text) { std::memcpy(buffer, text, std::strlen(text) + 1); }

// A typed read: the text by reference, then the grammar over it.
int32_t typed_read(env_handle* env, const char* section, const char* path, int32_t exact,
                   Grammar grammar, ValueSink& sink) {
  const char* text = nullptr;
  const int32_t r = env_get_reference(env, section, path, exact, &text);
  if (r < 0) return r;
  if (!parse_value(const_cast<char*>(text), grammar, sink)) return ENV_BAD_FORMAT;
  if (sink.refused) return ENV_TOO_SMALL;
  return r;
}

int32_t list_read(env_handle* env, const char* section, const char* path, int32_t exact,
                  int32_t* count, Grammar grammar, ValueSink& sink) {
  if (count == nullptr) {
    report("Nil parametr", __LINE__, kEnvPg);
    return ENV_ERROR;
  }
  sink.capacity = *count > 0 ? *count : 0;
  const int32_t r = typed_read(env, section, path, exact, grammar, sink);
  *count = r >= 0 ? sink.stored : 0;
  return r;
}

}  // namespace

namespace tiv::env {

void forget_iteration(env_handle* env) noexcept {
  if (g_iteration.env == env) {
    g_iteration.active = false;
    g_iteration.env = nullptr;
  }
}

}  // namespace tiv::env

extern "C" {

int32_t env_get_reference(env_handle* env, const char* section, const char* path,
                          int32_t exact, const char** text_out) noexcept {
  int32_t id = 0;
  const char* text = nullptr;
  const int32_t r = get_core(env, section, path, exact, 0, &id, nullptr, &text, nullptr);
  switch (r) {
    case ENV_IS_DATA:
      if (text_out != nullptr) *text_out = text;
      return id;
    case ENV_IS_BLOCK:
    case ENV_IS_EXTERNAL:
      return ENV_IS_DATA;
    default:
      return r;
  }
}

// A copy of the text that env_get_reference hands out, when it fits the caller's buffer.
int32_t env_get(env_handle* env, const char* section, const char* path, int32_t exact,
                int32_t size, char* buffer) noexcept {
  const char* text = nullptr;
  const int32_t id = env_get_reference(env, section, path, exact, &text);
  if (id < 0) return id;
  if (buffer == nullptr || !fits(text, size)) return ENV_TOO_SMALL;
  copy(buffer, text);
  return id;
}

int32_t env_get_external(env_handle* env, const char* section, const char* path,
                         int32_t exact, intptr_t* word_out) noexcept {
  int32_t id = 0;
  intptr_t word = 0;
  const int32_t r = get_core(env, section, path, exact, 0, &id, nullptr, nullptr, &word);
  switch (r) {
    case ENV_IS_EXTERNAL:
      if (word_out != nullptr) *word_out = word;
      return id;
    case ENV_IS_BLOCK:
    case ENV_IS_DATA:
      return ENV_IS_EXTERNAL;
    default:
      return r;
  }
}

int32_t env_get_pos(env_handle* env, const char* section, const char* path, int32_t exact,
                    int32_t pos, int32_t* id_out, int32_t name_size, char* name_buffer,
                    int32_t data_size, char* data_buffer, intptr_t* word_out) noexcept {
  const char* name = nullptr;
  const char* text = nullptr;
  const int32_t r = get_core(env, section, path, exact, pos, id_out, &name, &text, word_out);
  if (pos < 1) return ENV_NOT_FOUND;
  switch (r) {
    case ENV_IS_EXTERNAL:
    case ENV_IS_BLOCK:
      if (name_buffer == nullptr || !fits(name, name_size)) return ENV_TOO_SMALL;
      copy(name_buffer, name);
      return r;
    case ENV_IS_DATA: {
      const bool name_fits = name_buffer != nullptr && fits(name, name_size);
      const bool text_fits = data_buffer != nullptr && fits(text, data_size);
      if (name_fits) copy(name_buffer, name);
      if (text_fits) copy(data_buffer, text);
      return name_fits && text_fits ? ENV_IS_DATA : ENV_TOO_SMALL;
    }
    case ENV_NOT_FOUND:
    case ENV_BAD_PATH:
    case ENV_ERROR:
      return r;
    default:
      zv_switch_error(r, kEnvPg, __LINE__);
      return r;
  }
}

// A section or path longer than 255 characters can't be kept for the iteration: the call
// gives -10 and starts nothing.
int32_t env_get_first(env_handle* env, const char* section, const char* path, int32_t exact,
                      int32_t* id_out, int32_t name_size, char* name_buffer, int32_t data_size,
                      char* data_buffer, intptr_t* word_out) noexcept {
  Iteration& it = g_iteration;
  it.active = false;
  it.env = nullptr;
  if ((section != nullptr && std::strlen(section) > static_cast<std::size_t>(kAddressMax)) ||
      (path != nullptr && std::strlen(path) > static_cast<std::size_t>(kAddressMax)))
    return ENV_ERROR;
  int32_t id = 0;
  const int32_t r = env_get_pos(env, section, path, exact, 1, &id, name_size, name_buffer,
                                data_size, data_buffer, word_out);
  if (r != ENV_IS_DATA && r != ENV_IS_BLOCK && r != ENV_IS_EXTERNAL) return r;
  if (id_out != nullptr) *id_out = id;
  it.env = env;
  it.id = id;
  it.has_section = section != nullptr;
  if (section != nullptr) copy(it.section, section);
  it.has_path = path != nullptr;
  if (path != nullptr) copy(it.path, path);
  it.next_position = 2;
  it.exact = exact;
  it.active = true;
  return r;
}

int32_t env_get_next(int32_t name_size, char* name_buffer, int32_t data_size, char* data_buffer,
                     intptr_t* word_out) noexcept {
  Iteration& it = g_iteration;
  if (!it.active) return ENV_NOT_FOUND;
  int32_t id = it.id;
  int32_t r = env_get_pos(it.env, it.has_section ? it.section : nullptr,
                          it.has_path ? it.path : nullptr, it.exact, it.next_position, &id,
                          name_size, name_buffer, data_size, data_buffer, word_out);
  if (id != it.id) r = ENV_NOT_FOUND;
  if (r != ENV_IS_DATA && r != ENV_IS_BLOCK && r != ENV_IS_EXTERNAL) {
    it.active = false;
    it.env = nullptr;
    return r;
  }
  ++it.next_position;
  return r;
}

int32_t env_get_double(env_handle* env, const char* section, const char* path, int32_t exact,
                       double* out) noexcept {
  ValueSink sink;
  sink.doubles = out;
  sink.capacity = out != nullptr ? 1 : 0;
  return typed_read(env, section, path, exact, Grammar::single_double, sink);
}

int32_t env_get_long(env_handle* env, const char* section, const char* path, int32_t exact,
                     int32_t* out) noexcept {
  ValueSink sink;
  sink.longs = out;
  sink.capacity = out != nullptr ? 1 : 0;
  return typed_read(env, section, path, exact, Grammar::single_long, sink);
}

int32_t env_get_string(env_handle* env, const char* section, const char* path, int32_t exact,
                       int32_t size, char* out) noexcept {
  const char* text = nullptr;
  int32_t r = env_get_reference(env, section, path, exact, &text);
  if (r >= 0 && (out == nullptr || !fits(text, size))) r = ENV_TOO_SMALL;
  if (r >= 0) copy(out, text);
  else if (out != nullptr && size > 0) out[0] = '\0';
  return r;
}

int32_t env_get_doubles(env_handle* env, const char* section, const char* path, int32_t exact,
                        int32_t* count, double* out) noexcept {
  ValueSink sink;
  sink.doubles = out;
  if (out == nullptr && count != nullptr && *count > 0) *count = 0;
  return list_read(env, section, path, exact, count, Grammar::double_list, sink);
}

int32_t env_get_longs(env_handle* env, const char* section, const char* path, int32_t exact,
                      int32_t* count, int32_t* out) noexcept {
  ValueSink sink;
  sink.longs = out;
  if (out == nullptr && count != nullptr && *count > 0) *count = 0;
  return list_read(env, section, path, exact, count, Grammar::long_list, sink);
}

int32_t env_get_strings(env_handle* env, const char* section, const char* path, int32_t exact,
                        int32_t* count, int32_t size, char** out) noexcept {
  ValueSink sink;
  sink.slots = out;
  sink.item_limit = size;
  if (out == nullptr && count != nullptr && *count > 0) *count = 0;
  return list_read(env, section, path, exact, count, Grammar::word_list, sink);
}

}  // extern "C"
