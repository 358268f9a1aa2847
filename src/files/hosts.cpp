// Hosts (drives): the current drive, working directories per drive, and the absolute form
// of a path.
#include <cstring>
#include <string>

#include <tivlib/fio.h>

#include "files/path_text.h"
#include "platform/drives.h"
#include "platform/fs_ops.h"

namespace tiv::files {
namespace {

// The drive number a host text names: blanks trimmed, the first character upper-cased,
// minus 64 (A is 1). kBlank for a nil or blank text. Numbers outside 1..26 name no drive.
constexpr int kBlank = -1000;
int host_number(const char* host) {
  if (host == nullptr) return kBlank;
  while (*host == ' ') ++host;
  if (*host == '\0') return kBlank;
  unsigned char c = static_cast<unsigned char>(*host);
  if (c >= 'a' && c <= 'z') c = static_cast<unsigned char>(c - 'a' + 'A');
  return c - 64;
}

// Copies text into buffer when it fits with its terminator.
char* deliver(const std::string& text, char* buffer, int32_t size) {
  if (buffer == nullptr || text.empty() || size <= 0 ||
      text.size() + 1 > static_cast<std::size_t>(size))
    return nullptr;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return buffer;
}

}  // namespace
}  // namespace tiv::files

extern "C" char* fio_getcwd(char* buffer, int32_t size) noexcept {
  const std::string cwd =
      tiv::platform::working_directory_drive_form(tiv::platform::current_drive());
  return tiv::files::deliver(cwd, buffer, size);
}

// Notes the current drive, makes the host's current, takes its working directory and sets
// the noted drive again. A host that cannot be made current gives the current one's.
extern "C" char* fio_get_host_cwd(const char* host, char* buffer, int32_t size) noexcept {
  const int drive = tiv::files::host_number(host);
  if (drive == tiv::files::kBlank) return fio_getcwd(buffer, size);
  const int noted = tiv::platform::current_drive();
  tiv::platform::set_current_drive(drive);
  char* result = fio_getcwd(buffer, size);
  tiv::platform::set_current_drive(noted);
  return result;
}

// "X:" for the current drive. The buffer holds 3 characters; with size 2 the terminator is
// left out so that nothing beyond the given size is written.
extern "C" int32_t fio_gethostname(char* buffer, int32_t size) noexcept {
  if (buffer == nullptr || size < 2) return -1;
  buffer[0] = static_cast<char>(tiv::platform::current_drive() + 64);
  buffer[1] = ':';
  if (size > 2) buffer[2] = '\0';
  return 0;
}

extern "C" int32_t fio_sethostname(const char* host) noexcept {
  const int drive = tiv::files::host_number(host);
  if (drive == tiv::files::kBlank) return 0;
  tiv::platform::set_current_drive(drive);
  return tiv::platform::current_drive() == drive ? 0 : -1;
}

extern "C" int32_t fio_host_exist(const char* host) noexcept {
  const int drive = tiv::files::host_number(host);
  if (drive == tiv::files::kBlank) return 1;
  const int noted = tiv::platform::current_drive();
  const bool made = tiv::platform::set_current_drive(drive);
  tiv::platform::set_current_drive(noted);
  return made ? 1 : 0;
}

// The absolute form: a path without host gets the current one, a directory that does not
// start at the root counts from the host's working directory, and a trailing separator goes
// unless the directory is the root itself.
extern "C" char* fio_make_fullpath(char* out, const char* host, const char* dir,
                                   const char* name) noexcept {
  if (out == nullptr) return nullptr;
  char composed[FIO_PATH_BUFFER];
  char part_host[FIO_HOST_MAX + 2];
  char part_dir[FIO_PATH_BUFFER];
  char part_name[FIO_PATH_BUFFER];
  fio_makepath(composed, host, dir, name);
  fio_divide(composed, part_host, part_dir, part_name);
  if (part_host[0] == '\0') fio_gethostname(part_host, sizeof part_host);
  char result[FIO_PATH_BUFFER];
  if (tiv::files::is_separator(part_dir[0])) {
    fio_makepath(result, part_host, part_dir, part_name);
  } else {
    char cwd[FIO_PATH_BUFFER];
    const char* base = fio_get_host_cwd(part_host, cwd, sizeof cwd);
    fio_makepath(result, base ? base : part_host, part_dir, part_name);
  }
  const std::size_t n = std::strlen(result);
  if (n > 0 && tiv::files::is_separator(result[n - 1])) {
    fio_divide(result, part_host, part_dir, part_name);
    const bool root = std::strlen(part_dir) == 1;
    if (!root) result[n - 1] = '\0';
  }
  std::memcpy(out, result, std::strlen(result) + 1);
  return out;
}
