// One piece of code for both directions: write != 0 writes, otherwise reads.
#include <tivlib/ini.h>

extern "C" int32_t ini_rw_string(int32_t write, const char* file, const char* section,
                                 const char* entry, char* buffer, int32_t* size) noexcept {
  if (write != 0) return ini_write_string(file, section, entry, buffer);
  return ini_read_string(file, section, entry, buffer, size);
}

extern "C" int32_t ini_rw_long(int32_t write, const char* file, const char* section,
                               const char* entry, int32_t* value) noexcept {
  if (value == nullptr) return INI_TOO_SMALL;
  if (write != 0) return ini_write_long(file, section, entry, *value);
  return ini_read_long(file, section, entry, value);
}

extern "C" int32_t ini_rw_double(int32_t write, const char* file, const char* section,
                                 const char* entry, double* value) noexcept {
  if (value == nullptr) return INI_TOO_SMALL;
  if (write != 0) return ini_write_double(file, section, entry, *value);
  return ini_read_double(file, section, entry, value);
}

extern "C" int32_t ini_rw_longs(int32_t write, const char* file, const char* section,
                                const char* entry, int32_t* values, int32_t* count) noexcept {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  if (write != 0) return ini_write_longs(file, section, entry, values, *count);
  return ini_read_longs(file, section, entry, values, count);
}

extern "C" int32_t ini_rw_doubles(int32_t write, const char* file, const char* section,
                                  const char* entry, double* values, int32_t* count) noexcept {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  if (write != 0) return ini_write_doubles(file, section, entry, values, *count);
  return ini_read_doubles(file, section, entry, values, count);
}
