// Minimal name mapping: back-slashes to '/'. Drives and case-insensitive matching come with
// the file-system layer.
#include "platform/files.h"

#include <string>

namespace tiv::platform {

std::string real_path(std::string_view path, Intent) {
  std::string out(path);
  for (char& c : out)
    if (c == '\\') c = '/';
  return out;
}

std::FILE* open_file(const char* path, const char* mode) {
  if (path == nullptr || mode == nullptr) return nullptr;
  std::string m;
  for (const char* p = mode; *p; ++p)
    if (*p != 't') m += *p;
  const bool creating = m.find_first_of("wa") != std::string::npos;
  return std::fopen(real_path(path, creating ? Intent::create : Intent::existing).c_str(), m.c_str());
}

std::size_t read_text(std::FILE* stream, char* buffer, std::size_t size) {
  std::size_t n = 0;
  while (n < size) {
    int c = std::getc(stream);
    if (c == EOF) break;
    if (c == '\r') {
      int d = std::getc(stream);
      if (d != '\n' && d != EOF) std::ungetc(d, stream);
      if (d == '\n') c = '\n';
    }
    buffer[n++] = static_cast<char>(c);
  }
  return n;
}

}  // namespace tiv::platform
