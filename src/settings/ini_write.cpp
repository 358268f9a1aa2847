// Writing one entry of a settings file directly: the file is streamed through a temporary
// file, in normal form up to the entry and byte for byte behind it, and copied back.
#include <tivlib/ini.h>

#include "settings/numbers.h"
#include "settings/rewrite.h"

using namespace tiv::settings;

extern "C" int32_t ini_write_string(const char* file, const char* section, const char* entry,
                                    const char* value) noexcept {
  // A nil file, entry or value is refused before anything is touched.
  if (file == nullptr) return INI_ERROR;
  if (entry == nullptr) return INI_NO_ENTRY;
  if (value == nullptr) return INI_TOO_SMALL;

  // A missing source is an empty one.
  Rewrite rw;
  if (rw.begin(file, false, section) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();
  const char* trimmed = rw.section();
  char* text = rw.line();

  if (trimmed[0] != '\0' && !seek_header(in, out, section, text, true)) {
    // A new section at the end, under the name as the caller gave it.
    write_header(out, section);
    out.write("\n");
    out.write_pair(entry, value);
    return rw.commit();
  }

  EntryLine match;
  const int kind = pass_entries(in, out, entry, text, &match);
  out.separate();
  if (kind == kEntry) {
    out.write_pair(match.name, value);
  } else {
    // The section ended (next header or end of file): the entry is new and goes last in it.
    out.write_pair(entry, value);
    if (kind == kHeader) {
      out.write("\n\n");
      out.write_bracketed(text);
    }
  }
  copy_rest(out, in);
  return rw.commit();
}

extern "C" int32_t ini_write_long(const char* file, const char* section, const char* entry,
                                  int32_t value) noexcept {
  char text[kNumberMax + 1];
  format_long(value, text);
  return ini_write_string(file, section, entry, text);
}

// A double whose "%lf" text passes the limit of a single number is refused with 3.
extern "C" int32_t ini_write_double(const char* file, const char* section, const char* entry,
                                    double value) noexcept {
  char text[kNumberMax + 1];
  if (!format_fixed(value, text)) return INI_TOO_SMALL;
  return ini_write_string(file, section, entry, text);
}

extern "C" int32_t ini_write_longs(const char* file, const char* section, const char* entry,
                                   const int32_t* values, int32_t count) noexcept {
  char text[kListMax + 1];
  if (!format_longs(values, count, text)) return INI_TOO_SMALL;
  return ini_write_string(file, section, entry, text);
}

extern "C" int32_t ini_write_doubles(const char* file, const char* section, const char* entry,
                                     const double* values, int32_t count) noexcept {
  char text[kListMax + 1];
  if (!format_doubles(values, count, text)) return INI_TOO_SMALL;
  return ini_write_string(file, section, entry, text);
}
