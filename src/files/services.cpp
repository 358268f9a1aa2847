// File-system services on names: copy, rename, delete, existence, directories, temporary
// names, and the three operations that only report.
#include <cstring>

#include <tivlib/fio.h>
#include <tivlib/zv.h>

#include "files/handle.h"
#include "platform/files.h"
#include "platform/drives.h"
#include "platform/fs_ops.h"

namespace tiv::files {
namespace {

constexpr std::size_t kCopyBlock = 512;
constexpr const char* kNotImplemented = "Not yet implemented";

// A composed path of dir and name (host ""), in a buffer of its own.
struct Composed {
  char text[FIO_PATH_BUFFER];
  Composed(const char* dir, const char* name) { fio_makepath(text, "", dir, name); }
};

// Closes a stdio stream when it leaves scope.
struct StreamCloser {
  std::FILE* stream;
  ~StreamCloser() {
    if (stream) std::fclose(stream);
  }
};

}  // namespace
}  // namespace tiv::files

using tiv::files::Composed;

// The name a temporary file may take. With nil the name stands in a buffer of the library,
// overwritten by the next such call. A caller's buffer holds FIO_PATH_BUFFER characters.
extern "C" char* fio_tmpnam(char* buffer) noexcept {
  static char shared[FIO_PATH_BUFFER];
  const std::string name = tiv::platform::temporary_name();
  if (name.empty() || name.size() > FIO_PATH_MAX) return nullptr;
  char* out = buffer ? buffer : shared;
  std::memcpy(out, name.c_str(), name.size() + 1);
  return out;
}

// Copies in blocks of 512 bytes. 1: the source cannot be opened, 2: the target cannot,
// 3: a write fell short (the target keeps what was written).
extern "C" int32_t fio_copy(const char* source_dir, const char* source_name, const char* target_dir,
                            const char* target_name) noexcept {
  const Composed source(source_dir, source_name);
  const Composed target(target_dir, target_name);
  tiv::files::StreamCloser in{tiv::platform::open_file(source.text, "rb")};
  if (in.stream == nullptr) return 1;
  tiv::files::StreamCloser out{tiv::platform::open_file(target.text, "wb")};
  if (out.stream == nullptr) return 2;
  char block[tiv::files::kCopyBlock];
  std::size_t got;
  do {
    got = std::fread(block, 1, sizeof block, in.stream);
    if (std::fwrite(block, 1, got, out.stream) < got) return 3;
  } while (got == sizeof block);
  // The last blocks may still sit in the stream's buffer: a write fault there is one too.
  if (std::fflush(out.stream) != 0) return 3;
  return 0;
}

extern "C" int32_t fio_move(const char*, const char*, const char*, const char*) noexcept {
  zv_error(tiv::files::kNotImplemented, nullptr, nullptr, tiv::files::kSource, __LINE__);
  return -1;
}

extern "C" int32_t fio_ispath(const char*) noexcept {
  zv_error(tiv::files::kNotImplemented, nullptr, nullptr, tiv::files::kSource, __LINE__);
  return 1;
}

extern "C" int32_t fio_islock(fio_handle*) noexcept {
  zv_error(tiv::files::kNotImplemented, nullptr, nullptr, tiv::files::kSource, __LINE__);
  return -1;
}

// Renames within one directory. As on the file system the library came from, an existing
// file of the new name is not replaced: the call gives -1.
extern "C" int32_t fio_rename(const char* dir, const char* old_name, const char* new_name) noexcept {
  const Composed from(dir, old_name);
  const Composed to(dir, new_name);
  if (tiv::platform::path_exists(to.text) && std::strcmp(from.text, to.text) != 0) return -1;
  return tiv::platform::rename_file(from.text, to.text) ? 0 : -1;
}

extern "C" int32_t fio_purge(const char* dir, const char* name) noexcept {
  const Composed path(dir, name);
  return tiv::platform::remove_file(path.text) ? 0 : -1;
}

extern "C" int32_t fio_exist(const char* dir, const char* name) noexcept {
  const Composed path(dir, name);
  return tiv::platform::path_exists(path.text) ? 1 : 0;
}

extern "C" int32_t fio_access(const char* dir, const char* name, int32_t mode) noexcept {
  const Composed path(dir, name);
  if (!tiv::platform::path_exists(path.text)) return 0;
  if ((mode & 2) && !tiv::platform::path_is_writable(path.text)) return 0;
  return 1;
}

extern "C" int32_t fio_mkdir(const char* dir) noexcept {
  const Composed path(dir, nullptr);
  return tiv::platform::make_directory(path.text) ? 0 : -1;
}

extern "C" int32_t fio_rmdir(const char* dir) noexcept {
  const Composed path(dir, nullptr);
  return tiv::platform::remove_directory(path.text) ? 0 : -1;
}

extern "C" int32_t fio_chdir(const char* dir) noexcept {
  const Composed path(dir, nullptr);
  if (path.text[0] == '\0') return -1;
  return tiv::platform::change_directory(path.text) ? 0 : -1;
}
