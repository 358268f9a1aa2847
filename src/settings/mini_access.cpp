// Reads and writes on an in-memory settings handle. Writes change memory only; the file
// follows at the next update.
#include <cstring>

#include <tivlib/convert.h>
#include <tivlib/heap.h>
#include <tivlib/mini.h>
#include <tivlib/str.h>

#include "settings/line.h"
#include "settings/mini_store.h"
#include "settings/name_list.h"
#include "settings/numbers.h"

using namespace tiv::settings;

namespace {

// The value text of a number read, in a buffer of kValueBufferMax.
int32_t read_value(mini_file* handle, const char* section, const char* entry, char* text) {
  int32_t size = static_cast<int32_t>(kValueBufferMax) - 1;
  return mini_read_string(handle, section, entry, text, &size);
}

// One number: *value changes only when the entry was read.
template <class T>
int32_t read_number(mini_file* handle, const char* section, const char* entry, T* value,
                    T (*convert)(const char*) noexcept) {
  if (value == nullptr) return INI_TOO_SMALL;
  if (entry == nullptr) return INI_NO_ENTRY;
  char text[kValueBufferMax];
  const int32_t code = read_value(handle, section, entry, text);
  if (code == INI_OK) *value = convert(text);
  return code;
}

template <class T, class Parse>
int32_t read_list(mini_file* handle, const char* section, const char* entry, T* values,
                  int32_t* count, Parse parse) {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  if (entry == nullptr) return INI_NO_ENTRY;
  char text[kValueBufferMax];
  const int32_t code = read_value(handle, section, entry, text);
  if (code != INI_OK) return code;  // *count stays as it was
  int32_t stored = 0;
  if (!parse(text, values, *count, &stored)) return INI_TOO_SMALL;
  *count = stored;
  return INI_OK;
}

}  // namespace

extern "C" int32_t mini_read_string(mini_file* handle, const char* section, const char* entry,
                                    char* buffer, int32_t* size) noexcept {
  if (buffer == nullptr || size == nullptr) return INI_TOO_SMALL;
  if (handle == nullptr) return INI_ERROR;
  char name[kNameMax + 1];
  mini_section* s = find_or_load(handle, trimmed_copy(name, section, kNameMax));
  if (s == nullptr) return INI_NO_SECTION;
  if (entry == nullptr) {
    NameList names(buffer, *size);
    for (auto* e = static_cast<mini_entry*>(s->entries.first); e != nullptr; e = e->next)
      if (!names.add(e->name)) break;
    return names.close(size);
  }
  const mini_entry* e = find_entry(s, entry);
  if (e == nullptr) return INI_NO_ENTRY;
  const auto len = static_cast<int32_t>(std::strlen(e->value));
  str_ncpy(buffer, e->value, *size);
  if (len > *size) return INI_TOO_SMALL;
  *size = len;
  return INI_OK;
}

extern "C" int32_t mini_read_long(mini_file* handle, const char* section, const char* entry,
                                  int32_t* value) noexcept {
  return read_number(handle, section, entry, value, convert_stol);
}

extern "C" int32_t mini_read_double(mini_file* handle, const char* section, const char* entry,
                                    double* value) noexcept {
  return read_number(handle, section, entry, value, convert_stod);
}

extern "C" int32_t mini_read_longs(mini_file* handle, const char* section, const char* entry,
                                   int32_t* values, int32_t* count) noexcept {
  return read_list(handle, section, entry, values, count, parse_longs);
}

extern "C" int32_t mini_read_doubles(mini_file* handle, const char* section, const char* entry,
                                     double* values, int32_t* count) noexcept {
  return read_list(handle, section, entry, values, count, parse_doubles);
}

