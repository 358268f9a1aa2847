// Reading settings files directly: one scan from the top of the file for each call.
#include <cstring>

#include <tivlib/convert.h>
#include <tivlib/ini.h>
#include <tivlib/str.h>

#include "settings/name_list.h"
#include "settings/numbers.h"
#include "settings/rewrite.h"

namespace tiv::settings {
namespace {

// Closes the input when the read is over.
struct InputFile {
  std::FILE* stream;
  ~InputFile() {
    if (stream != nullptr) std::fclose(stream);
  }
};

// Moves the input behind the header of section (compared untrimmed; a blank section means the
// unnamed one and needs no header). False when the input ended first.
bool seek_read_section(std::FILE* in, const char* section, char* text) {
  char trimmed[kNameMax + 1];
  if (trimmed_copy(trimmed, section, kNameMax)[0] == '\0') return true;
  for (;;) {
    if (find_section(in, nullptr, text) == kEnd) return false;
    if (str_eq(text, section)) return true;
  }
}

int32_t list_names(std::FILE* in, char* buffer, int32_t* size, char* text) {
  NameList names(buffer, *size);
  bool room = true;
  EntryLine e;
  while (room && next_entry(in, nullptr, text, &e) == kEntry) room = names.add(e.name);
  return names.close(size);
}

// The value text of a number read, in a buffer of kValueBufferMax.
int32_t read_value(const char* file, const char* section, const char* entry, char* buffer) {
  if (entry == nullptr) return INI_NO_ENTRY;
  int32_t size = static_cast<int32_t>(kValueBufferMax) - 1;
  return ini_read_string(file, section, entry, buffer, &size);
}

// One number: *value changes only when the entry was read.
template <class T>
int32_t read_number(const char* file, const char* section, const char* entry, T* value,
                    T (*convert)(const char*) noexcept) {
  if (value == nullptr) return INI_TOO_SMALL;
  char text[kValueBufferMax];
  const int32_t code = read_value(file, section, entry, text);
  if (code == INI_OK) *value = convert(text);
  return code;
}

template <class T, class Parse>
int32_t read_list(const char* file, const char* section, const char* entry, T* values,
                  int32_t* count, Parse parse) {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  char text[kValueBufferMax];
  const int32_t code = read_value(file, section, entry, text);
  if (code != INI_OK) {
    *count = 0;
    return code;
  }
  int32_t stored = 0;
  if (!parse(text, values, *count, &stored)) return INI_TOO_SMALL;
  *count = stored;
  return INI_OK;
}

}  // namespace
}  // namespace tiv::settings

using namespace tiv::settings;

extern "C" int32_t ini_read_string(const char* file, const char* section, const char* entry,
                                   char* buffer, int32_t* size) noexcept {
  // Nil buffers are refused before the file is touched.
  if (buffer == nullptr || size == nullptr) return INI_TOO_SMALL;
  InputFile in{open_for_reading(file, true)};
  if (in.stream == nullptr) return INI_ERROR;
  char text[kLineBuffer];
  if (!seek_read_section(in.stream, section, text)) return INI_NO_SECTION;
  if (entry == nullptr) return list_names(in.stream, buffer, size, text);
  EntryLine e;
  while (next_entry(in.stream, nullptr, text, &e) == kEntry) {
    if (e.name == entry) {
      // The value is copied with *size as its limit; *size itself stays as it was.
      const auto len = static_cast<int32_t>(e.value.size());
      const int32_t n = *size < len ? *size : len;
      if (n > 0) std::memcpy(buffer, e.value.data(), static_cast<std::size_t>(n));
      buffer[n > 0 ? n : 0] = '\0';
      return len > *size ? INI_TOO_SMALL : INI_OK;
    }
  }
  return INI_NO_ENTRY;
}

extern "C" int32_t ini_read_long(const char* file, const char* section, const char* entry,
                                 int32_t* value) noexcept {
  return read_number(file, section, entry, value, convert_stol);
}

extern "C" int32_t ini_read_double(const char* file, const char* section, const char* entry,
                                   double* value) noexcept {
  return read_number(file, section, entry, value, convert_stod);
}

extern "C" int32_t ini_read_longs(const char* file, const char* section, const char* entry,
                                  int32_t* values, int32_t* count) noexcept {
  return read_list(file, section, entry, values, count, parse_longs);
}

extern "C" int32_t ini_read_doubles(const char* file, const char* section, const char* entry,
                                    double* values, int32_t* count) noexcept {
  return read_list(file, section, entry, values, count, parse_doubles);
}
