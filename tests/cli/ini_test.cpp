// tiv ini end to end: reads with exact values, changes with the library's rewrite rules, and
// the result codes turned into exit codes.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

constexpr const char* kSettings =
    "; top\n"
    "\n"
    "a = 1\n"
    "\n"
    "[one] extra\n"
    "x = 1\n"
    "y = 2\n"
    "\n"
    "[two]\n"
    "z=3\n"
    "list=1.5,,3\n";

class Ini : public InTempDir {
 protected:
  void SetUp() override { write_file("s.ini", kSettings); }
};

TEST_F(Ini, GetGivesTheValueAsWrittenOrTyped) {
  EXPECT_EQ(tiv({"ini", "get", "s.ini", "one", "x"}).out, " 1\n");
  EXPECT_EQ(tiv({"ini", "get", "s.ini", "one", "x", "--long"}).out, "1\n");
  EXPECT_EQ(tiv({"ini", "get", "s.ini", "", "a"}).out, " 1\n");
  EXPECT_EQ(tiv({"ini", "get", "s.ini", "two", "list", "--list"}).out, "1.5\n0\n3\n");
  EXPECT_EQ(tiv({"ini", "get", "s.ini", "two", "list", "--list", "--json"}).out, "[\n  1.5,\n  0.0,\n  3.0\n]\n");
}

TEST_F(Ini, GetFailuresHaveTheirExitCodes) {
  expect_exit(tiv({"ini", "get", "s.ini", "One", "x"}), 1, "tiv: s.ini: no section [One]\n");
  expect_exit(tiv({"ini", "get", "s.ini", "one", "q"}), 1,
               "tiv: s.ini: no entry 'q' in section [one]\n");
  expect_exit(tiv({"ini", "get", "none.ini", "one", "x"}), 4,
               "tiv: none.ini: cannot open the settings file\n");
  EXPECT_EQ(read_file("s.ini"), kSettings);
}

TEST_F(Ini, SetNormalisesInFrontOfTheChangeAndKeepsTheRest) {
  Outcome r = tiv({"ini", "set", "s.ini", "one", "y", "9"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out + r.err, "");
  EXPECT_EQ(read_file("s.ini"), "; top\na = 1\n\n[one]\nx= 1\ny=9\n\n[two]\nz=3\nlist=1.5,,3\n");
}

TEST_F(Ini, SetCreatesFilesAndWritesTypedNumbers) {
  EXPECT_EQ(tiv({"ini", "set", "new.ini", "s", "e", "v"}).code, 0);
  EXPECT_EQ(read_file("new.ini"), "[s]\ne=v");
  EXPECT_EQ(tiv({"ini", "set", "new.ini", "s", "d", "1.5", "--double"}).code, 0);
  EXPECT_EQ(tiv({"ini", "set", "new.ini", "s", "l", "1.5, 2", "--list"}).code, 0);
  EXPECT_EQ(read_file("new.ini"), "[s]\ne=v\nd=1.500000\nl=1.5,2\n");
  expect_exit(tiv({"ini", "set", "new.ini", "s", "n", "many", "--long"}), 2,
               "tiv: not a whole number: 'many'\n");
}

TEST_F(Ini, DeleteAndRename) {
  EXPECT_EQ(tiv({"ini", "delete", "s.ini", "one", "x"}).code, 0);
  EXPECT_EQ(tiv({"ini", "rename", "s.ini", "two", "z", "zz"}).code, 0);
  EXPECT_EQ(tiv({"ini", "rename", "s.ini", "one", "uno"}).code, 0);
  EXPECT_EQ(tiv({"ini", "list", "s.ini"}).out, "uno\ntwo\n");
  EXPECT_EQ(tiv({"ini", "list", "s.ini", "two", "--values"}).out, "zz=3\nlist=1.5,,3\n");
  EXPECT_EQ(tiv({"ini", "delete", "s.ini", "two"}).code, 0);
  EXPECT_EQ(tiv({"ini", "list", "s.ini", "--json"}).out, "[\n  \"uno\"\n]\n");

  expect_exit(tiv({"ini", "delete", "s.ini", "uno", "nothing"}), 1,
               "tiv: s.ini: no entry 'nothing' in section [uno]\n");
  expect_exit(tiv({"ini", "rename", "s.ini", "uno", "  "}), 2, "tiv: the new name is empty\n");
}

TEST_F(Ini, AMalformedEntryIsReportedInTheLog) {
  write_file("m.ini", "[s]\nno equal sign\ne=1\n");
  Outcome r = tiv({"ini", "get", "m.ini", "s", "e"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "1\n");
  EXPECT_EQ(r.err, "tiv: note: the library wrote a report to zv.err\n");
  EXPECT_NE(read_file("zv.err").find("  Incorrect entry's format. '=' is not found.!\n"), std::string::npos)
      << read_file("zv.err");
}

}  // namespace
}  // namespace tiv::test
