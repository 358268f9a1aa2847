// Opening catalogue files: names and paths, the header, item lists and factors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tivlib/profil.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "catalogue_fixture.h"
#include "rows.h"

namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;

using tiv::test::Catalogue;
using tiv::test::write_file;

const char* const kSmall =
    "Kind Size h b A Iy\n"
    "AB 100x50 100 50 12.5 nil\n"
    "AB 120x60 120 60 15.0 300\n";

// The column names block as bytes, up to and including its closing double zero.
std::string names_block(profil_handle* h) {
  const char* block = profil_get_all_items(h);
  if (block == nullptr) return "<nil>";
  size_t n = 0;
  while (!(block[n] == '\0' && block[n + 1] == '\0')) ++n;
  return std::string(block, n + 2);
}

TEST_F(Catalogue, NameWithoutDirectoryOrExtensionOpensProFileOfCatalogue) {
  std::filesystem::create_directory("cat");
  write_file("cat/ab.pro", kSmall);
  profil_path("cat");
  char name[] = "  ab  ";
  const char* items[] = {"A", nullptr};
  profil_handle* h = profil_open(name, items, nullptr);
  ASSERT_NE(h, nullptr);
  EXPECT_STREQ(name, "ab");  // trimmed in place
  profil_close(h);
}

TEST_F(Catalogue, NameWithDirectoryIsNotPrefixedAndOwnExtensionIsKept) {
  std::filesystem::create_directory("elsewhere");
  write_file("elsewhere/ab.tab", kSmall);
  profil_path("cat-that-does-not-exist");
  EXPECT_NE(open_existing("elsewhere\\ab.tab", {"A"}), nullptr);
  EXPECT_NE(open_existing(".\\elsewhere\\ab.tab", {"A"}), nullptr);
  EXPECT_EQ(open_existing("elsewhere\\ab", {"A"}), nullptr);  // ab.pro does not exist
}

TEST_F(Catalogue, MissingFileEmptyFileAndUnendedHeaderDoNotOpen) {
  EXPECT_EQ(open_existing("none", {"A"}), nullptr);
  EXPECT_EQ(open("empty.pro", ""), nullptr);
  EXPECT_EQ(open("unended.pro", "Kind Size A"), nullptr);
  EXPECT_EQ(open("ff.pro", "Kind Size\xff A\n"), nullptr);  // a byte 255 ends the file
  char name[] = "x";
  EXPECT_EQ(profil_open(name, nullptr, nullptr), nullptr);
  EXPECT_EQ(profil_open(nullptr, nullptr, nullptr), nullptr);
}

TEST_F(Catalogue, HeaderNamesBlockKeepsOrderAndCollapsesSeparatorRuns) {
  profil_handle* h = open("a.pro", " \tKind  Size\t\t h A  \nAB 1 2 3\n");
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(names_block(h), std::string("Kind\0Size\0h\0A\0\0", 15));
  EXPECT_EQ(profil_get_all_items(nullptr), nullptr);
}

TEST_F(Catalogue, ItemsMapToValuePositionsWithFactors) {
  const double factors[] = {0.001, 1e-4, 2.0, 1e-8};
  profil_handle* h = open("a.pro", kSmall, {"h", "A", "Missing", "Iy"}, factors);
  ASSERT_NE(h, nullptr);
  double v[4] = {9, 9, 9, 9};
  char result[PROFIL_RESULT_SIZE];
  ASSERT_EQ(profil_get(h, "AB", v, result), 0);
  EXPECT_STREQ(result, "AB 100x50");
  // No such column gives exactly -1.0, factor or not; "nil" is -1 times the factor.
  EXPECT_THAT(v, ElementsAre(DoubleEq(0.1), DoubleEq(12.5e-4), -1.0, DoubleEq(-1e-8)));
}

TEST_F(Catalogue, DuplicateItemLeavesEarlierSlotUnsetAndNameColumnsGiveNothing) {
  profil_handle* h = open("a.pro", kSmall, {"A", "Kind", "A"});
  ASSERT_NE(h, nullptr);
  double v[3] = {0, 0, 0};
  char result[PROFIL_RESULT_SIZE];
  ASSERT_EQ(profil_get(h, "AB120", v, result), 0);
  EXPECT_THAT(v, ElementsAre(-1.0, -1.0, 15.0));
}

TEST_F(Catalogue, ResetChangesItemsAndRewinds) {
  profil_handle* h = open("a.pro", kSmall, {"A"});
  ASSERT_NE(h, nullptr);
  double v[2];
  char result[PROFIL_RESULT_SIZE];
  ASSERT_EQ(profil_next(h, v, result), 0);
  ASSERT_EQ(profil_next(h, v, result), 0);
  EXPECT_STREQ(result, "AB 120x60");
  const char* items[] = {"b", "h", nullptr};
  const double factors[] = {10.0, 1.0};
  EXPECT_EQ(profil_reset(h, items, factors), 0);
  ASSERT_EQ(profil_next(h, v, result), 0);
  EXPECT_STREQ(result, "AB 100x50");
  EXPECT_THAT(v, ElementsAre(500.0, 100.0));
  // Without items the list stays and the reader rewinds.
  ASSERT_EQ(profil_next(h, v, result), 0);
  EXPECT_EQ(profil_reset(h, nullptr, nullptr), 0);
  ASSERT_EQ(profil_next(h, v, result), 0);
  EXPECT_STREQ(result, "AB 100x50");
  EXPECT_EQ(v[0], 500.0);
  EXPECT_EQ(profil_reset(nullptr, items, nullptr), 0);
  EXPECT_EQ(profil_close(nullptr), 0);
}

TEST(ProfilFactors, TableValuesCaseAndUnknownNames) {
  const char* names[] = {"Iy", "iy", "Cm", "Styp", "unknown", "A", nullptr};
  double f[6] = {};
  profil_get_factors(names, f);
  EXPECT_THAT(f, ElementsAre(DoubleEq(1e-8), DoubleEq(0.01), DoubleEq(1e-12), 1.0, 1.0,
                             DoubleEq(1e-4)));
  profil_get_factors(nullptr, f);  // no crash
}

TEST(ProfilConvertResult, SplitsAtFirstBlank) {
  char kind[PROFIL_PART_SIZE], size[PROFIL_PART_SIZE];
  // Only the first 80 characters count.
  const std::string long_size = "K " + std::string(120, '9');
  for (const auto& [result, parts] : tiv::test::Rows<std::string, std::string>{
           {"IPE 200 x", "IPE|200 x"}, {"HEB", "HEB|"}, {long_size, "K|" + std::string(78, '9')}}) {
    EXPECT_EQ(profil_convert_result(result.c_str(), kind, size), kind);
    EXPECT_EQ(std::string(kind) + "|" + size, parts);
  }
}

}  // namespace
