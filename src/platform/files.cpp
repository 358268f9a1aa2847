// Streams on resolved names, and text reads that turn CR LF into LF.
#include "platform/files.h"

#include <cerrno>
#include <new>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace tiv::platform {

std::FILE* open_file(const char* path, const char* mode) noexcept {
  if (path == nullptr || mode == nullptr) return nullptr;
  try {
    std::string m;
    for (const char* p = mode; *p; ++p)
      if (*p != 't') m += *p;
    const bool creating = m.find_first_of("wa") != std::string::npos;
    const std::string real = real_path(path, creating ? Intent::create : Intent::existing);
    if (real.empty()) return nullptr;
    std::FILE* stream = std::fopen(real.c_str(), m.c_str());
    // A directory is no file: refused as on the file system the library came from.
    struct stat st {};
    if (stream != nullptr && ::fstat(::fileno(stream), &st) == 0 && S_ISDIR(st.st_mode)) {
      std::fclose(stream);
      errno = EISDIR;
      return nullptr;
    }
    return stream;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

std::FILE* create_private_file(const char* path) noexcept {
  if (path == nullptr) return nullptr;
  try {
    const std::string real = real_path(path, Intent::create);
    if (real.empty()) return nullptr;
    const int fd = ::open(real.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) return nullptr;
    std::FILE* stream = ::fdopen(fd, "w");
    if (stream == nullptr) ::close(fd);
    return stream;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

bool flush_to_disk(std::FILE* stream) noexcept {
  return stream != nullptr && std::fflush(stream) == 0 && ::fsync(::fileno(stream)) == 0;
}

bool sync_file(const char* path) noexcept {
  if (path == nullptr) return false;
  try {
    const std::string real = real_path(path, Intent::existing);
    const int fd = ::open(real.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::FILE* open_log_file(const char* path, bool empty_first, LogPlaceKind* kind) noexcept {
  *kind = LogPlaceKind::failed;
  if (path == nullptr) return nullptr;
  try {
    const std::string real = real_path(path, Intent::create);
    if (real.empty()) return nullptr;
    struct stat link {};
    int flags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC;
    if (::lstat(real.c_str(), &link) == 0) {
      if (S_ISLNK(link.st_mode)) {
        struct stat target {};
        const uid_t me = ::getuid();
        if (link.st_uid != me || ::stat(real.c_str(), &target) != 0 || target.st_uid != me) {
          *kind = LogPlaceKind::not_a_file;
          return nullptr;
        }
      } else {
        flags |= O_NOFOLLOW;
      }
      if (S_ISDIR(link.st_mode)) {
        *kind = LogPlaceKind::not_a_file;
        return nullptr;
      }
    }
    const int fd = ::open(real.c_str(), flags, 0666);
    if (fd < 0) {
      // ENXIO: a FIFO that nobody reads; EISDIR, ELOOP: no file to write to.
      if (errno == ENXIO || errno == EISDIR || errno == ELOOP) *kind = LogPlaceKind::not_a_file;
      return nullptr;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
      ::close(fd);
      *kind = LogPlaceKind::not_a_file;
      return nullptr;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if (empty_first && ::ftruncate(fd, 0) != 0) {
      ::close(fd);
      return nullptr;
    }
    std::FILE* stream = ::fdopen(fd, "a");
    if (stream == nullptr) {
      ::close(fd);
      return nullptr;
    }
    *kind = LogPlaceKind::file;
    return stream;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

std::size_t read_text(std::FILE* stream, char* buffer, std::size_t size) noexcept {
  if (stream == nullptr || buffer == nullptr) return 0;
  std::size_t n = 0;
  while (n < size) {
    const int c = get_text_char(stream);
    if (c == EOF) break;
    buffer[n++] = static_cast<char>(c);
  }
  return n;
}

}  // namespace tiv::platform
