// Joining names into a path, and listing the names of a block's children.
#include <tivlib/env.h>

#include <cstdarg>
#include <cstring>

#include "env/locate.h"
#include "env/path.h"
#include "env/report.h"

using namespace tiv::env;

extern "C" {

// A nil buffer counts as one with no room.
int32_t env_create_path(int32_t size, char* buffer, const char* first, ...) noexcept {
  if (size < 1) return ENV_TOO_SMALL;
  if (first == nullptr) return ENV_OK;
  const auto room = static_cast<std::size_t>(size);
  std::size_t length = std::strlen(first);
  if (buffer == nullptr || length + 1 > room) return ENV_TOO_SMALL;
  std::memcpy(buffer, first, length + 1);
  const char joint = delimiter_first();
  va_list names;
  va_start(names, first);
  int32_t result = ENV_OK;
  while (const char* name = va_arg(names, const char*)) {
    const std::size_t n = std::strlen(name);
    if (length + 1 + n + 1 > room) {
      buffer[0] = '\0';
      result = ENV_TOO_SMALL;
      break;
    }
    buffer[length++] = joint;
    std::memcpy(buffer + length, name, n + 1);
    length += n;
  }
  va_end(names);
  return result;
}

int32_t env_create_array_path(int32_t size, char* buffer, const char* const* names) noexcept {
  if (size < 1 || buffer == nullptr) return ENV_TOO_SMALL;
  buffer[0] = '\0';
  if (names == nullptr || names[0] == nullptr) return ENV_OK;
  const auto last = static_cast<std::size_t>(size) - 1;  // characters that fit
  const char joint = delimiter_first();
  std::size_t length = 0;
  for (std::size_t i = 0; names[i] != nullptr; ++i) {
    if (i > 0) {
      if (length >= last) {
        buffer[0] = '\0';
        return ENV_TOO_SMALL;
      }
      buffer[length++] = joint;
    }
    for (const char* p = names[i]; *p; ++p) {
      if (length >= last) {
        buffer[0] = '\0';
        return ENV_TOO_SMALL;
      }
      buffer[length++] = *p;
    }
  }
  buffer[length] = '\0';
  return ENV_OK;
}

// The list reads name, separator, name, separator...; each name is found by its position.
int32_t env_list_elem_names(env_handle* env, const char* section, const char* path,
                            int32_t exact, char separator, int32_t size, char* buffer) noexcept {
  if (buffer != nullptr && size > 0) buffer[0] = '\0';
  if (env_exist_block(env, section, path, exact) == 0) return ENV_IS_BLOCK;
  if (size < 2 || buffer == nullptr) return ENV_TOO_SMALL;
  buffer[0] = separator;
  buffer[1] = '\0';
  const auto room = static_cast<std::size_t>(size);
  std::size_t written = 0;
  int32_t result = ENV_OK;
  for (int32_t pos = 1;; ++pos) {
    const char* name = nullptr;
    const int32_t r = get_core(env, section, path, exact, pos, nullptr, &name, nullptr, nullptr);
    if (r == ENV_NOT_FOUND) break;
    if (r == ENV_IS_DATA || r == ENV_IS_BLOCK || r == ENV_IS_EXTERNAL) {
      const std::size_t n = std::strlen(name);
      if (written + n + 2 >= room) {
        result = ENV_TOO_SMALL;
        break;
      }
      std::memcpy(buffer + written, name, n);
      written += n;
      buffer[written++] = separator;
      buffer[written] = '\0';
      continue;
    }
    if (r != ENV_BAD_PATH && r != ENV_ERROR) zv_switch_error(r, kEnvUtil, __LINE__);
    result = r;
    break;
  }
  if (result != ENV_OK) buffer[0] = '\0';
  return result;
}

}  // extern "C"
