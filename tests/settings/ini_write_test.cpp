// Rewrites of settings files: the normal form in front of the point of change, the bytes
// behind it, and what happens when the temporary file or the copy fails (a full disk is
// tested at many cut points in the reliability tests).
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include <tivlib/ini.h>

#include "settings_test_util.h"

namespace {

using tiv::test::kMalformedRecord;
using tiv::test::log_text;
using tiv::test::read_file;
using tiv::test::write_file;
using namespace std::string_literals;

class IniWrite : public tiv::test::SettingsDir {};

TEST_F(IniWrite, WorkedExample) {
  write_file("a.ini", "; top\n\na = 1\n\n[one] extra\nx = 1\ny = 2\n\n[two]\nz=3\n");
  EXPECT_EQ(ini_write_string("a.ini", "one", "y", "9"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "; top\na = 1\n\n[one]\nx= 1\ny=9\n\n[two]\nz=3\n");
  EXPECT_EQ(temporary_files(), 0);
}

// A new file, an entry of the unnamed section, a new entry closing its section, a new section
// at the end.
TEST_F(IniWrite, NewFileNewSectionAndNewEntries) {
  struct Row { const char *before, *section, *entry, *after; };
  for (const Row& r : {Row{nullptr, "s", "e", "[s]\ne=v"}, {"[h]\nx=1\n", nullptr, "e", "e=v\n\n[h]\nx=1\n"},
                       {"[a]\nx=1\n\n[b]\ny=2", "a", "z", "[a]\nx=1\nz=v\n\n[b]\ny=2"},
                       {"[a]\nx=1\n", "b", "y", "[a]\nx=1\n\n[b]\ny=v"}}) {
    if (r.before != nullptr) write_file("a.ini", r.before);
    EXPECT_EQ(ini_write_string("a.ini", r.section, r.entry, "v"), INI_OK);
    EXPECT_EQ(read_file("a.ini"), r.after);
  }
  EXPECT_EQ(temporary_files(), 0);
}

TEST_F(IniWrite, BytesBehindThePointOfChangeStay) {
  write_file("a.ini", "[a]\r\n\r\nx=1\r\ny = 2 \r\n\r\n  [b]  tail\r\n;c\r\nnul=\0\r\n"s);
  EXPECT_EQ(ini_write_string("a.ini", "a", "x", "7"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[a]\nx=7\ny = 2 \r\n\r\n  [b]  tail\r\n;c\r\nnul=\0\r\n"s);
}

TEST_F(IniWrite, MalformedEntriesInFrontOfTheChange) {
  write_file("a.ini", "[o]\nbad\n[a]\nworse\nx=1\n");
  EXPECT_EQ(ini_write_string("a.ini", "a", "x", "2"), INI_OK);
  // Kept in another section, dropped (and reported) in the target section.
  EXPECT_EQ(read_file("a.ini"), "[o]\nbad\n\n[a]\nx=2\n");
  EXPECT_EQ(log_text(), kMalformedRecord);
}

TEST_F(IniWrite, NumberForms) {
  EXPECT_EQ(ini_write_double("a.ini", "s", "d", 1.5), INI_OK);
  EXPECT_EQ(ini_write_long("a.ini", "s", "l", -42), INI_OK);
  const double ds[] = {1.5, 2.0, 1.0 / 3.0, 1e20};
  EXPECT_EQ(ini_write_doubles("a.ini", "s", "ds", ds, 4), INI_OK);
  const int32_t ls[] = {1, -2, 3};
  EXPECT_EQ(ini_write_longs("a.ini", "s", "ls", ls, 3), INI_OK);
  EXPECT_EQ(ini_write_longs("a.ini", "s", "none", ls, 0), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nd=1.500000\nl=-42\nds=1.5,2,0.333333,1e+20\nls=1,-2,3\nnone=\n");
  int32_t back[3];
  int32_t count = 3;
  EXPECT_EQ(ini_read_longs("a.ini", "s", "none", back, &count), INI_OK);
  EXPECT_EQ(count, 0);

  // A single double whose fixed form passes 79 characters is refused.
  EXPECT_EQ(ini_write_double("a.ini", "s", "big", 1e100), INI_TOO_SMALL);
}

// Numbers keep the C form whatever locale the host has set.
TEST_F(IniWrite, NumbersIgnoreTheHostLocale) {
  if (std::setlocale(LC_ALL, "de_DE.utf8") == nullptr) GTEST_SKIP() << "no German locale";
  const double ds[] = {0.25, 1.5};
  EXPECT_EQ(ini_write_double("a.ini", "s", "d", 1.5), INI_OK);
  EXPECT_EQ(ini_write_doubles("a.ini", "s", "ds", ds, 2), INI_OK);
  double d = 0;
  const int32_t code = ini_read_double("a.ini", "s", "d", &d);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(code, INI_OK);
  EXPECT_DOUBLE_EQ(d, 1.5);
  EXPECT_EQ(read_file("a.ini"), "[s]\nd=1.500000\nds=0.25,1.5\n");
}

TEST_F(IniWrite, ListLimitOf512Characters) {
  int32_t values[64];
  for (int32_t& v : values) v = 1234567;  // 8 characters with its comma
  write_file("a.ini", "[s]\n");
  EXPECT_EQ(ini_write_longs("a.ini", "s", "ok", values, 64), INI_OK);  // exactly 512
  const std::string before = read_file("a.ini");
  values[63] = 12345678;  // 513
  EXPECT_EQ(ini_write_longs("a.ini", "s", "no", values, 64), INI_TOO_SMALL);
  EXPECT_EQ(read_file("a.ini"), before);
  EXPECT_EQ(before.size(), 4u + 3u + 511u + 1u);
}

TEST_F(IniWrite, NilArgumentsTouchNothing) {
  EXPECT_EQ(ini_write_string(nullptr, "s", "e", "v"), INI_ERROR);
  EXPECT_EQ(ini_write_string("a.ini", "s", nullptr, "v"), INI_NO_ENTRY);
  EXPECT_EQ(ini_write_string("a.ini", "s", "e", nullptr), INI_TOO_SMALL);
  EXPECT_FALSE(tiv::test::file_exists("a.ini"));
  EXPECT_EQ(temporary_files(), 0);
}

TEST_F(IniWrite, TemporaryFileCannotBeCreated) {
  write_file("a.ini", "[s]\ne=1\n");
  tiv::test::ScopedEnv nowhere("TMPDIR", (tmpdir_ + "/missing").c_str());
  EXPECT_EQ(ini_write_string("a.ini", "s", "e", "2"), INI_ERROR);
  EXPECT_EQ(ini_delete_entry("a.ini", "s", "e"), INI_ERROR);
  EXPECT_EQ(ini_rename_section("a.ini", "s", "t"), INI_ERROR);
  EXPECT_EQ(read_file("a.ini"), "[s]\ne=1\n");
}

TEST_F(IniWrite, FailedCommitCopyKeepsTheTemporaryFile) {
  // The settings "file" is a directory: it reads as empty and can't be written.
  std::filesystem::create_directory("d.ini");
  EXPECT_EQ(ini_write_string("d.ini", "s", "e", "v"), 2);
  EXPECT_EQ(temporary_files(), 1);
  EXPECT_EQ(temporary_content(), "[s]\ne=v");
}

}  // namespace
