// Searches by property values, filters, and stepping forward and backward.
#include <gtest/gtest.h>

#include <tivlib/profil.h>

#include <string>
#include <string_view>

#include "catalogue_fixture.h"

namespace {

using tiv::test::Catalogue;
using tiv::test::row_text;

// N rows "R i" with A = i, B = 10 * i.
std::string rows(int n, const char* line_end = "\n") {
  std::string s = "Kind Size A B\n";
  for (int i = 1; i <= n; ++i)
    s += "R " + std::to_string(i) + " " + std::to_string(i) + " " + std::to_string(10 * i) + line_end;
  return s;
}

class Search : public Catalogue {
 protected:
  std::string next(profil_handle* h) { return row_text(profil_next(h, v_, r_), r_); }
  std::string prev(profil_handle* h) { return row_text(profil_prev(h, v_, r_), r_); }
  std::string search(profil_handle* h, profil_term* t, int32_t n, const char* q = "") {
    return row_text(profil_search(h, t, n, q, v_, r_), r_);
  }
  std::string search_next(profil_handle* h, profil_term* t, int32_t n, const char* q = "") {
    return row_text(profil_search_next(h, t, n, q, v_, r_), r_);
  }
  // Steps by a script of 'n' (next) and 'p' (prev) and joins what each step delivers with '|'.
  std::string walk(profil_handle* h, std::string_view steps) {
    std::string out;
    for (char c : steps) out += (out.empty() ? "" : "|") + (c == 'n' ? next(h) : prev(h));
    return out;
  }
  double v_[2] = {};
  char r_[PROFIL_RESULT_SIZE] = "";
};

TEST_F(Search, WithoutConditionsDeliversNameMatchesOneAfterAnother) {
  profil_handle* h = open("a.pro", "Kind Size A\nU 1 1\nI 2 2\nU 3 3\n");
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(search(h, nullptr, 0, "U"), "U 1");
  EXPECT_EQ(search_next(h, nullptr, 0, "U"), "U 3");
  EXPECT_EQ(search_next(h, nullptr, 0, "U"), "-1");
  EXPECT_EQ(search_next(h, nullptr, 0, "U"), "-1");
}

TEST_F(Search, ConditionsAreJoinedByAnd) {
  profil_handle* h = open("a.pro", rows(30), {"A", "B"});
  ASSERT_NE(h, nullptr);
  char gt[] = ">", lt[] = "<";
  profil_term t[] = {{"A", gt, 10}, {"A", lt, 13}};
  EXPECT_EQ(search(h, t, 2), "R 11");
  EXPECT_EQ(v_[1], 110.0);
  EXPECT_EQ(search_next(h, nullptr, 0), "R 12");
  EXPECT_EQ(search_next(h, nullptr, 0), "-1");
}

TEST_F(Search, OperatorTextsLoseTheirBlanks) {
  profil_handle* h = open("a.pro", rows(5));
  ASSERT_NE(h, nullptr);
  char ge[] = " > \t= ";
  profil_term t[] = {{"A", ge, 4}};
  EXPECT_EQ(search(h, t, 1), "R 4");
  EXPECT_STREQ(ge, ">=");
  const struct {
    const char* op;
    double value;
    const char* first;
  } cases[] = {{"<=", 2, "R 1"}, {"=", 3, "R 3"}, {"==", 3, "R 3"}, {"!=", 1, "R 2"},
               {"<>", 1, "R 2"}, {"=>", 4, "R 1"}, {"", 4, "R 1"}, {"<", 1, "-1"}};
  for (const auto& c : cases) {
    std::string op = c.op;
    profil_term term{"A", op.data(), c.value};
    EXPECT_EQ(search(h, &term, 1), c.first) << c.op;
  }
}

TEST_F(Search, UnknownPropertyIsIgnoredAndUnwantedColumnUsesFileUnit) {
  const double factors[] = {0.5};
  profil_handle* h = open("a.pro", rows(5), {"A"}, factors);
  ASSERT_NE(h, nullptr);
  char gt[] = ">", eq[] = "=";
  profil_term t[] = {{"Nope", gt, 1000}, {"B", gt, 30}, {"A", eq, 2.5}};
  EXPECT_EQ(search(h, t, 3), "R 5");  // A of row 4 is 2.0 here; row 5 gives 2.5
  EXPECT_EQ(v_[0], 2.5);
}

TEST_F(Search, SearchNextKeepsOrReplacesConditions) {
  profil_handle* h = open("a.pro", rows(6));
  ASSERT_NE(h, nullptr);
  char ge[] = ">=";
  profil_term t[] = {{"A", ge, 5}};
  EXPECT_EQ(search(h, t, 1), "R 5");
  EXPECT_EQ(profil_search(h, t, 1, "", v_, r_), 0);
  EXPECT_EQ(search_next(h, t, 0), "R 6");  // an array with count 0 removes them
  EXPECT_EQ(search(h, t, 1), "R 5");
  EXPECT_EQ(next(h), "R 6");
  EXPECT_EQ(search(h, nullptr, 5), "R 1");  // nil array: no conditions
  EXPECT_EQ(search_next(h, nullptr, 0), "R 2");
}

TEST_F(Search, GetAndResetTreatConditionsDifferently) {
  profil_handle* h = open("a.pro", rows(6));
  ASSERT_NE(h, nullptr);
  char ge[] = ">=";
  profil_term t[] = {{"A", ge, 5}};
  EXPECT_EQ(search(h, t, 1), "R 5");
  EXPECT_EQ(row_text(profil_get(h, "", v_, r_), r_), "R 1");  // ignores the conditions
  EXPECT_EQ(search_next(h, nullptr, 0), "R 5");               // ... and keeps them
  profil_reset(h, nullptr, nullptr);
  EXPECT_EQ(search_next(h, nullptr, 0), "R 1");  // reset removed them
}

TEST_F(Search, FilterSeesValuesOfEachMatchingRow) {
  profil_handle* h = open("a.pro", rows(6), {"B"});
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(row_text(profil_search_f(h, nullptr, "3", v_, r_), r_), "R 3");
  EXPECT_EQ(row_text(profil_search_f(h, [](double* v) { return int32_t(v[0] > 45); }, "", v_, r_), r_),
            "R 5");
  EXPECT_EQ(row_text(profil_search_f(h, [](double*) { return int32_t(0); }, "", v_, r_), r_), "-1");
  EXPECT_EQ(profil_search_f(nullptr, nullptr, "", v_, r_), -1);
}

TEST_F(Search, NextAndPrevOnThreeRows) {
  profil_handle* h = open("a.pro", rows(3));
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(prev(h), "-1");
  EXPECT_EQ(v_[0], -1.0);
  // A prev past the first row leaves the reader at the start of the data.
  EXPECT_EQ(walk(h, "nnnnpppn"), "R 1|R 2|R 3|-1|R 2|R 1|-1|R 1");
}

TEST_F(Search, PrevAcrossThePageBoundary) {
  for (const char* line_end : {"\n", "\r\n"}) {
    profil_handle* h = open("a.pro", rows(40, line_end), {"A", "B"});
    ASSERT_NE(h, nullptr);
    for (int i = 0; i < 16; ++i) next(h);
    EXPECT_EQ(walk(h, "pnnppp"), "R 15|R 16|R 17|R 16|R 15|R 14");
    for (int i = 15; i <= 33; ++i) EXPECT_EQ(next(h), "R " + std::to_string(i));
    EXPECT_EQ(prev(h), "R 32");
    EXPECT_EQ(v_[1], 320.0);
    for (int i = 31; i >= 1; --i) ASSERT_EQ(prev(h), "R " + std::to_string(i));
    EXPECT_EQ(prev(h), "-1");
    close(h);
  }
}

}  // namespace
