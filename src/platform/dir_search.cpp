// Directory search: readdir over the resolved directory, filtered by the mask.
#include "platform/dir_search.h"

#include <dirent.h>
#include <sys/stat.h>

#include "platform/files.h"

namespace tiv::platform {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Classic wild-card matching with backtracking to the last '*'.
bool glob(std::string_view mask, std::string_view name) {
  std::size_t m = 0, n = 0, star = std::string_view::npos, resume = 0;
  while (n < name.size()) {
    if (m < mask.size() && (mask[m] == '?' || lower(mask[m]) == lower(name[n]))) {
      ++m;
      ++n;
    } else if (m < mask.size() && mask[m] == '*') {
      star = m++;
      resume = n;
    } else if (star != std::string_view::npos) {
      m = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == '*') ++m;
  return m == mask.size();
}

}  // namespace

bool mask_matches(std::string_view mask, std::string_view name) noexcept {
  if (mask == "*.*" || mask == "*") return true;
  if (glob(mask, name)) return true;
  // "x.*" also takes a name without extension.
  if (mask.size() >= 2 && mask.substr(mask.size() - 2) == ".*" &&
      name.find('.') == std::string_view::npos)
    return glob(mask.substr(0, mask.size() - 2), name);
  return false;
}

bool search_directory(std::string_view search_path, std::vector<FoundEntry>& found) {
  const std::size_t cut = search_path.find_last_of("\\/");
  std::string_view mask = search_path;
  std::string directory = ".";
  if (cut != std::string_view::npos) {
    mask = search_path.substr(cut + 1);
    const std::string_view dir = search_path.substr(0, cut + 1);
    directory = real_path(dir, Intent::existing);
  } else if (search_path.size() >= 2 && search_path[1] == ':') {
    mask = search_path.substr(2);
    directory = real_path(search_path.substr(0, 2), Intent::existing);
  }
  DIR* d = ::opendir(directory.c_str());
  if (d == nullptr) return false;
  if (directory.back() != '/') directory += '/';
  while (const dirent* e = ::readdir(d)) {
    const std::string_view name(e->d_name);
    if (!mask_matches(mask, name)) continue;
    FoundEntry entry;
    entry.name.assign(name);
    struct stat st {};
    const std::string full = directory + entry.name;
    if (::stat(full.c_str(), &st) == 0 || ::lstat(full.c_str(), &st) == 0) {
      entry.directory = S_ISDIR(st.st_mode);
      entry.special = !S_ISDIR(st.st_mode) && !S_ISREG(st.st_mode);
      entry.read_only = (st.st_mode & S_IWUSR) == 0;
      entry.size = S_ISREG(st.st_mode) ? static_cast<std::uint64_t>(st.st_size) : 0;
      entry.modified = st.st_mtime;
    }
    entry.hidden = name.size() > 1 && name[0] == '.' && name != "..";
    found.push_back(std::move(entry));
  }
  ::closedir(d);
  return true;
}

}  // namespace tiv::platform
