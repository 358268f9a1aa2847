// The catalogue directory (profil_path, the central settings file) and profil_findfiles.
#include <gtest/gtest.h>

#include <tivlib/heap.h>
#include <tivlib/profil.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "catalogue_fixture.h"

namespace {

using tiv::test::Catalogue;
using tiv::test::write_file;

std::string catalogue(const std::string& kind, int from, int to) {
  std::string s = "Kind Size A\n";
  for (int i = from; i <= to; i += 20) s += kind + " " + std::to_string(i) + " 1\n";
  return s;
}

// The rows of a profil_findfiles list, sorted (the listing has no defined order).
std::vector<std::string> rows_of(const char* list, int32_t count) {
  std::vector<std::string> out;
  for (int32_t i = 0; i < count; ++i) out.emplace_back(list + i * PROFIL_LIST_ROW);
  std::sort(out.begin(), out.end());
  return out;
}

TEST_F(Catalogue, PathFromSettingsFileIsReadAgainWhenNotSet) {
  std::filesystem::create_directory("one");
  std::filesystem::create_directory("two");
  write_file("one/ab.pro", catalogue("ONE", 100, 100));
  write_file("two/ab.pro", catalogue("TWO", 100, 100));
  // The first row of "ab" as the catalogue directory gives it at this open.
  auto first_row = [&] {
    profil_handle* h = open_existing("ab", {"A"});
    char result[PROFIL_RESULT_SIZE] = "-1";
    double v;
    if (h != nullptr) profil_get(h, "", &v, result);
    close(h);
    return std::string(result);
  };
  profil_path("  ");  // blank: no settings file yet, the directory stays empty
  write_file("zv2.ini", "[System]\nProfile=one\n");
  EXPECT_EQ(first_row(), "ONE 100");
  write_file("zv2.ini", "[System]\nProfile=two\n");  // read anew at each open
  EXPECT_EQ(first_row(), "TWO 100");
  profil_path(" one ");  // a given text wins over the settings file
  EXPECT_EQ(first_row(), "ONE 100");
}

TEST_F(Catalogue, RelativeAndParentPathsOfTheCatalogue) {
  std::filesystem::create_directories("a/b");
  write_file("a/up.pro", catalogue("UP", 100, 100));
  std::filesystem::current_path("a/b");
  profil_path("..");
  EXPECT_NE(open_existing("up", {"A"}), nullptr);
  profil_path("../../a");
  EXPECT_NE(open_existing("up", {"A"}), nullptr);
  std::filesystem::current_path(dir_.path());
}

TEST_F(Catalogue, FindFilesListsFilesWithMatchingRows) {
  write_file("IPE.PRO", catalogue("IPE", 100, 300));
  write_file("heb.pro", catalogue("HEB", 100, 200));
  write_file("notes.txt", catalogue("HEB", 100, 200));
  write_file("bad.pro", "no header line");
  std::filesystem::create_directory("dir.pro");
  char* list = nullptr;
  int32_t count = -1;

  ASSERT_EQ(profil_findfiles("", &count, &list), 1);
  EXPECT_EQ(rows_of(list, count), (std::vector<std::string>{"IPE", "heb"}));
  heap_free(list);

  ASSERT_EQ(profil_findfiles("HEB 180", &count, &list), 1);
  EXPECT_EQ(rows_of(list, count), (std::vector<std::string>{"heb"}));
  heap_free(list);

  list = reinterpret_cast<char*>(&count);
  ASSERT_EQ(profil_findfiles("UPN", &count, &list), 1);  // files, but no hit
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list, nullptr);
}

TEST_F(Catalogue, FindFilesWithoutCatalogueFilesGivesZero) {
  write_file("x.txt", "x");
  char* list = nullptr;
  int32_t count = -1;
  EXPECT_EQ(profil_findfiles("", &count, &list), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list, nullptr);
  profil_path("no-such-directory");
  EXPECT_EQ(profil_findfiles("", &count, &list), 0);
  EXPECT_EQ(count, 0);
}

}  // namespace
