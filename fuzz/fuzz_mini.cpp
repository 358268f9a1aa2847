// In-memory settings handles on arbitrary files: the input is the settings file, opened with
// each way of loading; reads, writes, deletes and renames, then an update whose result must
// read back through a new handle.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <tivlib/mini.h>

#include "support/run_dir.h"

using tiv::fuzz::first_section;
using tiv::fuzz::RunDir;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RunDir dir("/tmp/tivlib-fuzz-mini.XXXXXX", "input.ini");
  const std::string section = first_section(data, size);
  const char* s = section.c_str();
  tiv::fuzz::put_input(dir.file, data, size);
  const int32_t flags = size > 0 ? data[0] % 4 : 0;  // replace and load-all in every mix

  mini_file* h = mini_open(nullptr, dir.file.c_str(), flags);
  if (h == nullptr) std::abort();
  char buffer[600];
  int32_t n = 599;
  mini_read_string(h, s, nullptr, buffer, &n);
  n = 599;
  mini_read_string(h, nullptr, "a", buffer, &n);
  mini_get_string(h, s, "a", nullptr, nullptr);
  int32_t longs[4];
  int32_t count = 4;
  mini_read_longs(h, s, "a", longs, &count);
  mini_write_string(h, s, "a", "1");
  mini_write_double(h, "fz", "d", 0.5);
  mini_rename_entry(h, s, "a", "b");
  mini_delete_entry(h, s, "x");
  if ((size & 1) != 0) mini_rename_section(h, s, "renamed");
  if ((size & 2) != 0) mini_delete_section(h, nullptr);
  mini_unload_one_section(h, s);
  // Written last, so no rename or unload above can move it.
  mini_write_string(h, "fz", "key", "written value");
  if (mini_update_file(h) == 1) {
    mini_file* check = mini_open(nullptr, dir.file.c_str(), MINI_READ_ONLY);
    n = 599;
    if (check == nullptr || mini_read_string(check, "fz", "key", buffer, &n) != INI_OK ||
        std::strcmp(buffer, "written value") != 0)
      std::abort();
    mini_close(&check);
  }
  mini_close(&h);
  return 0;
}
