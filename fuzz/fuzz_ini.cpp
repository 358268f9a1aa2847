// Direct settings operations on arbitrary files: the input is the settings file. Reads of the
// names the file itself uses, a write that must read back, and every kind of rewrite.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <tivlib/ini.h>

namespace {

// A private directory for the whole run, named absolutely (the log zv.err lands in the
// working directory, which stays).
struct RunDir {
  RunDir() {
    char pattern[] = "/tmp/tivlib-fuzz-ini.XXXXXX";
    if (::mkdtemp(pattern) == nullptr) std::abort();
    path = pattern;
    file = (path / "input.ini").string();
  }
  ~RunDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::filesystem::path path;
  std::string file;
};

void put(const std::string& file, const uint8_t* data, size_t size) {
  std::FILE* f = std::fopen(file.c_str(), "wb");
  if (f == nullptr) std::abort();
  std::fwrite(data, 1, size, f);
  std::fclose(f);
}

// The first header name of the input (without brackets), or "s".
std::string first_section(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto open = text.find('[');
  if (open == std::string::npos) return "s";
  const auto close = text.find_first_of("]\n", open);
  std::string name = text.substr(open + 1, close == std::string::npos ? 40 : close - open - 1);
  if (name.size() > 40) name.resize(40);
  return name.c_str();  // up to a nul byte
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RunDir dir;
  const char* file = dir.file.c_str();
  const std::string section = first_section(data, size);
  put(dir.file, data, size);

  char buffer[600];
  int32_t n = static_cast<int32_t>(size % 600);
  ini_read_string(file, section.c_str(), nullptr, buffer, &n);
  n = 599;
  ini_read_string(file, nullptr, nullptr, buffer, &n);
  int32_t longs[4];
  int32_t count = 4;
  ini_read_longs(file, section.c_str(), "a", longs, &count);
  double doubles[4];
  count = 4;
  ini_read_doubles(file, nullptr, "a", doubles, &count);

  // A written value reads back from the first section of its name.
  if (ini_write_string(file, "fz", "key", "written value") == INI_OK) {
    n = 599;
    if (ini_read_string(file, "fz", "key", buffer, &n) != INI_OK ||
        std::strcmp(buffer, "written value") != 0)
      std::abort();
  }
  ini_write_string(file, section.c_str(), "a", "1");
  ini_write_string(file, nullptr, "u", "2");

  put(dir.file, data, size);
  ini_delete_entry(file, section.c_str(), "a");
  put(dir.file, data, size);
  ini_delete_section(file, section.c_str());
  put(dir.file, data, size);
  ini_delete_section(file, nullptr);
  put(dir.file, data, size);
  ini_rename_section(file, section.c_str(), "renamed");
  put(dir.file, data, size);
  ini_rename_section(file, nullptr, "top");
  put(dir.file, data, size);
  ini_rename_entry(file, section.c_str(), "a", "b");
  return 0;
}
