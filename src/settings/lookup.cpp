// The search for data files along the current directory, the directory of the variable "ZV",
// the root of drive C: and the directory lists of the central settings file zv2.ini.
//
// "C:\" is a drive path like any other: the file layer maps the drive to a directory ("/"
// unless its variable says otherwise), so the last place searched is that directory.
#include <cstdio>
#include <cstring>

#include <tivlib/fio.h>
#include <tivlib/ini.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

namespace {

constexpr const char* kCentral = "zv2.ini";
// Characters of a value read from zv2.ini, of a path given back and of a report.
constexpr int32_t kValueMax = 256;
constexpr std::size_t kReportMax = 256;
constexpr std::size_t kPathBuffer = FIO_PATH_BUFFER;

const char* or_empty(const char* text) { return text != nullptr ? text : ""; }

void report(int32_t line, const char* format, const char* a, const char* b = nullptr,
            const char* c = nullptr) {
  char text[kReportMax];  // a longer report is cut
  if (std::snprintf(text, sizeof text, format, or_empty(a), or_empty(b), or_empty(c)) < 0)
    text[0] = '\0';
  zv_error(text, nullptr, nullptr, "Zv", line);
}

// Puts the path of name in the first of the current directory and the directory of "ZV"
// that holds it into path; false if neither does.
bool find_near(const char* cwd, const char* name, char* path) {
  if (fio_exist(cwd, name)) {
    fio_makepath(path, nullptr, cwd, name);
    return true;
  }
  const char* zv = zv_getenv("ZV", "");
  if (zv != nullptr && zv[0] != '\0' && fio_exist(zv, name)) {
    fio_makepath(path, nullptr, zv, name);
    return true;
  }
  return false;
}

// The places of zv2.ini: the current directory, the directory of "ZV", the root of C:.
bool find_central(const char* cwd, char* path) {
  if (find_near(cwd, kCentral, path)) return true;
  if (fio_exist("C:\\", kCentral)) {
    fio_makepath(path, "C:", "\\", kCentral);
    return true;
  }
  return false;
}

// The walk over a directory list uses str_tok, whose state outlives the call: the copy it
// cuts lives as long as the process.
char directory_list[kValueMax + 1];

}  // namespace

extern "C" int32_t zv_suche_datei(const char* section, const char* entry, const char* filename,
                                  char* out) noexcept {
  if (out == nullptr) return -1;
  char cwd[kPathBuffer] = "";
  if (fio_getcwd(cwd, static_cast<int32_t>(sizeof cwd)) == nullptr) cwd[0] = '\0';
  char path[kPathBuffer];

  if (filename == nullptr) {
    if (!find_central(cwd, path)) {
      report(__LINE__, "File C:\\%s not found", kCentral);
      return -1;
    }
    std::strcpy(out, path);
    return 0;
  }

  if (find_near(cwd, filename, path)) {
    std::strcpy(out, path);
    return 0;
  }
  char central[kPathBuffer];
  if (!find_central(cwd, central)) {
    report(__LINE__, "File %s in C:\\%s not found", filename, kCentral);
    return -1;
  }
  if (section == nullptr || section[0] == '\0' || entry == nullptr || entry[0] == '\0') {
    std::strcpy(out, central);
    return 0;
  }
  char value[kValueMax + 1];
  int32_t size = kValueMax;
  if (ini_read_string(central, section, entry, value, &size) != INI_OK) {
    report(__LINE__, "Section %s or Entry %s in %s not found", section, entry, central);
    return -1;
  }
  std::strcpy(directory_list, value);
  for (char* dir = str_tok(directory_list, ";"); dir != nullptr; dir = str_tok(nullptr, ";")) {
    if (fio_exist(dir, filename)) {
      fio_makepath(path, nullptr, dir, filename);
      while (str_tok(nullptr, ";") != nullptr) {
      }  // finish the walk, so the list is mended
      std::strcpy(out, path);
      return 0;
    }
  }
  report(__LINE__, "File %s in %s not found", filename, value);
  return -1;
}

extern "C" int32_t zv_suche_pfad(const char* section, const char* entry, char* out) noexcept {
  if (out == nullptr) return -1;
  char central[kPathBuffer];
  if (zv_suche_datei(nullptr, nullptr, kCentral, central) != 0) {
    report(__LINE__, "File %s  not found", kCentral);
    return -1;
  }
  char value[kValueMax + 1];
  int32_t size = kValueMax;
  // A nil entry would list the section's names: it counts as not found.
  if (entry == nullptr || ini_read_string(central, section, entry, value, &size) != INI_OK) {
    report(__LINE__, "Section %s or Entry %s in %s not found", section, entry, central);
    return -1;
  }
  fio_makepath(out, "", "", value);
  return 0;
}
