// The name lookup of profil_get: kind and size matching, field values, bad input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tivlib/convert.h>
#include <tivlib/profil.h>

#include <cmath>

#include <filesystem>
#include <initializer_list>
#include <string>

#include "catalogue_fixture.h"

namespace {

using tiv::test::Catalogue;
using ::testing::DoubleEq;
using ::testing::ElementsAre;

class Lookup : public Catalogue {
 protected:
  // The result text of profil_get, or "-1".
  std::string get(profil_handle* h, const char* query) {
    char result[PROFIL_RESULT_SIZE] = "";
    return profil_get(h, query, values_, result) == 0 ? result : "-1";
  }
  struct Row {
    const char* query;
    const char* result;
  };
  // Each query delivers its result text ("-1" when nothing matches).
  void expect_gets(profil_handle* h, std::initializer_list<Row> rows) {
    for (const Row& r : rows) EXPECT_EQ(get(h, r.query), r.result) << r.query;
  }
  double values_[4] = {};
};

const char* const kSizes =
    "Kind Size A\n"
    "HEB 100 1\n"
    "HEB 120 2\n"
    "HEB 140 3\n"
    "FL 100x50 4\n"
    "FL 100X60 5\n"
    "FL 100/50 6\n";

TEST_F(Lookup, PlainNumberMeansAtLeastParenthesesMeanExactly) {
  profil_handle* h = open("a.pro", kSizes);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(get(h, "HEB110"), "HEB 120");
  EXPECT_EQ(values_[0], 2.0);
  EXPECT_EQ(get(h, "HEB150"), "-1");
  EXPECT_EQ(values_[0], -1.0);
  expect_gets(h, {{"HEB 140", "HEB 140"}, {"HEB(110)", "-1"}, {"HEB(120)", "HEB 120"}});
  // The kind ignores letter case and blanks and must be whole (part of a kind, or one that
  // stops at a letter that differs, fails); a number alone matches any kind.
  expect_gets(h, {{" h e b\t1 2 0 ", "HEB 120"}, {"heb", "HEB 100"}, {"HE", "-1"}, {"HEBB", "-1"},
                  {"130", "HEB 140"}, {"", "HEB 100"}});
  // The first 79 characters of a query count: the size 120 followed by a long tail of blanks
  // and junk.
  const std::string query = "HEB120" + std::string(73, ' ') + "junk";
  EXPECT_EQ(get(h, query.c_str()), "HEB 120");
  EXPECT_EQ(get(h, nullptr), "-1");
  EXPECT_EQ(profil_get(nullptr, "HEB", values_, nullptr), -1);
}

TEST_F(Lookup, SeparatedSizes) {
  profil_handle* h = open("a.pro", "Kind Size A\nFL 100x50 4\nFL 100X60 5\nFL 100/50 6\n");
  ASSERT_NE(h, nullptr);
  // x does not match X; anything else behind a size fails.
  expect_gets(h, {{"100", "FL 100x50"}, {"100x50", "FL 100x50"}, {"FL90x40", "FL 100x50"},
                  {"x50", "FL 100x50"}, {"100x60", "-1"}, {"100X60", "FL 100X60"},
                  {"100/50", "FL 100/50"}, {"(100)/(50)", "FL 100/50"}, {"(100/50)", "FL 100/50"},
                  {"(100x5)", "-1"}, {"100x50?", "-1"}});
}

TEST_F(Lookup, FieldValuesNilNonNumbersAndFactors) {
  const double factors[] = {0.01, 1.0};
  profil_handle* h = open("a.pro", "Kind Size iy B\nAB 1 nil junk\n", {"iy", "B"}, factors);
  ASSERT_NE(h, nullptr);
  ASSERT_EQ(get(h, ""), "AB 1");
  EXPECT_THAT(values_, ElementsAre(DoubleEq(-0.01), 0.0, 0.0, 0.0));
}

TEST_F(Lookup, EndOfFileInsideRowReadsMissingFieldsAsZero) {
  profil_handle* h = open("a.pro", "Kind Size A B\nAB 1 5", {"A", "B"});
  ASSERT_NE(h, nullptr);
  ASSERT_EQ(get(h, ""), "AB 1");
  EXPECT_THAT(values_, ElementsAre(5.0, 0.0, 0.0, 0.0));
  EXPECT_EQ(get(h, "2"), "-1");  // an unmatched last line without line end
}

TEST_F(Lookup, LongFieldsAreCutAndLongLinesAreSkipped) {
  const std::string kind(200, 'K');
  const std::string huge(100000, '7');
  profil_handle* h = open("a.pro", "Kind Size A\n" + kind + " 1 " + huge + "\nAB 2 3\n");
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(get(h, "AB"), "AB 2");
  EXPECT_EQ(values_[0], 3.0);
  EXPECT_EQ(get(h, "1"), std::string(79, 'K') + " 1");
  EXPECT_EQ(values_[0], 7777777777777777777777777777777777777777777777777777777777777777777777777777777.0);
}

}  // namespace
