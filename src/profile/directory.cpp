// The catalogue directory and the normalisation of catalogue paths.
#include "profile/catalog.h"

#include <tivlib/fio.h>
#include <tivlib/ini.h>
#include <tivlib/zv.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

// The directory set by profil_path; empty means "ask the central settings file".
char profil_directory[tiv::profile::kDirectoryMax + 1] = "";

// [System] Profile of the central settings file into out (kDirectoryMax + 1), or empty.
void read_directory_setting(char* out) {
  out[0] = '\0';
  char settings[FIO_PATH_BUFFER] = "";
  if (zv_suche_datei(nullptr, nullptr, nullptr, settings) != 0) return;
  int32_t size = tiv::profile::kDirectoryMax;
  // A missing section or entry leaves the text empty; a value beyond the limit arrives cut.
  ini_read_string(settings, "System", "Profile", out, &size);
  out[tiv::profile::kDirectoryMax] = '\0';
}

// Blanks (0x20) only, at both ends.
std::string_view trim_blanks(std::string_view s) {
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

// A slash counts as a back-slash, so that Linux paths take the same way.
bool is_separator(char c) { return c == '\\' || c == '/'; }

}  // namespace

extern "C" void profil_path(const char* directory) noexcept {
  using tiv::profile::kDirectoryMax;
  // An argument beyond the directory limit is cut to it.
  const std::string_view given = directory ? std::string_view(directory).substr(0, kDirectoryMax) : "";
  const std::string_view copy = trim_blanks(given);
  profil_directory[0] = '\0';
  if (!copy.empty()) {
    copy.copy(profil_directory, copy.size());
    profil_directory[copy.size()] = '\0';
    return;
  }
  read_directory_setting(profil_directory);
}

namespace tiv::profile {

void catalogue_directory(char* out) {
  if (profil_directory[0] != '\0') {
    std::strcpy(out, profil_directory);
    return;
  }
  read_directory_setting(out);
}

void normalise_path(char* path) {
  std::string base;
  std::string_view rest(path);
  if (!rest.empty() && (rest.front() == '.' || is_separator(rest.front()))) {
    char cwd[FIO_PATH_BUFFER] = "";
    if (fio_getcwd(cwd, FIO_PATH_BUFFER) != nullptr) base = cwd;
  }
  if (!rest.empty() && rest.front() == '.') {
    if (rest == "." || (rest.size() > 1 && is_separator(rest[1])))
      rest.remove_prefix(std::min<size_t>(rest.size(), 2));
    while (rest == ".." || (rest.size() > 2 && rest.starts_with("..") && is_separator(rest[2]))) {
      rest.remove_prefix(std::min<size_t>(rest.size(), 3));
      const size_t cut = base.find_last_of("\\/");
      if (cut != std::string::npos) base.resize(cut);
    }
  } else if (!rest.empty() && is_separator(rest.front())) {
    // A leading separator means the root of the working directory's drive. The working
    // directory always comes in the drive form ("C:\home\user"); without a colon the path is
    // taken as it stands.
    const size_t colon = base.find(':');
    base.resize(colon == std::string::npos ? 0 : colon + 1);
  }
  if (!base.empty() && base.back() == ':') base += '\\';
  const std::string dir(rest);
  char out[FIO_PATH_BUFFER] = "";
  fio_makepath(out, base.c_str(), dir.c_str(), "");
  out[kPathMax] = '\0';
  std::strcpy(path, out);
}

bool clean_query(const char* query, char* out) {
  out[0] = '\0';
  if (query == nullptr) return false;
  int kept = 0;
  // A query beyond the limit is cut to kQueryMax characters before the blanks go.
  for (int i = 0; i < kQueryMax && query[i] != '\0'; ++i)
    if (query[i] != ' ' && query[i] != '\t') out[kept++] = query[i];
  out[kept] = '\0';
  return true;
}

}  // namespace tiv::profile
