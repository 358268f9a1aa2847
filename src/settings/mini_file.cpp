// Opening, updating and closing an in-memory settings handle.
#include <cstdio>
#include <cstring>

#include <tivlib/fio.h>
#include <tivlib/heap.h>
#include <tivlib/mini.h>
#include <tivlib/str.h>

#include "platform/files.h"
#include "settings/mini_merge.h"
#include "settings/mini_store.h"

using namespace tiv::settings;

namespace {

void free_handle(mini_file* handle) {
  while (handle->sections.first != nullptr)
    free_section(handle, static_cast<mini_section*>(handle->sections.first));
  delete handle->index;
  heap_free(handle->directory);
  heap_free(handle->name);
  heap_free(handle);
}

}  // namespace

// The place of the file: a directory inside name goes before the directory argument, which
// goes before the current directory; a name that is only a directory counts as no name, and
// no name means "zv.ini".
extern "C" mini_file* mini_open(const char* directory, const char* name, int32_t flags) noexcept {
  char host[FIO_HOST_MAX + 1] = "";
  char dir[FIO_PATH_BUFFER] = "";
  char file[FIO_PATH_BUFFER] = "";
  if (name != nullptr) fio_divide(name, host, dir, file);
  if (file[0] == '\0') fio_divide("zv.ini", host, dir, file);

  char found_dir[FIO_PATH_BUFFER + FIO_HOST_MAX];
  std::strcpy(found_dir, host);
  std::strcat(found_dir, dir);
  const char* place = found_dir;
  char cwd[FIO_PATH_BUFFER];
  if (place[0] == '\0') {
    if (directory != nullptr && directory[0] != '\0')
      place = directory;
    else
      place = fio_getcwd(cwd, static_cast<int32_t>(sizeof cwd)) != nullptr ? cwd : "";
  }

  auto* handle = static_cast<mini_file*>(heap_calloc(1, sizeof(mini_file)));
  if (handle == nullptr) return nullptr;
  handle->directory = str_alloc(place);
  handle->name = str_alloc(file);
  handle->flags = flags;
  if (handle->directory == nullptr || handle->name == nullptr) {
    free_handle(handle);
    return nullptr;
  }

  fio_handle* in = fio_open(handle->directory, handle->name, FIO_READ | FIO_TEXT);
  if (in != nullptr) {
    if ((flags & MINI_LOAD_ALL) != 0) load_all(handle, in);
    fio_close(in);
  } else if ((flags & MINI_READ_ONLY) != 0) {
    free_handle(handle);
    return nullptr;
  }
  return handle;
}

namespace {

// Flushes the settings file of the handle to the disk.
bool sync_settings_file(const mini_file* handle) {
  char path[FIO_PATH_BUFFER];
  if (fio_makepath(path, nullptr, handle->directory, handle->name) == nullptr) return false;
  return tiv::platform::sync_file(path);
}

}  // namespace

extern "C" int32_t mini_update_file(mini_file* handle) noexcept {
  if (handle == nullptr || (handle->flags & MINI_READ_ONLY) != 0) return 0;
  // A file that exists but can't be opened is left alone: merging memory alone would lose
  // every section never loaded.
  fio_handle* in = fio_open(handle->directory, handle->name, FIO_READ | FIO_TEXT);
  if (in == nullptr && (handle->flags & MINI_REPLACE) == 0 && file_exists(handle)) return 0;
  // The temporary file is made private (mode 0600, exclusively, no link followed) before the
  // file handle opens it.
  char tmpname[FIO_PATH_BUFFER] = "";
  std::FILE* made = fio_tmpnam(tmpname) != nullptr ? tiv::platform::create_private_file(tmpname)
                                                   : nullptr;
  if (made != nullptr) std::fclose(made);
  fio_handle* out = made != nullptr ? fio_open("", tmpname, FIO_WRITE | FIO_TEXT) : nullptr;
  if (out == nullptr) {
    fio_close(in);
    if (tmpname[0] != '\0') fio_purge("", tmpname);  // created before its handle failed?
    return 0;
  }
  bool ok = merge(handle, in, fio_fp(out));
  ok = tiv::platform::flush_to_disk(fio_fp(out)) && ok;  // on the disk before the copy
  const bool had_source = in != nullptr;
  fio_close(in);
  if (fio_close(out) != 0) ok = false;

  // A merge with a write fault leaves an existing settings file alone; with no file yet,
  // whatever was written is better than nothing.
  if (!ok && had_source) {
    fio_purge("", tmpname);
    return 0;
  }
  int32_t code = fio_copy("", tmpname, handle->directory, handle->name);
  if (code == 0 && !sync_settings_file(handle)) code = -1;  // the copy is on the disk too
  if (code == 0) fio_purge("", tmpname);  // after a failed copy the temporary file stays
  return ok && code == 0 ? 1 : 0;
}

extern "C" int32_t mini_unload_all_sections(mini_file* handle) noexcept {
  if (handle == nullptr) return -1;
  while (handle->sections.first != nullptr)
    free_section(handle, static_cast<mini_section*>(handle->sections.first));
  return 0;
}

extern "C" int32_t mini_unload_one_section(mini_file* handle, const char* section) noexcept {
  if (handle == nullptr) return -1;
  if (section == nullptr) return 1;
  mini_section* s = find_loaded(handle, section);  // the name as passed, untrimmed
  if (s == nullptr) return 1;
  free_section(handle, s);
  return 0;
}

extern "C" int32_t mini_close(mini_file** ref) noexcept {
  if (ref == nullptr || *ref == nullptr) return 0;
  mini_file* handle = *ref;
  if ((handle->flags & MINI_READ_ONLY) == 0) mini_update_file(handle);
  free_handle(handle);
  *ref = nullptr;
  return 1;
}
