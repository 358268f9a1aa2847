// tiv calc, tiv scan and tiv fio end to end.
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using Calc = InTempDir;

TEST_F(Calc, EvaluatesEachArgument) {
  Outcome r = tiv({"calc", "1+2*3", "2^3^2", "-2^2", "sin(90)", "MIN(3,1,2)", "1 OR 0 AND 0"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "7\n512\n4\n1\n1\n0\n");
  EXPECT_EQ(r.err, "");
}

TEST_F(Calc, RoundsToTheGivenDecimals) {
  EXPECT_EQ(tiv({"calc", "--decimals", "2", "3.14159", "2/3"}).out, "3.14\n0.67\n");
  EXPECT_EQ(tiv({"calc", "3.14159"}).out, "3.14159\n");
  expect_exit(tiv({"calc", "--decimals", "99", "1"}), 2,
               "tiv: --decimals must lie between 0 and 15\n");
}

TEST_F(Calc, AnErrorShowsItsNumberColumnAndACaret) {
  Outcome r = tiv({"calc", "1 + x", "1/0", "3"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.out, "3\n");
  EXPECT_EQ(r.err,
            "tiv: error 1 at column 5: Error in expression\n"
            "  1 + x\n"
            "      ^\n"
            "tiv: error 16 at column 4: Error in expression\n"
            "  1/0\n"
            "     ^\n");
  EXPECT_FALSE(file_exists("zv.err"));
}

TEST_F(Calc, ReadsStandardInputLineByLine) {
  Outcome r = tiv({"calc"}, "1+1\n\n(1\n2*PI\n");
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.out, "2\n6.28318530717959\n");
  EXPECT_EQ(r.err, "tiv: <stdin>:3: error 3 at column 3: Error in expression\n  (1\n    ^\n");
}

TEST_F(Calc, ErrorTextsComeFromTheSettingsFile) {
  write_file("zv2.ini", "[Calculator]\nf16=Division by zero\n");
  Outcome r = tiv({"calc", "1/0", "--json"}, {}, {{"zv", "zv2.ini"}});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.out,
            "[\n  {\n    \"column\": 4,\n    \"error\": 16,\n    \"expression\": \"1/0\",\n"
            "    \"message\": \"Division by zero\"\n  }\n]\n");
}

using Scan = InTempDir;

TEST_F(Scan, PrintsOneTokenALine) {
  write_file("in.txt", "IF x >= 12 THEN y = 'a' // note\n  z = \"s t\" 1.5e\n");
  Outcome r = tiv({"scan", "in.txt", "--flags", "line-comment,relations", "--keywords", "IF,THEN"});
  EXPECT_EQ(r.code, 3);
  EXPECT_EQ(r.out,
            "1:1 keyword IF\n"
            "1:4 identifier x\n"
            "1:6 greaterequal >=\n"
            "1:9 long 12\n"
            "1:12 keyword THEN\n"
            "1:17 identifier y\n"
            "1:19 equal =\n"
            "1:21 char a\n"
            "2:3 identifier z\n"
            "2:5 equal =\n"
            "2:7 string s t\n"
            "2:13 double 1.5e\n"
            "3:1 eof\n");
  EXPECT_EQ(r.err, "tiv: in.txt:2: column 13: exponent without a digit\n");
}

TEST_F(Scan, ReadsStandardInputAndGivesJson) {
  Outcome r = tiv({"scan", "-", "--flags", "eol,0x10", "--json"}, "-7\n");
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out,
            "[\n"
            "  {\n    \"code\": 7,\n    \"column\": 1,\n    \"kind\": \"long\",\n    \"line\": 1,\n"
            "    \"text\": \"-7\",\n    \"value\": -7\n  },\n"
            "  {\n    \"code\": 43,\n    \"column\": 3,\n    \"kind\": \"eol\",\n    \"line\": 1,\n"
            "    \"text\": \"\"\n  },\n"
            "  {\n    \"code\": 44,\n    \"column\": 1,\n    \"kind\": \"eof\",\n    \"line\": 2,\n"
            "    \"text\": \"\"\n  }\n"
            "]\n");
}

TEST_F(Scan, RejectsUnknownFlags) {
  write_file("in.txt", "x");
  expect_exit(tiv({"scan", "in.txt", "--flags", "colour"}), 2,
               "tiv: unknown scanner flag 'colour' (see tiv scan --help)\n");
}

using Fio = InTempDir;

TEST_F(Fio, ShowsTheHeaderAndTheByteOrder) {
  write_file("intel.bin", std::string("1.1  @zvINTEL   ") + std::string(8, '\0'));
  Outcome r = tiv({"fio", "header", "intel.bin"});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out,
            "file        intel.bin\n"
            "header      yes\n"
            "signature   \"1.1  @zv\"\n"
            "tag         \"INTEL   \"\n"
            "byte order  little-endian (host order)\n"
            "data        from byte 16\n"
            "length      24 bytes\n");
  write_file("moto.bin", "1.1  @zvMOTOROLA");
  EXPECT_EQ(tiv({"fio", "header", "moto.bin", "--json"}).out,
            "{\n  \"byte_order\": \"big-endian\",\n  \"data_offset\": 16,\n  \"file\": \"moto.bin\",\n"
            "  \"header\": true,\n  \"length\": 16,\n  \"signature\": \"1.1  @zv\",\n"
            "  \"tag\": \"MOTOROLA\"\n}\n");
}

TEST_F(Fio, AFileWithoutHeaderOrAMissingFile) {
  write_file("plain.txt", "hello");
  Outcome r = tiv({"fio", "header", "plain.txt"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.out,
            "file        plain.txt\nheader      no\nbyte order  none\ndata        from byte 0\n"
            "length      5 bytes\n");
  r = tiv({"fio", "header", "none.bin"});
  EXPECT_EQ(r.code, 4);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "tiv: none.bin: cannot open\n");
}

}  // namespace
}  // namespace tiv::test
