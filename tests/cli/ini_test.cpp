// tiv ini end to end: a change with the library's rewrite rules and a failed read.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

constexpr const char* kSettings = "; top\n\na = 1\n\n[one] extra\nx = 1\ny = 2\n";

class Ini : public InTempDir {
 protected:
  void SetUp() override { write_file("s.ini", kSettings); }
};

TEST_F(Ini, SetNormalisesInFrontOfTheChangeAndKeepsTheRest) {
  expect_run(tiv({"ini", "set", "s.ini", "one", "y", "9"}), 0, "");
  EXPECT_EQ(read_file("s.ini"), "; top\na = 1\n\n[one]\nx= 1\ny=9\n");
}

TEST_F(Ini, GetFailuresHaveTheirExitCodes) {
  expect_exit(tiv({"ini", "get", "s.ini", "one", "q"}), 1,
               "tiv: s.ini: no entry 'q' in section [one]\n");
  expect_exit(tiv({"ini", "get", "none.ini", "one", "x"}), 4,
               "tiv: none.ini: cannot open the settings file\n");
  EXPECT_EQ(read_file("s.ini"), kSettings);
}

}  // namespace
}  // namespace tiv::test
