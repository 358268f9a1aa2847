// From a library path to a Linux name: drive, separators, and component case.
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "platform/drives.h"
#include "platform/files.h"

namespace tiv::platform {
namespace {

bool exists(const std::string& path) {
  struct stat st {};
  return ::lstat(path.c_str(), &st) == 0;
}

bool same_ignoring_case(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
    if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

// The entry of `directory` that equals `name` but for ASCII case. Of several, the first in
// byte order, so that the choice does not depend on the order of the directory.
std::string case_insensitive_match(const std::string& directory, std::string_view name) {
  DIR* d = ::opendir(directory.empty() ? "." : directory.c_str());
  if (d == nullptr) return {};
  std::string best;
  while (const dirent* e = ::readdir(d)) {
    std::string_view candidate(e->d_name);
    if (same_ignoring_case(candidate, name) && (best.empty() || candidate < best))
      best.assign(candidate);
  }
  ::closedir(d);
  return best;
}

// Appends a component to a path under construction ("" = relative and empty so far).
void append_component(std::string& path, bool absolute, std::string_view component) {
  if (!path.empty() || absolute) {
    if (path.empty() || path.back() != '/') path += '/';
  }
  path.append(component);
}

}  // namespace

std::string real_path(std::string_view path, Intent) {
  if (path.empty()) return {};
  const int drive = drive_of(path);
  std::string_view rest = drive ? path.substr(2) : path;
  const bool rooted = !rest.empty() && (rest.front() == '\\' || rest.front() == '/');

  // The real directory the rest counts from: "" means relative to the process directory.
  std::string base;
  bool absolute = true;
  if (rooted) {
    base = drive_root(drive ? drive : current_drive());
  } else if (drive != 0 && drive != current_drive()) {
    base = drive_directory(drive).value_or(drive_root(drive));
    if (base == "/") base.clear();
  } else {
    absolute = false;
  }

  std::vector<std::string_view> components;
  for (std::size_t i = 0; i < rest.size();) {
    const std::size_t j = rest.find_first_of("\\/", i);
    const std::size_t end = j == std::string_view::npos ? rest.size() : j;
    if (end > i) components.push_back(rest.substr(i, end - i));
    i = end + 1;
  }

  std::string exact = base;
  for (std::string_view c : components) append_component(exact, absolute, c);
  if (exact.empty()) return absolute ? "/" : ".";
  if (exists(exact)) return exact;

  // Walk the components: exact, else a case-insensitive match, else as given (and so for
  // everything behind a component that does not exist).
  std::string out = base;
  bool searching = true;
  for (std::string_view c : components) {
    if (searching && c != "." && c != "..") {
      std::string candidate = out;
      append_component(candidate, absolute, c);
      if (!exists(candidate)) {
        const std::string match =
            case_insensitive_match(out.empty() ? (absolute ? "/" : ".") : out, c);
        if (match.empty()) {
          searching = false;
        } else {
          append_component(out, absolute, match);
          continue;
        }
      }
    }
    append_component(out, absolute, c);
  }
  return out;
}

}  // namespace tiv::platform
