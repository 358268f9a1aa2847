// Allocation failures at every step of opening, searching and finding files.
#include <gtest/gtest.h>

#include <tivlib/heap.h>
#include <tivlib/profil.h>

#include <string>

#include "catalogue_fixture.h"

#ifdef TIVLIB_FAULT_INJECTION
#include "fault_sweep.h"
#include "frame/fault.h"

namespace {

using tiv::test::Catalogue;
using tiv::test::write_file;

const char* const kRows = "Kind Size A B\nR 1 1 10\nR 2 2 20\nR 3 3 30\n";
constexpr long kMaxSteps = 200;

TEST_F(Catalogue, OpenSurvivesEveryAllocationFailure) {
  write_file("a.pro", kRows);
  for (long n = 1; n < kMaxSteps; ++n) {
    profil_handle* h = nullptr;
    const bool hit = tiv::test::fails_at(n, [&] { h = open_existing("a", {"A", "B"}); });
    if (h != nullptr) {
      double v[2];
      char result[PROFIL_RESULT_SIZE];
      ASSERT_EQ(profil_get(h, "2", v, result), 0) << n;
      EXPECT_STREQ(result, "R 2");
      EXPECT_EQ(v[1], 20.0);
      close(h);
    }
    if (!hit) {
      ASSERT_NE(h, nullptr) << n;
      return;
    }
  }
  FAIL() << "open never completed";
}

TEST_F(Catalogue, SearchWithoutMemoryForConditionsHasNone) {
  profil_handle* h = open("a.pro", kRows, {"A"});
  ASSERT_NE(h, nullptr);
  char gt[] = ">";
  profil_term t[] = {{"A", gt, 2}};
  double v;
  char result[PROFIL_RESULT_SIZE];
  for (long n = 1; n < kMaxSteps; ++n) {
    int32_t code{};
    const bool hit = tiv::test::fails_at(n, [&] { code = profil_search(h, t, 1, "", &v, result); });
    if (!hit) {
      EXPECT_EQ(code, 0);
      EXPECT_STREQ(result, "R 3");
      return;
    }
    EXPECT_EQ(code, -1);
    ASSERT_EQ(profil_search_next(h, nullptr, 0, "", &v, result), 0);  // no conditions left
    EXPECT_STREQ(result, "R 1");
  }
  FAIL() << "search never completed";
}

TEST_F(Catalogue, FindFilesSurvivesEveryAllocationFailure) {
  write_file("one.pro", kRows);
  write_file("two.pro", kRows);
  for (long n = 1; n < kMaxSteps; ++n) {
    char* list = nullptr;
    int32_t count = -1;
    int32_t code{};
    const bool hit = tiv::test::fails_at(n, [&] { code = profil_findfiles("R", &count, &list); });
    if (code == 0) {
      EXPECT_EQ(count, 0);
      EXPECT_EQ(list, nullptr);
    } else {
      EXPECT_EQ(code, 1);
      EXPECT_EQ(list == nullptr, count == 0);
    }
    heap_free(list);
    if (!hit) {
      EXPECT_EQ(code, 1);
      EXPECT_EQ(count, 2);
      return;
    }
  }
  FAIL() << "findfiles never completed";
}

}  // namespace
#endif  // TIVLIB_FAULT_INJECTION
