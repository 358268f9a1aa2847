// Fuzz target: settings files read, written and read again through the direct operations.
// Every entry the format can carry comes back from a fresh file as it was read.
#include <tivlib/ini.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/run_dir.h"
#include "support/settings_roundtrip.h"

using namespace tiv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static RunDir dir("/tmp/tivlib-fuzz-inirt.XXXXXX", "input.ini");
  static const std::string copy = (dir.path / "copy.ini").string();
  put_input(dir.file, data, size);
  put_input(copy, nullptr, 0);
  const std::string_view text(reinterpret_cast<const char*>(data), size);

  std::vector<Entry> entries;
  static char buffer[INI_LINE_MAX + 2];
  for (const std::string& section : header_names(text)) {
    if (!carries_name(section)) continue;
    int32_t n = INI_LINE_MAX;
    if (ini_read_string(dir.file.c_str(), section.c_str(), nullptr, buffer, &n) != INI_OK) continue;
    for (const std::string& name : split_list(buffer, n)) {
      if (entries.size() == kRoundTripEntries) break;
      int32_t room = INI_LINE_MAX;
      if (!carries_name(name) ||
          ini_read_string(dir.file.c_str(), section.c_str(), name.c_str(), buffer, &room) != INI_OK ||
          !carries_value(buffer))
        continue;
      entries.push_back({section, name, buffer});
    }
  }
  for (const Entry& e : entries)
    if (ini_write_string(copy.c_str(), e.section.c_str(), e.name.c_str(), e.value.c_str()) != INI_OK)
      std::abort();
  // A repeated name reads as its first spelling: what was read first is what comes back.
  for (const Entry& e : entries) {
    int32_t room = INI_LINE_MAX;
    if (ini_read_string(copy.c_str(), e.section.c_str(), e.name.c_str(), buffer, &room) != INI_OK)
      std::abort();
    int32_t again = INI_LINE_MAX;
    static char first[INI_LINE_MAX + 2];
    ini_read_string(dir.file.c_str(), e.section.c_str(), e.name.c_str(), first, &again);
    if (std::strcmp(buffer, first) != 0) std::abort();
  }
  return 0;
}
