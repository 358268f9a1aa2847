// Streams on resolved names, and text reads that turn CR LF into LF.
#include "platform/files.h"

#include <cerrno>
#include <new>
#include <sys/stat.h>
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
