// Deleting and renaming entries and sections of settings files directly.
#include <gtest/gtest.h>

#include <string>

#include <tivlib/ini.h>

#include "settings_test_util.h"

namespace {

using tiv::test::file_exists;
using tiv::test::kMalformedRecord;
using tiv::test::log_text;
using tiv::test::read_file;
using tiv::test::write_file;

class IniChange : public tiv::test::SettingsDir {};

constexpr const char* kTwoSections = "; c\n\n[a]\nx = 1\n\ny=2\n\n[b]\nz=3\n";

TEST_F(IniChange, DeleteEntry) {
  write_file("a.ini", kTwoSections);
  EXPECT_EQ(ini_delete_entry("a.ini", "a", "x"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "; c\n[a]\n\ny=2\n\n[b]\nz=3\n");

  write_file("a.ini", kTwoSections);
  EXPECT_EQ(ini_delete_entry("a.ini", "a", "q"), INI_NO_ENTRY);
  EXPECT_EQ(read_file("a.ini"), "; c\n[a]\nx= 1\ny=2\n[b]\nz=3\n");

  write_file("a.ini", kTwoSections);
  EXPECT_EQ(ini_delete_entry("a.ini", "c", "x"), INI_NO_SECTION);
  EXPECT_EQ(read_file("a.ini"), "; c\n[a]\nx = 1\ny=2\n\n[b]\nz=3");

  EXPECT_EQ(ini_delete_entry("missing.ini", "a", "x"), INI_ERROR);
  EXPECT_FALSE(file_exists("missing.ini"));
  EXPECT_EQ(temporary_files(), 0);
}

TEST_F(IniChange, DeleteSection) {
  write_file("a.ini", "a=1\n\n[s]\n; sc\nx=1\n\n[t]\ny=2\n");
  EXPECT_EQ(ini_delete_section("a.ini", "s"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "a=1\n\n[t]\ny=2\n");

  write_file("a.ini", "a=1\n\n[s]\n; sc\nx=1\n\n[t]\ny=2\n");
  EXPECT_EQ(ini_delete_section("a.ini", "q"), INI_NO_SECTION);
  EXPECT_EQ(read_file("a.ini"), "a=1\n\n[s]\n; sc\nx=1\n\n[t]\ny=2");

  // The unnamed section loses its entries and keeps its comments.
  write_file("a.ini", "; top\na=1\n[s]\nx=1\n");
  EXPECT_EQ(ini_delete_section("a.ini", nullptr), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "; top\n\n[s]\nx=1\n");

  // The last section leaves nothing behind it.
  write_file("a.ini", "[s]\nx=1\n[t]\ny=1\n");
  EXPECT_EQ(ini_delete_section("a.ini", "t"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nx=1\n");

  EXPECT_EQ(ini_delete_section("missing.ini", "s"), INI_ERROR);
}

TEST_F(IniChange, RenameSection) {
  EXPECT_EQ(ini_rename_section("missing.ini", "s", "   "), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_section("missing.ini", "s", nullptr), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_section("missing.ini", "s", "t"), INI_ERROR);
  EXPECT_FALSE(file_exists("missing.ini"));

  write_file("a.ini", "a=1\nb=2\n");
  EXPECT_EQ(ini_rename_section("a.ini", nullptr, "new"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[new]\na=1\nb=2\n");

  write_file("a.ini", "; c\n[s] x\nk=1\n\n[t]\n");
  EXPECT_EQ(ini_rename_section("a.ini", " s ", "u"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "; c\n[u]\nk=1\n\n[t]\n");

  write_file("a.ini", "x=1\n[s]\nk=1\n");
  EXPECT_EQ(ini_rename_section("a.ini", "s", std::string(100, 'n').c_str()), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "x=1\n\n[" + std::string(79, 'n') + "]\nk=1\n");

  write_file("a.ini", "[s]\nk=1\n");
  EXPECT_EQ(ini_rename_section("a.ini", "q", "u"), INI_NO_SECTION);
  EXPECT_EQ(read_file("a.ini"), "[s]\nk=1");
  EXPECT_EQ(temporary_files(), 0);
}

TEST_F(IniChange, RenameEntry) {
  write_file("a.ini", "[s]\na = 1\nb=2\n");
  EXPECT_EQ(ini_rename_entry("a.ini", " s ", "a", "c"), INI_OK);
  EXPECT_EQ(read_file("a.ini"), "[s]\nc= 1\nb=2\n");

  write_file("a.ini", "[s]\na = 1\nb=2\n[t]\nz=1\n");
  EXPECT_EQ(ini_rename_entry("a.ini", "s", "q", "c"), INI_NO_ENTRY);
  EXPECT_EQ(read_file("a.ini"), "[s]\na= 1\nb=2\n\n[t]\nz=1\n");

  write_file("a.ini", "[s]\na=1\n");
  EXPECT_EQ(ini_rename_entry("a.ini", "s", "a", ""), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_entry("a.ini", "s", nullptr, "b"), INI_NO_ENTRY);
  EXPECT_EQ(ini_rename_entry("a.ini", "x", "a", "b"), INI_NO_SECTION);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1");
  EXPECT_EQ(ini_rename_entry("missing.ini", "s", "a", "b"), INI_ERROR);
}

}  // namespace
