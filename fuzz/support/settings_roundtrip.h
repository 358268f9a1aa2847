// The round trip of settings files shared by the direct and the in-memory targets: every
// entry that the format can carry (names and values without the format's own characters),
// read from the input, written into a fresh file and read back, must come back the same.
#pragma once

#include <tivlib/ini.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace tiv::fuzz {

// Entries taken per input: each direct write rewrites the whole file.
inline constexpr std::size_t kRoundTripEntries = 40;

struct Entry {
  std::string section, name, value;
};

// A name the settings format writes and finds again as given: no brackets, '=', ';' or
// control characters, no blanks at its ends, not empty, within the name limit.
inline bool carries_name(std::string_view name) {
  if (name.empty() || name.size() > INI_NAME_MAX) return false;
  if (name.front() == ' ' || name.back() == ' ') return false;
  for (unsigned char c : name)
    if (c < 0x20 || c == 0x7f || c == 0xff || c == '[' || c == ']' || c == '=' || c == ';')
      return false;
  return true;
}

// A value the format carries: one line, no blanks at its ends, well below the line limit.
inline bool carries_value(std::string_view value) {
  if (value.size() > INI_LINE_MAX / 2) return false;
  if (!value.empty() && (value.front() == ' ' || value.back() == ' ')) return false;
  for (unsigned char c : value)
    if (c < 0x20 || c == 0x7f || c == 0xff || c == ';') return false;
  return true;
}

// The section names of the input's header lines, in file order, first spelling of each.
inline std::vector<std::string> header_names(std::string_view text) {
  std::vector<std::string> names;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = text.find('\n', at);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(at, end - at);
    at = end + 1;
    const std::size_t open = line.find_first_not_of(" \t");
    if (open == std::string_view::npos || line[open] != '[') continue;
    const std::size_t close = line.find(']', open);
    if (close == std::string_view::npos) continue;
    names.emplace_back(line.substr(open + 1, close - open - 1));
  }
  return names;
}

// The entry names of a list as the reads give it: each behind its terminator, closed by one
// more terminator.
inline std::vector<std::string> split_list(const char* list, int32_t size) {
  std::vector<std::string> names;
  for (int32_t at = 0; at < size && list[at] != '\0';) {
    const std::string name(list + at);
    at += static_cast<int32_t>(name.size()) + 1;
    names.push_back(name);
  }
  return names;
}

}  // namespace tiv::fuzz
