// The command line as a whole: help, usage errors, exit codes and the zv.err rule.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using Driver = InTempDir;

TEST_F(Driver, NoArgumentsShowsTheOverviewOnStandardErrorAsAUsageError) {
  Outcome r = tiv({});
  EXPECT_EQ(r.code, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err.rfind("tiv - read, check and change Tivlib data files", 0), 0u) << r.err;
}

TEST_F(Driver, HelpListsEveryFamilyAndTheExitCodes) {
  Outcome r = tiv({"--help"});
  expect_exit(r, 0, "");
  for (const char* line : {"  env                         Environment files: get, set, delete, dump, check, merge, fmt\n",
                           "  ini                         Settings files: get, set, delete, rename, list\n",
                           "  profil                      Section catalogue: list, get, search, next, prev\n",
                           "Exit codes: 0 done, 1 not found, 2 usage, 3 bad format, 4 I/O error.\n"}) {
    EXPECT_NE(r.out.find(line), std::string::npos) << line;
  }
}

TEST_F(Driver, EverySubcommandHasHelpWithAnExample) {
  const std::vector<std::vector<std::string>> commands = {
      {"env", "get"},     {"env", "set"},     {"env", "delete"},  {"env", "dump"},    {"env", "check"},
      {"env", "merge"},   {"env", "fmt"},     {"ini", "get"},     {"ini", "set"},     {"ini", "delete"},
      {"ini", "rename"},  {"ini", "list"},    {"calc"},           {"scan"},           {"fio", "header"},
      {"profil", "list"}, {"profil", "get"},  {"profil", "search"}, {"profil", "next"}, {"profil", "prev"},
      {"demo"}};
  for (auto args : commands) {
    args.push_back("--help");
    Outcome r = tiv(args);
    EXPECT_EQ(r.code, 0) << args[0];
    EXPECT_EQ(r.err, "");
    EXPECT_NE(r.out.find("Example:\n  tiv " + args[0]), std::string::npos) << args[0] << "\n" << r.out;
  }
}

TEST_F(Driver, VersionIsPrinted) {
  Outcome r = tiv({"--version"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "tiv 1.0.0\n");
}

TEST_F(Driver, UsageErrorsNameTheCommandToAskForHelp) {
  Outcome r = tiv({"frobnicate"});
  EXPECT_EQ(r.code, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "tiv: The following argument was not expected: frobnicate\nRun 'tiv --help' for usage.\n");

  expect_exit(tiv({"env", "get", "only-a-file"}), 2,
               "tiv: SECTION is required\nRun 'tiv env get --help' for usage.\n");
}

TEST_F(Driver, AFamilyWithoutSubcommandShowsItsHelpAsAUsageError) {
  Outcome r = tiv({"ini"});
  EXPECT_EQ(r.code, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_NE(r.err.find("Settings files: get, set, delete, rename, list"), std::string::npos) << r.err;
}

TEST_F(Driver, NoLogIsLeftWhenTheLibraryReportsNothing) {
  write_file("a.env", "[A]\n  x =1\n");
  Outcome r = tiv({"env", "get", "a.env", "A", "x"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "1\n");
  EXPECT_EQ(r.err, "");
  EXPECT_FALSE(file_exists("zv.err"));
}

TEST_F(Driver, TheLogOfAReportingRunStaysAndIsPointedTo) {
  write_file("bad.env", "[A]\n  x =1\n}\n");
  Outcome r = tiv({"env", "check", "bad.env"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.err,
            "tiv: bad.env:3: syntax error: a section header \"[name]\" was expected\n"
            "tiv: note: the library wrote a report to zv.err\n");
  ASSERT_TRUE(file_exists("zv.err"));
  EXPECT_NE(read_file("zv.err").find("  Section waited!\n"), std::string::npos);
}

TEST_F(Driver, AnOlderLogThatThisRunDidNotWriteIsLeftAlone) {
  write_file("zv.err", "an older run's report\n");
  write_file("a.env", "[A]\n  x =1\n");
  expect_exit(tiv({"env", "get", "a.env", "A", "x"}), 0, "");
  EXPECT_EQ(read_file("zv.err"), "an older run's report\n");
}

}  // namespace
}  // namespace tiv::test
