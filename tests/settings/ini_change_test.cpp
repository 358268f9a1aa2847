// Deleting and renaming entries and sections of settings files directly.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <tivlib/ini.h>

#include "settings_test_util.h"

namespace {

using tiv::test::file_exists;
using tiv::test::read_file;
using tiv::test::write_file;

class IniChange : public tiv::test::SettingsDir {};

constexpr const char* kTwoSections = "; c\n\n[a]\nx = 1\n\ny=2\n\n[b]\nz=3\n";
constexpr const char* kUnnamed = "a=1\n\n[s]\n; sc\nx=1\n\n[t]\ny=2\n";

// Each change runs on a fresh a.ini: the code it gives and the file it leaves. A change that
// finds nothing still rewrites the part in front of the point where it gave up.
TEST_F(IniChange, DeletesAndRenamesRewriteTheFile) {
  struct Row {
    const char* before;
    std::function<int32_t()> change;
    int32_t code;
    std::string after;
  };
  const std::string long_name(100, 'n');
  const Row rows[] = {
      {kTwoSections, [] { return ini_delete_entry("a.ini", "a", "x"); }, INI_OK,
       "; c\n[a]\n\ny=2\n\n[b]\nz=3\n"},
      {kTwoSections, [] { return ini_delete_entry("a.ini", "a", "q"); }, INI_NO_ENTRY,
       "; c\n[a]\nx= 1\ny=2\n[b]\nz=3\n"},
      {kTwoSections, [] { return ini_delete_entry("a.ini", "c", "x"); }, INI_NO_SECTION,
       "; c\n[a]\nx = 1\ny=2\n\n[b]\nz=3"},
      {kUnnamed, [] { return ini_delete_section("a.ini", "s"); }, INI_OK, "a=1\n\n[t]\ny=2\n"},
      {kUnnamed, [] { return ini_delete_section("a.ini", "q"); }, INI_NO_SECTION,
       "a=1\n\n[s]\n; sc\nx=1\n\n[t]\ny=2"},
      // The unnamed section loses its entries and keeps its comments.
      {"; top\na=1\n[s]\nx=1\n", [] { return ini_delete_section("a.ini", nullptr); }, INI_OK,
       "; top\n\n[s]\nx=1\n"},
      // The last section leaves nothing behind it.
      {"[s]\nx=1\n[t]\ny=1\n", [] { return ini_delete_section("a.ini", "t"); }, INI_OK,
       "[s]\nx=1\n"},
      {"a=1\nb=2\n", [] { return ini_rename_section("a.ini", nullptr, "new"); }, INI_OK,
       "[new]\na=1\nb=2\n"},
      {"; c\n[s] x\nk=1\n\n[t]\n", [] { return ini_rename_section("a.ini", " s ", "u"); }, INI_OK,
       "; c\n[u]\nk=1\n\n[t]\n"},
      {"x=1\n[s]\nk=1\n", [&] { return ini_rename_section("a.ini", "s", long_name.c_str()); },
       INI_OK, "x=1\n\n[" + std::string(79, 'n') + "]\nk=1\n"},
      {"[s]\nk=1\n", [] { return ini_rename_section("a.ini", "q", "u"); }, INI_NO_SECTION,
       "[s]\nk=1"},
      {"[s]\na = 1\nb=2\n", [] { return ini_rename_entry("a.ini", " s ", "a", "c"); }, INI_OK,
       "[s]\nc= 1\nb=2\n"},
      {"[s]\na = 1\nb=2\n[t]\nz=1\n", [] { return ini_rename_entry("a.ini", "s", "q", "c"); },
       INI_NO_ENTRY, "[s]\na= 1\nb=2\n\n[t]\nz=1\n"},
      {"[s]\na=1\n", [] { return ini_rename_entry("a.ini", "x", "a", "b"); }, INI_NO_SECTION,
       "[s]\na=1"},
  };
  for (const Row& r : rows) {
    write_file("a.ini", r.before);
    EXPECT_EQ(r.change(), r.code) << r.after;
    EXPECT_EQ(read_file("a.ini"), r.after);
  }
  EXPECT_EQ(temporary_files(), 0);
}

// Bad names are refused before the file is looked at; a missing file is not created.
TEST_F(IniChange, BadNamesAndMissingFiles) {
  write_file("a.ini", "[s]\na=1\n");
  EXPECT_EQ(ini_rename_entry("a.ini", "s", "a", ""), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_entry("a.ini", "s", nullptr, "b"), INI_NO_ENTRY);
  EXPECT_EQ(read_file("a.ini"), "[s]\na=1\n");
  EXPECT_EQ(ini_rename_section("missing.ini", "s", "   "), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_section("missing.ini", "s", nullptr), INI_EMPTY_NAME);
  EXPECT_EQ(ini_rename_section("missing.ini", "s", "t"), INI_ERROR);
  EXPECT_EQ(ini_rename_entry("missing.ini", "s", "a", "b"), INI_ERROR);
  EXPECT_EQ(ini_delete_entry("missing.ini", "a", "x"), INI_ERROR);
  EXPECT_EQ(ini_delete_section("missing.ini", "s"), INI_ERROR);
  EXPECT_FALSE(file_exists("missing.ini"));
  EXPECT_EQ(temporary_files(), 0);
}

}  // namespace
