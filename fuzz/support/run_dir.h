// Shared harness pieces of the fuzz targets that work on a file: a private directory for the
// whole run, the input written to it, and a section name taken from the input.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace tiv::fuzz {

// A private directory for the whole run, named absolutely: the working directory stays, so
// that libFuzzer finds relative corpus paths (the log zv.err lands in the working directory).
// The library lower-cases the directory name and finds it again case-insensitively. `file` is
// the input file inside it.
struct RunDir {
  RunDir(const char* pattern_text, const char* file_name) {
    std::string pattern = pattern_text;  // mkdtemp fills in the trailing XXXXXX
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path = pattern;
    file = (path / file_name).string();
  }
  RunDir(const RunDir&) = delete;
  RunDir& operator=(const RunDir&) = delete;
  ~RunDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::filesystem::path path;
  std::string file;
};

// Writes the input as the whole content of file; aborts if the file can't be created.
inline void put_input(const std::string& file, const uint8_t* data, size_t size) {
  std::FILE* f = std::fopen(file.c_str(), "wb");
  if (f == nullptr) std::abort();
  std::fwrite(data, 1, size, f);
  std::fclose(f);
}

// The first header name of a settings input (without brackets, at most 40 characters, up to
// a nul byte), or "s" when it has none.
inline std::string first_section(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto open = text.find('[');
  if (open == std::string::npos) return "s";
  const auto close = text.find_first_of("]\n", open);
  std::string name = text.substr(open + 1, close == std::string::npos ? 40 : close - open - 1);
  if (name.size() > 40) name.resize(40);
  return name.c_str();
}

}  // namespace tiv::fuzz
