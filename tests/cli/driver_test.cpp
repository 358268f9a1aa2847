// The command line as a whole: help, usage errors, exit codes and the zv.err rule.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using Driver = InTempDir;

TEST_F(Driver, HelpListsEveryFamilyAndTheExitCodes) {
  Outcome r = tiv({"--help"});
  expect_exit(r, 0, "");
  for (const char* line : {"  env                         Environment files: get, set, delete, dump, check, merge, fmt\n",
                           "  profil                      Section catalogue: list, get, search, next, prev\n",
                           "Exit codes: 0 done, 1 not found, 2 usage, 3 bad format, 4 I/O error.\n"}) {
    EXPECT_NE(r.out.find(line), std::string::npos) << line;
  }
}

TEST_F(Driver, UsageErrorsNameTheCommandToAskForHelp) {
  expect_run(tiv({"frobnicate"}), 2, "",
             "tiv: The following argument was not expected: frobnicate\nRun 'tiv --help' for usage.\n");
}

// zv.err stays only after a run in which the library reported something, and is pointed to.
TEST_F(Driver, TheLogIsKeptOnlyWhenTheLibraryReported) {
  write_file("a.env", "[A]\n  x =1\n");
  expect_exit(tiv({"env", "get", "a.env", "A", "x"}), 0, "");
  EXPECT_FALSE(file_exists("zv.err"));

  write_file("bad.env", "[A]\n  x =1\n}\n");
  expect_exit(tiv({"env", "check", "bad.env"}), 3,
              "tiv: bad.env:3: syntax error: a section header \"[name]\" was expected\n"
              "tiv: note: the library wrote a report to zv.err\n");
  EXPECT_NE(read_file("zv.err").find("  Section waited!\n"), std::string::npos);
}

}  // namespace
}  // namespace tiv::test
