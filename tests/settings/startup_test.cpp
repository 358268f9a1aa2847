// Start-up settings and the search for settings and data files. Drive C: is mapped to the
// test's directory, the current directory is its subdirectory "work".
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <tivlib/ini.h>
#include <tivlib/zv.h>

#include "settings_test_util.h"

namespace {

using tiv::test::error_record;
using tiv::test::log_text;
using tiv::test::ScopedEnv;
using tiv::test::write_file;

class Startup : public tiv::test::SettingsDir {
 protected:
  Startup()
      : drive_("TIVLIB_DRIVE_C", dir_.path().c_str()), zv_("zv", nullptr), upper_("ZV", nullptr) {
    std::filesystem::create_directory("work");
    std::filesystem::create_directory("zvdir");
    std::filesystem::current_path("work");
  }
  // A path of the test directory, seen from the current directory "work".
  static std::string up(const std::string& name) { return "../" + name; }

  // What zv_suche_datei finds, or "-1 " and what it left in the output buffer.
  std::string find(const char* section, const char* entry, const char* name) {
    const int32_t code = zv_suche_datei(section, entry, name, out_);
    return code == 0 ? std::string(out_) : std::to_string(code) + " " + out_;
  }

  ScopedEnv drive_;
  ScopedEnv zv_;
  ScopedEnv upper_;
  char out_[256] = "untouched";
};

// The [Beep] section of zv.ini replaces the pairs it gives, one value or two.
TEST_F(Startup, BeepSettingsFromZvIni) {
  write_file("zv.ini", "[Beep]\nError=1,2\nWarning=5\nTick=7,8,9\n");
  ini_initialize_clib();
  const int32_t* error = ini_beep_values("Error");
  const int32_t* warning = ini_beep_values("Warning");
  const int32_t* tick = ini_beep_values("Tick");
  ASSERT_NE(error, nullptr);
  EXPECT_EQ((std::vector<int32_t>{error[0], error[1], warning[0], warning[1], tick[0], tick[1]}),
            (std::vector<int32_t>{1, 2, 5, 700, 7, 8}));
  EXPECT_EQ(ini_beep_values("Other"), nullptr);
}

TEST_F(Startup, GetIniPath) {
  EXPECT_STREQ(zv_getinipath("zv"), "c:\\zv\\zv2.ini");
  EXPECT_STREQ(zv_getinipath("abc"), "c:\\zv\\abc.ini");
  // "c:\zv\" lies under the directory of drive C:.
  std::filesystem::create_directory(up("zv"));
  write_file(up("zv/zv2.ini"), "[Pfade]\nabc=d:\\x\\y.ini\n");
  EXPECT_STREQ(zv_getinipath("abc"), "d:\\x\\y.ini");
  EXPECT_STREQ(zv_getinipath("other"), "c:\\zv\\other.ini");
  EXPECT_STREQ(zv_getinipath(nullptr), "c:\\zv\\.ini");

  write_file("central.ini", "[Pfade]\nabc=mine.ini\nlong=" + std::string(300, 'x') + "\n");
  ScopedEnv zv("zv", "central.ini");
  EXPECT_STREQ(zv_getinipath("zv"), "central.ini");
  EXPECT_STREQ(zv_getinipath("abc"), "mine.ini");
  EXPECT_STREQ(zv_getinipath("long"), "c:\\zv\\long.ini");
  EXPECT_EQ(log_text(), "");
}

TEST_F(Startup, CentralFileIsSearchedInOrder) {
  ScopedEnv zv("ZV", "c:\\zvdir");
  write_file("zv2.ini", "");
  write_file(up("zvdir/zv2.ini"), "");
  write_file(up("zv2.ini"), "");
  EXPECT_EQ(find(nullptr, nullptr, nullptr), "c:\\work\\zv2.ini");
  EXPECT_EQ(find("", "x", nullptr), "c:\\work\\zv2.ini");
  std::filesystem::remove("zv2.ini");
  EXPECT_EQ(find(nullptr, nullptr, nullptr), "c:\\zvdir\\zv2.ini");
  std::filesystem::remove(up("zvdir/zv2.ini"));
  EXPECT_EQ(find(nullptr, nullptr, nullptr), "c:\\zv2.ini");
  std::filesystem::remove(up("zv2.ini"));
  std::strcpy(out_, "untouched");
  EXPECT_EQ(find(nullptr, nullptr, nullptr), "-1 untouched");
  EXPECT_EQ(log_text(), error_record("Zv", "File C:\\zv2.ini not found"));
}

TEST_F(Startup, DataFileAlongTheDirectoryList) {
  std::filesystem::create_directory(up("b"));
  write_file(up("b/data.pro"), "");
  write_file("zv2.ini", "[Dirs]\nlist=c:\\a;;c:\\b\nnone=c:\\a\nlong=" + std::string(300, 'x') + "\n");
  EXPECT_EQ(find("Dirs", "list", "data.pro"), "c:\\b\\data.pro");
  // Without a section or entry the result is the central file itself.
  EXPECT_EQ(find("Dirs", "", "data.pro"), "c:\\work\\zv2.ini");
  write_file("here.pro", "");
  EXPECT_EQ(find("Dirs", "list", "here.pro"), "c:\\work\\here.pro");

  std::strcpy(out_, "untouched");
  EXPECT_EQ(find("Dirs", "none", "data.pro"), "-1 untouched");
  EXPECT_EQ(find("Dirs", "long", "data.pro"), "-1 untouched");
  EXPECT_EQ(find("Dirs", "missing", "data.pro"), "-1 untouched");
  EXPECT_EQ(log_text(),
            error_record("Zv", "File data.pro in c:\\a not found") +
                error_record("Zv", "Section Dirs or Entry long in c:\\work\\zv2.ini not found") +
                error_record("Zv", "Section Dirs or Entry missing in c:\\work\\zv2.ini not found"));
}

TEST_F(Startup, SearchPath) {
  EXPECT_EQ(zv_suche_pfad("System", "Profile", out_), -1);
  EXPECT_EQ(log_text(), error_record("Zv", "File zv2.ini in C:\\zv2.ini not found") +
                            error_record("Zv", "File zv2.ini  not found"));
  write_file("zv2.ini", "[System]\nProfile=D:/Data/Pro/\n");
  EXPECT_EQ(zv_suche_pfad("System", "Profile", out_), 0);
  EXPECT_STREQ(out_, "d:\\data\\pro\\");
  EXPECT_EQ(zv_suche_pfad("System", "Other", out_), -1);
}

}  // namespace