// After failed memory (reported through zv_exit) the entry keeps its old value, or is not
// added, and the result is -1.
extern "C" int32_t mini_write_string(mini_file* handle, const char* section, const char* entry,
                                     const char* value) noexcept {
  if (handle == nullptr) return INI_ERROR;
  if (entry == nullptr) return INI_NO_ENTRY;
  if (value == nullptr) return INI_TOO_SMALL;
  char name[kNameMax + 1];
  trimmed_copy(name, section, kNameMax);
  // A section the file holds but memory couldn't take is not created anew: its entries would
  // replace those of the file at the update. A file that can't be opened holds none.
  Lookup how = Lookup::found;
  mini_section* s = find_or_load(handle, name, &how);
  if (s == nullptr && how == Lookup::unusable) return INI_ERROR;
  if (s == nullptr) s = add_section(handle, name);
  if (s == nullptr) return INI_ERROR;

  char key[kMiniEntryMax + 1];
  if (trimmed_copy(key, entry, kMiniEntryMax)[0] == '\0') return INI_NO_ENTRY;
  if (mini_entry* e = find_entry(s, key)) {
    if (!replace_text(e->value, value)) return INI_ERROR;
  } else if (add_entry(s, key, value) == nullptr) {
    return INI_ERROR;
  }
  s->state |= kDirty;
  return INI_OK;
}

extern "C" int32_t mini_write_long(mini_file* handle, const char* section, const char* entry,
                                   int32_t value) noexcept {
  char text[kNumberMax + 1];
  format_long(value, text);
  return mini_write_string(handle, section, entry, text);
}

// "%lg" keeps every double within the limit of a single number.
extern "C" int32_t mini_write_double(mini_file* handle, const char* section, const char* entry,
                                     double value) noexcept {
  char text[kNumberMax + 1];
  format_general(value, text);
  return mini_write_string(handle, section, entry, text);
}

extern "C" int32_t mini_write_longs(mini_file* handle, const char* section, const char* entry,
                                    const int32_t* values, int32_t count) noexcept {
  char text[kListMax + 1];
  if (!format_longs(values, count, text)) return INI_TOO_SMALL;
  return mini_write_string(handle, section, entry, text);
}

extern "C" int32_t mini_write_doubles(mini_file* handle, const char* section, const char* entry,
                                      const double* values, int32_t count) noexcept {
  char text[kListMax + 1];
  if (!format_doubles(values, count, text)) return INI_TOO_SMALL;
  return mini_write_string(handle, section, entry, text);
}

extern "C" const char* mini_get_string(mini_file* handle, const char* section, const char* entry,
                                       char* buffer, int32_t* size) noexcept {
  static const char kEmpty[] = "";
  if (buffer != nullptr) {
    if (mini_read_string(handle, section, entry, buffer, size) != INI_OK) buffer[0] = '\0';
    return buffer;
  }
  if (handle == nullptr || section == nullptr || entry == nullptr) return kEmpty;
  const mini_section* s = find_or_load(handle, section);  // the name as passed, untrimmed
  if (s == nullptr) return kEmpty;
  const mini_entry* e = find_entry(s, entry);
  return e != nullptr ? e->value : kEmpty;
}

extern "C" int32_t mini_rw_string(int32_t write, mini_file* handle, const char* section,
                                  const char* entry, char* buffer, int32_t* size) noexcept {
  if (write != 0) return mini_write_string(handle, section, entry, buffer);
  return mini_read_string(handle, section, entry, buffer, size);
}

extern "C" int32_t mini_rw_long(int32_t write, mini_file* handle, const char* section,
                                const char* entry, int32_t* value) noexcept {
  if (value == nullptr) return INI_TOO_SMALL;
  if (write != 0) return mini_write_long(handle, section, entry, *value);
  return mini_read_long(handle, section, entry, value);
}

extern "C" int32_t mini_rw_double(int32_t write, mini_file* handle, const char* section,
                                  const char* entry, double* value) noexcept {
  if (value == nullptr) return INI_TOO_SMALL;
  if (write != 0) return mini_write_double(handle, section, entry, *value);
  return mini_read_double(handle, section, entry, value);
}

extern "C" int32_t mini_rw_longs(int32_t write, mini_file* handle, const char* section,
                                 const char* entry, int32_t* values, int32_t* count) noexcept {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  if (write != 0) return mini_write_longs(handle, section, entry, values, *count);
  return mini_read_longs(handle, section, entry, values, count);
}

extern "C" int32_t mini_rw_doubles(int32_t write, mini_file* handle, const char* section,
                                   const char* entry, double* values, int32_t* count) noexcept {
  if (values == nullptr || count == nullptr) return INI_TOO_SMALL;
  if (write != 0) return mini_write_doubles(handle, section, entry, values, *count);
  return mini_read_doubles(handle, section, entry, values, count);
}
