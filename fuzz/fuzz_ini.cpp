// Direct settings operations on arbitrary files: the input is the settings file. Reads of the
// names the file itself uses, a write that must read back, and every kind of rewrite.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <tivlib/ini.h>

#include "support/run_dir.h"

using tiv::fuzz::first_section;
using tiv::fuzz::RunDir;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RunDir dir("/tmp/tivlib-fuzz-ini.XXXXXX", "input.ini");
  const char* file = dir.file.c_str();
  const std::string section = first_section(data, size);
  tiv::fuzz::put_input(dir.file, data, size);

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

  tiv::fuzz::put_input(dir.file, data, size);
  ini_delete_entry(file, section.c_str(), "a");
  tiv::fuzz::put_input(dir.file, data, size);
  ini_delete_section(file, section.c_str());
  tiv::fuzz::put_input(dir.file, data, size);
  ini_delete_section(file, nullptr);
  tiv::fuzz::put_input(dir.file, data, size);
  ini_rename_section(file, section.c_str(), "renamed");
  tiv::fuzz::put_input(dir.file, data, size);
  ini_rename_section(file, nullptr, "top");
  tiv::fuzz::put_input(dir.file, data, size);
  ini_rename_entry(file, section.c_str(), "a", "b");
  return 0;
}
