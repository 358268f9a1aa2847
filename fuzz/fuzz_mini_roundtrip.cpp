// Fuzz target: settings files loaded into memory, written through a fresh handle, updated and
// loaded again. Every entry the format can carry comes back as it was read.
#include <tivlib/mini.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/run_dir.h"
#include "support/settings_roundtrip.h"

using namespace tiv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RunDir dir("/tmp/tivlib-fuzz-minirt.XXXXXX", "input.ini");
  static const std::string copy = (dir.path / "copy.ini").string();
  put_input(dir.file, data, size);
  put_input(copy, nullptr, 0);
  const std::string_view text(reinterpret_cast<const char*>(data), size);

  mini_file* in = mini_open(nullptr, dir.file.c_str(), MINI_READ_ONLY | MINI_LOAD_ALL);
  if (in == nullptr) std::abort();
  std::vector<Entry> entries;
  static char buffer[INI_LINE_MAX + 2];
  for (const std::string& section : header_names(text)) {
    if (!carries_name(section)) continue;
    int32_t n = INI_LINE_MAX;
    if (mini_read_string(in, section.c_str(), nullptr, buffer, &n) != INI_OK) continue;
    for (const std::string& name : split_list(buffer, n)) {
      if (entries.size() == kRoundTripEntries) break;
      int32_t room = INI_LINE_MAX;
      if (!carries_name(name) ||
          mini_read_string(in, section.c_str(), name.c_str(), buffer, &room) != INI_OK ||
          !carries_value(buffer))
        continue;
      entries.push_back({section, name, buffer});
    }
  }

  mini_file* out = mini_open(nullptr, copy.c_str(), 0);
  if (out == nullptr) std::abort();
  for (const Entry& e : entries)
    if (mini_write_string(out, e.section.c_str(), e.name.c_str(), e.value.c_str()) != INI_OK)
      std::abort();
  mini_close(&out);

  mini_file* back = mini_open(nullptr, copy.c_str(), MINI_READ_ONLY);
  if (back == nullptr) std::abort();
  static char first[INI_LINE_MAX + 2];
  for (const Entry& e : entries) {
    int32_t room = INI_LINE_MAX;
    int32_t again = INI_LINE_MAX;
    if (mini_read_string(back, e.section.c_str(), e.name.c_str(), buffer, &room) != INI_OK ||
        mini_read_string(in, e.section.c_str(), e.name.c_str(), first, &again) != INI_OK ||
        std::strcmp(buffer, first) != 0)
      std::abort();
  }
  mini_close(&back);
  mini_close(&in);
  return 0;
}
