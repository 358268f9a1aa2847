// Start-up settings: the Beep settings of zv.ini, and the mapping of a settings name to its
// file through the [Pfade] section of the central settings file.
//
// Drive paths such as "c:\zv\" stay as they are: the file layer maps a drive to a directory
// (C: to "/" unless its variable says otherwise), so "c:\zv\zv2.ini" is /zv/zv2.ini by
// default.
#include <algorithm>
#include <cstring>

#include <tivlib/ini.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

namespace {

// Each array holds two numbers; what they mean is the host's business (frequency and
// duration, by their start values), since nothing in the library reads them.
int32_t zv_beep_error[2] = {500, 700};
int32_t zv_beep_warning[2] = {100, 700};
int32_t zv_beep_tick[2] = {1, 0};

struct BeepSetting {
  const char* entry;
  int32_t* values;
};
constexpr BeepSetting kBeepSettings[] = {
    {"Error", zv_beep_error}, {"Warning", zv_beep_warning}, {"Tick", zv_beep_tick}};

// Characters of the path zv_getinipath gives, and its buffer.
constexpr std::size_t kIniPathMax = 256;
char zv_inipath[kIniPathMax + 1];

constexpr const char* kCentralDefault = "c:\\zv\\zv2.ini";
constexpr const char* kDefaultDirectory = "c:\\zv\\";

// Appends text to zv_inipath, never beyond kIniPathMax characters.
void append_inipath(const char* text) {
  const std::size_t used = std::strlen(zv_inipath);
  const std::size_t n = std::min(std::strlen(text), kIniPathMax - used);
  std::memcpy(zv_inipath + used, text, n);
  zv_inipath[used + n] = '\0';
}

}  // namespace

extern "C" void ini_initialize_clib(void) noexcept {
  for (const BeepSetting& s : kBeepSettings) {
    int32_t count = 2;
    ini_read_longs(nullptr, "Beep", s.entry, s.values, &count);
  }
}

extern "C" const int32_t* ini_beep_values(const char* entry) noexcept {
  if (entry == nullptr) return nullptr;
  for (const BeepSetting& s : kBeepSettings)
    if (str_eq(entry, s.entry)) return s.values;
  return nullptr;
}

// A nil name counts as the empty name; it is not looked up (a nil entry would list names).
extern "C" const char* zv_getinipath(const char* name) noexcept {
  const char* path = zv_getenv("zv", kCentralDefault);
  if (name != nullptr && std::strcmp(name, "zv") == 0) return path;
  if (name != nullptr) {
    int32_t size = static_cast<int32_t>(kIniPathMax);
    if (ini_read_string(path, "Pfade", name, zv_inipath, &size) == INI_OK) return zv_inipath;
  }
  zv_inipath[0] = '\0';
  append_inipath(kDefaultDirectory);
  append_inipath(name != nullptr ? name : "");
  append_inipath(".ini");
  return zv_inipath;
}
