// Directory search with the wild cards '*' and '?'.
//
// A search path is "directory\mask" in the library's form (either separator; the directory
// is resolved like every library path). The mask matches names case-insensitively, as on the
// file system the library came from: '*' any run of characters, '?' one character, "*.*"
// every name, and a mask ending in ".*" also a name without any dot ("readme" for "read*.*").
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace tiv::platform {

// One entry found, with what the file's mode says of it.
struct FoundEntry {
  std::string name;
  bool directory = false;
  bool read_only = false;  // no write permission for the owner
  bool hidden = false;     // a name beginning with a dot, other than "." and ".."
  bool special = false;    // neither a regular file nor a directory (device, pipe, socket)
  std::uint64_t size = 0;
  std::time_t modified = -1;  // last write, or -1 when not known
};

// Whether `name` matches `mask` under the rules above.
bool mask_matches(std::string_view mask, std::string_view name) noexcept;

// All entries matching the search path, in the order of the directory ("." and ".." too).
// False when the directory cannot be read; true with no entries when nothing matches.
bool search_directory(std::string_view search_path, std::vector<FoundEntry>& found);

}  // namespace tiv::platform
