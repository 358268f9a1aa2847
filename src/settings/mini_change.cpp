// Deletes and renames on an in-memory settings handle. Within a loaded section they change
// memory (the file follows at the next update); otherwise they change the file at once
// through the direct operations, and load nothing.
#include <tivlib/ini.h>
#include <tivlib/mini.h>
#include <tivlib/str.h>

#include "settings/line.h"
#include "settings/mini_store.h"

using namespace tiv::settings;

namespace {

// The common checks: handle, then the named argument, then the read-only flag.
int32_t check(const mini_file* handle, const char* argument) {
  if (handle == nullptr) return INI_ERROR;
  if (argument == nullptr) return INI_NO_ENTRY;
  if ((handle->flags & MINI_READ_ONLY) != 0) return INI_READ_ONLY;
  return INI_OK;
}

}  // namespace

extern "C" int32_t mini_delete_entry(mini_file* handle, const char* section,
                                     const char* entry) noexcept {
  if (const int32_t code = check(handle, entry); code != INI_OK) return code;
  char name[kNameMax + 1];
  if (mini_section* s = find_loaded(handle, trimmed_copy(name, section, kNameMax))) {
    mini_entry* e = find_entry(s, entry);
    if (e == nullptr) return INI_NO_ENTRY;
    free_entry(s, e);
    return INI_OK;
  }
  char path[FIO_PATH_BUFFER];
  return ini_delete_entry(file_path(handle, path), section, entry);
}

extern "C" int32_t mini_delete_section(mini_file* handle, const char* section) noexcept {
  if (const int32_t code = check(handle, section); code != INI_OK) return code;
  char path[FIO_PATH_BUFFER];
  file_path(handle, path);
  char name[kNameMax + 1];
  if (mini_section* s = find_loaded(handle, trimmed_copy(name, section, kNameMax))) {
    free_section(handle, s);
    ini_delete_section(path, section);
    return INI_OK;
  }
  return ini_delete_section(path, section);
}

// After failed memory (reported through zv_exit) the entry keeps its old name; result -1.
extern "C" int32_t mini_rename_entry(mini_file* handle, const char* section, const char* entry,
                                     const char* new_name) noexcept {
  if (const int32_t code = check(handle, entry); code != INI_OK) return code;
  char fresh[kNameMax + 1];
  if (new_name == nullptr || trimmed_copy(fresh, new_name, kNameMax)[0] == '\0')
    return INI_EMPTY_NAME;
  char name[kNameMax + 1];
  if (mini_section* s = find_loaded(handle, trimmed_copy(name, section, kNameMax))) {
    mini_entry* e = find_entry(s, entry);
    if (e == nullptr) return INI_NO_ENTRY;
    if (s->index != nullptr) s->index->invalidate();
    if (!replace_text(e->name, fresh)) return INI_ERROR;
    return INI_OK;
  }
  char path[FIO_PATH_BUFFER];
  return ini_rename_entry(file_path(handle, path), section, entry, new_name);
}

// After failed memory (reported through zv_exit) the section keeps its old name in memory and
// the file is not touched; result -1.
extern "C" int32_t mini_rename_section(mini_file* handle, const char* section,
                                       const char* new_name) noexcept {
  if (const int32_t code = check(handle, section); code != INI_OK) return code;
  char fresh[kNameMax + 1];
  if (new_name == nullptr || trimmed_copy(fresh, new_name, kNameMax)[0] == '\0')
    return INI_EMPTY_NAME;
  char path[FIO_PATH_BUFFER];
  file_path(handle, path);
  char name[kNameMax + 1];
  if (mini_section* s = find_loaded(handle, trimmed_copy(name, section, kNameMax))) {
    if (handle->index != nullptr) handle->index->invalidate();
    if (!replace_text(s->name, fresh)) return INI_ERROR;
    ini_rename_section(path, section, new_name);
    return INI_OK;
  }
  return ini_rename_section(path, section, new_name);
}
