// Renaming a section or an entry of a settings file directly.
#include <tivlib/ini.h>

#include "settings/rewrite.h"

using namespace tiv::settings;

namespace {

// Copies the new name (cut to kNameMax characters) trimmed into out; false if it is nil or
// ends empty.
bool new_name_ok(const char* new_name, char* out) {
  if (new_name == nullptr) return false;
  return trimmed_copy(out, new_name, kNameMax)[0] != '\0';
}

// Streams the source up to the header of section, compared against the trimmed section, with
// every other header put out. The wanted header itself is not written, though its separation
// and blank line are. A blank section needs no search. Gives false if the input ended first.
bool seek_section(const char* trimmed, std::FILE* in, Output& out, char* text) {
  return trimmed[0] == '\0' || seek_header(in, out, trimmed, text, false);
}

}  // namespace

extern "C" int32_t ini_rename_section(const char* file, const char* section,
                                      const char* new_name) noexcept {
  char name[kNameMax + 1];
  if (!new_name_ok(new_name, name)) return INI_EMPTY_NAME;
  if (file == nullptr) return INI_ERROR;
  Rewrite rw;
  if (rw.begin(file, true, section) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();
  const char* trimmed = rw.section();
  char* text = rw.line();
  if (!seek_section(trimmed, in, out, text)) {
    rw.commit();
    return INI_NO_SECTION;
  }
  if (trimmed[0] != '\0') {
    out.write_bracketed(name);
  } else {
    // The unnamed section gets a header, under its leading comments.
    const int kind = read_line(in, &out, text);
    out.separate();
    out.write_bracketed(name);
    if (kind == kHeader) {
      out.write("\n\n");
      out.write_bracketed(text);
    } else if (kind == kEntry) {
      out.write("\n");
      out.write(text);
    }
  }
  copy_rest(out, in);
  return rw.commit();
}

extern "C" int32_t ini_rename_entry(const char* file, const char* section, const char* entry,
                                    const char* new_name) noexcept {
  char name[kNameMax + 1];
  if (!new_name_ok(new_name, name)) return INI_EMPTY_NAME;
  if (file == nullptr) return INI_ERROR;
  if (entry == nullptr) return INI_NO_ENTRY;
  Rewrite rw;
  if (rw.begin(file, true, section) != 0) return INI_ERROR;
  std::FILE* in = rw.source();
  Output& out = rw.out();
  const char* trimmed = rw.section();
  char* text = rw.line();
  if (!seek_section(trimmed, in, out, text)) {
    rw.commit();
    return INI_NO_SECTION;
  }
  if (trimmed[0] != '\0') out.write_bracketed(trimmed);

  EntryLine match;
  const int kind = pass_entries(in, out, entry, text, &match);
  if (kind == kEntry) {
    out.separate();
    out.write_pair(name, match.value);
    copy_rest(out, in);
    return rw.commit();
  }
  if (kind == kHeader) {
    if (out.position() != 0) out.write("\n\n");
    out.write_bracketed(text);
  }
  copy_rest(out, in);
  rw.commit();
  return INI_NO_ENTRY;
}
