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
  if (rw.begin(file, true, section) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();
  const char* trimmed = rw.section();
  char* text = rw.line();

  if (trimmed[0] != '\0' && !seek_header(in, out, section, text, true)) {
    rw.commit();  // the file is normalised all the same; the copy's code is not told
    return INI_NO_SECTION;
  }

  EntryLine match;
  const int kind = pass_entries(in, out, entry, text, &match);
  if (kind == kHeader) {
    out.separate();
    out.write_bracketed(text);
  }
  copy_rest(out, in);  // the wanted entry itself is left out
  rw.commit();
  return kind == kEntry ? INI_OK : INI_NO_ENTRY;
}

extern "C" int32_t ini_delete_section(const char* file, const char* section) noexcept {
  if (file == nullptr) return INI_ERROR;
  Rewrite rw;
  if (rw.begin(file, true, section) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();
  const char* trimmed = rw.section();
  char* text = rw.line();
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
