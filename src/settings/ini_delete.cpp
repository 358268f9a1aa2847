// Deleting an entry or a whole section of a settings file directly.
#include <tivlib/ini.h>
#include <tivlib/str.h>

#include "settings/rewrite.h"

using namespace tiv::settings;

extern "C" int32_t ini_delete_entry(const char* file, const char* section,
                                    const char* entry) noexcept {
  if (file == nullptr) return INI_ERROR;
  if (entry == nullptr) return INI_NO_ENTRY;
  Rewrite rw;
  if (rw.begin(file, true) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();

  char trimmed[kNameMax + 1];
  trimmed_copy(trimmed, section, kNameMax);
  ini_first_header = 1;
  char text[kLineBuffer];

  if (trimmed[0] != '\0') {
    bool found = false;
    while (!found && find_section(in, &out, text) == kHeader) {
      write_header(out, text);
      found = str_eq(text, section) != 0;
    }
    if (!found) {
      rw.commit();  // the file is normalised all the same; the copy's code is not told
      return INI_NO_SECTION;
    }
  }

  for (;;) {
    const int kind = read_line(in, &out, text);
    if (kind == kEntry) {
      const EntryLine e = split_entry(text);
      if (!e.found) {
        report_malformed(__LINE__);
        continue;
      }
      if (e.name == entry) {
        copy_rest(out, in);
        rw.commit();
        return INI_OK;
      }
      out.separate();
      out.write_pair(e.name, e.value);
      continue;
    }
    if (kind == kHeader) {
      out.separate();
      out.write_bracketed(text);
    }
    copy_rest(out, in);
    rw.commit();
    return INI_NO_ENTRY;
  }
}

extern "C" int32_t ini_delete_section(const char* file, const char* section) noexcept {
  if (file == nullptr) return INI_ERROR;
  Rewrite rw;
  if (rw.begin(file, true) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();

  char trimmed[kNameMax + 1];
  trimmed_copy(trimmed, section, kNameMax);
  ini_first_header = 1;
  char text[kLineBuffer];
  int kind = kEnd;

  if (trimmed[0] != '\0') {
    for (;;) {
      if (find_section(in, &out, text) == kEnd) {
        rw.commit();
        return INI_NO_SECTION;
      }
      if (str_eq(text, section)) break;  // the section's own header is left out
      write_header(out, text);
    }
    // Skip the section with its comments.
    do kind = read_line(in, nullptr, text);
    while (kind == kEntry);
  } else {
    // The unnamed section loses its entries; its comments stay.
    do kind = read_line(in, &out, text);
    while (kind == kEntry);
  }

  if (kind == kHeader) {
    if (out.position() != 0) out.write("\n\n");
    out.write_bracketed(text);
  }
  copy_rest(out, in);
  rw.commit();
  return INI_OK;
}
