// tiv calc, tiv scan and tiv fio end to end.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using Calc = InTempDir;

TEST_F(Calc, EvaluatesEachArgument) {
  expect_run(tiv({"calc", "--decimals", "2", "3.14159", "2/3"}), 0, "3.14\n0.67\n");
}

TEST_F(Calc, AnErrorShowsItsNumberColumnAndACaret) {
  expect_run(tiv({"calc", "1 + x", "3"}), 3, "3\n",
             "tiv: error 1 at column 5: Error in expression\n  1 + x\n      ^\n");
  EXPECT_FALSE(file_exists("zv.err"));
}

using Scan = InTempDir;

TEST_F(Scan, PrintsOneTokenALine) {
  write_file("in.txt", "IF x >= 12");
  expect_run(tiv({"scan", "in.txt", "--flags", "relations", "--keywords", "IF"}), 0,
             "1:1 keyword IF\n1:4 identifier x\n1:6 greaterequal >=\n1:9 long 12\n1:11 eof\n");
}

TEST_F(Scan, RejectsUnknownFlags) {
  write_file("in.txt", "x");
  expect_exit(tiv({"scan", "in.txt", "--flags", "colour"}), 2,
               "tiv: unknown scanner flag 'colour' (see tiv scan --help)\n");
}

using Fio = InTempDir;

TEST_F(Fio, ShowsTheHeaderAndTheByteOrder) {
  write_file("intel.bin", std::string("1.1  @zvINTEL   ") + std::string(8, '\0'));
  expect_run(tiv({"fio", "header", "intel.bin"}), 0,
             "file        intel.bin\n"
            "header      yes\n"
            "signature   \"1.1  @zv\"\n"
            "tag         \"INTEL   \"\n"
            "byte order  little-endian (host order)\n"
            "data        from byte 16\n"
            "length      24 bytes\n");
}

TEST_F(Fio, AMissingFile) {
  expect_exit(tiv({"fio", "header", "none.bin"}), 4, "tiv: none.bin: cannot open\n");
}

}  // namespace
}  // namespace tiv::test
