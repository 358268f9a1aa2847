// Path composition: fio_makepath, fio_divide, fio_test_filename, fio_get_extention_pos.
#include <cctype>
#include <string_view>

#include "files/path_text.h"

namespace tiv::files {

void divide(const char* path, PathParts& parts) {
  parts.host.clear();
  parts.dir.clear();
  parts.name.clear();
  std::string_view rest = path ? std::string_view(path) : std::string_view();
  if (rest.size() >= 2 && rest[1] == ':') {
    parts.host.assign(rest.substr(0, 2));
    rest.remove_prefix(2);
  }
  const std::size_t last = rest.find_last_of("\\/");
  if (last != std::string_view::npos) {
    parts.dir.assign(rest.substr(0, last + 1));
    rest.remove_prefix(last + 1);
  }
  parts.name.assign(rest);
}

namespace {

// The three parts of one argument joined in order; the name part is cut to 79 characters
// as in the name buffers of the composition.
PathText joined(const PathParts& parts) {
  PathText out(parts.host.view());
  out.append(parts.dir.view());
  out.append(parts.name.view().substr(0, kNameMax));
  return out;
}

// Puts the parts of an earlier argument in front of the path composed so far. A last
// component without separator is a directory and gets one; separators at the joint merge.
void joint(const PathParts& parts, PathText& path) {
  PathText prefix = joined(parts);
  if (!path.empty() && !parts.name.empty()) prefix.push_back('\\');
  if (prefix.empty()) return;
  if (is_separator(prefix.back()) && is_separator(path.front())) path.drop_front(1);
  prefix.append(path.view());
  path = prefix;
}

// 15 characters that no 8.3 name may hold.
constexpr std::string_view kForbiddenInName = " \"+,/:;<=>[\\]^|";

// Walks at most `limit` characters of a name part from `i`; gives false on a forbidden
// character. `stop_at_dot` ends the stem at a dot; in the extension a dot is forbidden.
bool walk_part(const char* name, std::size_t& i, std::size_t limit, bool stop_at_dot,
               bool& wild) {
  for (std::size_t n = 0; n < limit && name[i] != '\0'; ++n, ++i) {
    const char c = name[i];
    if (c == '.') {
      if (stop_at_dot) return true;
      return false;
    }
    if (kForbiddenInName.find(c) != std::string_view::npos) return false;
    if (c == '*' || c == '?') wild = true;
  }
  return true;
}

}  // namespace

}  // namespace tiv::files

using tiv::files::PathParts;
using tiv::files::PathText;

extern "C" char* fio_makepath(char* out, const char* host, const char* dir,
                              const char* name) noexcept {
  if (out == nullptr) return nullptr;
  PathParts parts;
  PathText path;
  if (name != nullptr) {
    tiv::files::divide(name, parts);
    path = tiv::files::joined(parts);
  }
  if (dir != nullptr && parts.host.empty()) {
    tiv::files::divide(dir, parts);
    tiv::files::joint(parts, path);
  }
  if (host != nullptr && parts.host.empty()) {
    tiv::files::divide(host, parts);
    tiv::files::joint(parts, path);
  }
  char* p = path.data();
  for (std::size_t i = 0; i < path.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(p[i]);
    if (c == '/')
      p[i] = '\\';
    else if (c >= 'A' && c <= 'Z')
      p[i] = static_cast<char>(c - 'A' + 'a');
  }
  // out may be one of the arguments: everything is read by now.
  std::memcpy(out, path.c_str(), path.size() + 1);
  return out;
}

extern "C" int32_t fio_divide(const char* path, char* host, char* dir, char* name) noexcept {
  PathParts parts;
  tiv::files::divide(path, parts);
  if (host != nullptr) std::memcpy(host, parts.host.c_str(), parts.host.size() + 1);
  if (dir != nullptr) std::memcpy(dir, parts.dir.c_str(), parts.dir.size() + 1);
  if (name != nullptr) std::memcpy(name, parts.name.c_str(), parts.name.size() + 1);
  return 0;
}

// The 8.3 rule: a stem of up to 8 characters, optionally a dot and up to 3 more.
extern "C" int32_t fio_test_filename(const char* name) noexcept {
  if (name == nullptr || name[0] == '\0') return 1;
  bool wild = false;
  std::size_t i = 0;
  if (!tiv::files::walk_part(name, i, 8, true, wild)) return 1;
  if (name[i] == '\0') return wild ? 2 : 0;
  if (name[i] != '.') return 1;
  ++i;
  if (!tiv::files::walk_part(name, i, 3, false, wild)) return 1;
  if (name[i] != '\0') return 1;
  return wild ? 2 : 0;
}

extern "C" int32_t fio_get_extention_pos(const char* name) noexcept {
  if (name == nullptr) return -1;
  const std::size_t n = std::strlen(name);
  if (n > static_cast<std::size_t>(INT32_MAX)) return -1;
  for (std::size_t i = n; i-- > 1;)
    if (name[i] == '.') return static_cast<int32_t>(i);
  return -1;
}
