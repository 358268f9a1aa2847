// The command line as a whole: help, usage errors, exit codes and the library's log.
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

// The library's log goes to the run's private place: a zv.err of the user is never touched,
// and a failed command shows what the library reported.
TEST_F(Driver, TheLogIsPrivateAndShownOnFailure) {
  write_file("zv.err", "the host's own log\n");
  write_file("a.env", "[A]\n  x =1\n");
  expect_run(tiv({"env", "get", "a.env", "A", "x"}), 0, "1\n");
  write_file("bad.env", "[A]\n  x =1\n}\n");
  const Outcome r = tiv({"env", "check", "bad.env"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.err.rfind("tiv: bad.env:3: syntax error: a section header \"[name]\" was expected\n"
                        "tiv: the library reported:\n", 0), 0u) << r.err;
  EXPECT_NE(r.err.find("  Section waited!\n"), std::string::npos) << r.err;
  EXPECT_EQ(read_file("zv.err"), "the host's own log\n");
}

}  // namespace
}  // namespace tiv::test
