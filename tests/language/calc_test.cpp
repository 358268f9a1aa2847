#include <gtest/gtest.h>

#include <tivlib/calc.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>

#include "frame/fault.h"
#include "test_dir.h"

namespace {

// Every test runs in its own directory with the central settings file named "zv2.ini" there
// (absent unless the test writes it), and with no rounding.
class Calc : public tiv::test::InTempDir {
 protected:
  void SetUp() override {
    setenv("zv", "zv2.ini", 1);
    calc_init(0);
  }
  void TearDown() override {
    calc_init(0);
    unsetenv("zv");
  }

  struct Outcome {
    double value;
    int32_t ok;
    int32_t number;
    int32_t line;
    int32_t column;
  };
  static Outcome run(const char* expression) {
    Outcome o{-12345.0, -1, -1, -1, -1};
    calc_expression(expression, &o.value, &o.ok);
    calc_error(&o.number, &o.line, &o.column, nullptr);
    return o;
  }
  static double value_of(const char* expression) {
    const Outcome o = run(expression);
    EXPECT_EQ(o.ok, 1) << expression << " error " << o.number;
    return o.value;
  }
  static void expect_error(const char* expression, int32_t number, int32_t column,
                           int32_t line = 0) {
    const Outcome o = run(expression);
    EXPECT_EQ(o.ok, 0) << expression;
    EXPECT_EQ(o.number, number) << expression;
    EXPECT_EQ(o.line, line) << expression;
    EXPECT_EQ(o.column, column) << expression;
  }
};

TEST_F(Calc, PrecedenceAssociativityAndUnaryMinus) {
  EXPECT_EQ(value_of("1+2*3"), 7.0);
  EXPECT_EQ(value_of("2^3^2"), 512.0);
  EXPECT_EQ(value_of("-2^2"), 4.0);
  EXPECT_EQ(value_of("2^-1"), 0.5);
  EXPECT_EQ(value_of("(-2)^2"), 4.0);
  EXPECT_EQ(value_of("8/4/2"), 1.0);
  EXPECT_EQ(value_of("10-4-3"), 3.0);
  EXPECT_EQ(value_of("--3"), 3.0);
  EXPECT_EQ(value_of("2.5e1 * .5"), 12.5);
  EXPECT_EQ(value_of("1 + 2 * (3 - 1) ^ 2 / 4"), 3.0);
}

TEST_F(Calc, RelationsLogicAndTruth) {
  EXPECT_EQ(value_of("3>2>1"), 0.0);
  EXPECT_EQ(value_of("1 OR 0 AND 0"), 0.0);
  EXPECT_EQ(value_of("NOT 0 + 1"), 2.0);
  EXPECT_EQ(value_of("NOT -0"), 1.0);
  EXPECT_EQ(value_of("NOT 0.5"), 0.0);
  EXPECT_EQ(value_of("2 and 3"), 1.0);
  EXPECT_EQ(value_of("0 Or 0"), 0.0);
  const char* truths[] = {"1<>2", "1><2", "1#2", "1=<1", "1<=1", "1=>1", "1>=1",
                          "1==1", "1=1", "2<<3", "3>>2", "2<3", "3>2"};
  for (const char* e : truths) EXPECT_EQ(value_of(e), 1.0) << e;
  const char* falsehoods[] = {"1<>1", "1#1", "2=<1", "1>=2", "1=2", "3<2", "2>3"};
  for (const char* e : falsehoods) EXPECT_EQ(value_of(e), 0.0) << e;
  // A NaN (from an unchecked domain) compares false except with "not equal"; it is true.
  EXPECT_EQ(value_of("ASN(2) = ASN(2)"), 0.0);
  EXPECT_EQ(value_of("ASN(2) <> 1"), 1.0);
  EXPECT_EQ(value_of("NOT ASN(2)"), 0.0);
}

TEST_F(Calc, Conditionals) {
  EXPECT_EQ(value_of("2>1 ? 5 : 7"), 5.0);
  EXPECT_EQ(value_of("1>2 ? 5 : 7"), 7.0);
  EXPECT_EQ(value_of("0 ? 1/0 : 3"), 3.0);
  EXPECT_EQ(value_of("1 ? 2 : SQRT(-1) + 10^400"), 2.0);
  EXPECT_EQ(value_of("1 ? 0 ? 5 : 6 : 7"), 6.0);
  EXPECT_EQ(value_of("0 ? 5 : 0 ? 6 : 7"), 7.0);
  expect_error("1 ? 2 : )", 1, 8);
  expect_error("1 ? 2", 7, 5);
  expect_error("0 ? (1 : 2", 3, 7);  // a syntax error counts in the branch not taken
}

TEST_F(Calc, Functions) {
  EXPECT_EQ(value_of("sin(90)"), 1.0);
  EXPECT_EQ(value_of("Sin(90) + SIN(90)"), 2.0);
  EXPECT_NEAR(value_of("COS(60)"), 0.5, 1e-15);
  EXPECT_NEAR(value_of("TAN(45)"), 1.0, 1e-15);
  EXPECT_NEAR(value_of("COT(45)"), 1.0, 1e-15);
  EXPECT_EQ(value_of("ASN(1)"), 90.0);
  EXPECT_EQ(value_of("ACS(0)"), 90.0);
  EXPECT_EQ(value_of("ATN(1)"), 45.0);
  EXPECT_EQ(value_of("ACT(0)"), 90.0);
  EXPECT_EQ(value_of("ACT(1)"), 45.0);
  EXPECT_EQ(value_of("ABS(-2.5)"), 2.5);
  EXPECT_EQ(value_of("SQRT(16)"), 4.0);
  EXPECT_EQ(value_of("EXP(0)"), 1.0);
  EXPECT_EQ(value_of("LGT(EXP(1))"), 1.0);
  EXPECT_EQ(value_of("LOG(1000)"), 3.0);
  EXPECT_EQ(value_of("PI"), 3.141592653589793);
  EXPECT_EQ(value_of("MIN(3,1,2)"), 1.0);
  EXPECT_EQ(value_of("MAX(2)"), 2.0);
  EXPECT_EQ(value_of("MAX(1, 7, 3>2, -9, 7)"), 7.0);
  EXPECT_EQ(value_of("MIN(MAX(1,2), 3) * 2"), 4.0);
  EXPECT_TRUE(std::isnan(value_of("ACS(2)")));
  EXPECT_EQ(value_of("LOG(0)"), -HUGE_VAL);
  EXPECT_EQ(value_of("EXP(1000)"), HUGE_VAL);
  EXPECT_TRUE(std::isnan(value_of("LGT(-1)")));
}

TEST_F(Calc, PowersAtTheEndsOfTheRange) {
  EXPECT_EQ(value_of("0^2"), 0.0);
  EXPECT_EQ(value_of("(-2)^3"), -8.0);
  EXPECT_EQ(value_of("(-2)^-2"), 0.25);
  expect_error("(-8)^(1/3)", 14, 10);
  expect_error("(-2)^3e9", 14, 8);
  expect_error("10^400", 15, 6);
  expect_error("2^-1100", 15, 7);
  expect_error("0^-1", 15, 4);
}

TEST_F(Calc, EveryErrorNumberWithItsPosition) {
  expect_error("x+1", 1, 0);
  expect_error("+5", 1, 0);
  expect_error("2**3", 1, 2);
  expect_error("1 2", 1, 2);
  expect_error("", 1, 0);
  expect_error("'a'", 1, 0);
  expect_error("\"abc", 1, 0);
  expect_error("SIN 30", 2, 4);
  expect_error("SIN(1,2)", 3, 5);
  expect_error("(1", 3, 2);
  expect_error("1+\n  (2", 3, 4, 1);
  expect_error("1/0", 16, 3);
  expect_error("SQRT(-1)", 17, 8);
  expect_error("AND(1)", 1, 6);
  // After a failed division the term parses one more operand and stops behind it.
  expect_error("1/0*2", 16, 5);
  expect_error("1/0*(2+3)", 16, 6);
  expect_error("1/0+)", 16, 3);
  expect_error("1/0*)", 1, 4);
  const Outcome good = run("1");
  EXPECT_EQ(good.number, 0);  // errors don't carry over
  EXPECT_EQ(good.column, 1);
}

TEST_F(Calc, Rounding) {
  calc_init(2);
  EXPECT_EQ(value_of("3.14159"), 3.14);
  calc_init(-1);  // no settings file: the value stays
  EXPECT_EQ(value_of("3.14159"), 3.14);
  calc_init(-2);
  EXPECT_EQ(value_of("150"), 200.0);
  EXPECT_EQ(value_of("-150"), -100.0);  // ties go up
  calc_init(0);
  EXPECT_EQ(value_of("3.14159"), 3.14159);
  calc_init(1);
  calc_expression("1/0", nullptr, nullptr);  // nil outputs are tolerated
}

TEST_F(Calc, DecimalsMinusOneRoundsToTens) {
  // -1 is the request to read the settings, so -1 decimals come from the file.
  tiv::test::write_file("zv2.ini", "[Calculator]\nNachkommastellen=-1\n");
  calc_init(-1);
  EXPECT_EQ(value_of("15"), 20.0);
  EXPECT_EQ(value_of("-15"), -10.0);
  EXPECT_EQ(value_of("14"), 10.0);
  tiv::test::write_file("zv2.ini", "[Calculator]\nNachkommastellen = 3\n");
  calc_init(-1);
  EXPECT_DOUBLE_EQ(value_of("2/3"), 0.667);
  tiv::test::write_file("zv2.ini", "[Calculator]\nf1=x\n");
  calc_init(-1);  // entry missing: unchanged
  EXPECT_DOUBLE_EQ(value_of("2/3"), 0.667);
}

TEST_F(Calc, ErrorTextsFromTheSettingsFile) {
  char text[CALC_ERROR_TEXT_MAX + 1];
  int32_t number = -1;
  calc_expression("1/0", nullptr, nullptr);
  calc_error(&number, nullptr, nullptr, text);
  EXPECT_EQ(number, 16);
  EXPECT_STREQ(text, "Error in expression");
  tiv::test::write_file("zv2.ini", "[Calculator]\nf0=Alles gut\nf16=Division durch Null\nf1=" +
                                       std::string(150, 'y') + "\n");
  calc_error(&number, nullptr, nullptr, text);
  EXPECT_STREQ(text, "Division durch Null");
  calc_expression("1+", nullptr, nullptr);
  calc_error(&number, nullptr, nullptr, text);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(std::string(text), std::string(100, 'y'));
  calc_expression("1", nullptr, nullptr);
  calc_error(&number, nullptr, nullptr, text);
  EXPECT_STREQ(text, "Alles gut");
  calc_expression("(1", nullptr, nullptr);
  calc_error(nullptr, nullptr, nullptr, text);
  EXPECT_STREQ(text, "Error in expression");
  EXPECT_FALSE(tiv::test::file_exists("zv.err"));  // expression failures are not logged
}

TEST_F(Calc, BadInputNeverCrashes) {
  std::string long_sum = "1";
  while (long_sum.size() < 100000) long_sum += "+1";
  EXPECT_EQ(value_of(long_sum.c_str()), 50001.0);  // 100 001 characters

  // Nesting: 199 parentheses fit the bound, 200 stop with error 1 at the 200th.
  EXPECT_EQ(value_of((std::string(199, '(') + "1" + std::string(199, ')')).c_str()), 1.0);
  expect_error((std::string(200, '(') + "1" + std::string(200, ')')).c_str(), 1, 200);
  expect_error(std::string(10000, '(').c_str(), 1, 200);
  expect_error(std::string(100000, '-').c_str(), 1, 598);
  std::string powers = "2";
  for (int i = 0; i < 10000; ++i) powers += "^2";
  EXPECT_EQ(run(powers.c_str()).number, 1);
  std::string conditionals;
  for (int i = 0; i < 10000; ++i) conditionals += "1?";
  EXPECT_EQ(run(conditionals.c_str()).number, 1);

  for (int c = 1; c < 256; ++c) {
    const char one[2] = {static_cast<char>(c), '\0'};
    const Outcome o = run(one);
    if (c >= '0' && c <= '9') {
      EXPECT_EQ(o.ok, 1);
      EXPECT_EQ(o.value, c - '0');
    } else {
      EXPECT_EQ(o.ok, 0) << c;
      EXPECT_EQ(o.number, 1) << c;
    }
  }
  // An overlong number keeps its first 255 characters, and its value is theirs.
  EXPECT_NEAR(std::log10(value_of((std::string(400, '9') + ".5").c_str())), 255.0, 1e-9);
  EXPECT_EQ(value_of("1e999"), HUGE_VAL);
  expect_error("'\\", 1, 0);
  expect_error("SIN(\"unclosed", 1, 4);
  const Outcome nil = run(nullptr);
  EXPECT_EQ(nil.number, 1);
  EXPECT_EQ(nil.column, 0);
}

TEST_F(Calc, NumbersIgnoreTheHostLocale) {
  const char* previous = std::setlocale(LC_ALL, nullptr);
  const std::string saved = previous != nullptr ? previous : "C";
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no German locale";
  EXPECT_EQ(value_of("1.5*2"), 3.0);
  std::setlocale(LC_ALL, saved.c_str());
}

#ifdef TIVLIB_FAULT_INJECTION
TEST_F(Calc, ScannerWithoutMemory) {
  for (long n = 1;; ++n) {
    tiv::fault::fail_allocation_at(n);
    const Outcome o = run("2*3");
    const bool hit = tiv::fault::allocation_failure_hit();
    tiv::fault::fail_allocation_at(0);
    if (!hit) {
      EXPECT_EQ(o.value, 6.0);
      break;
    }
    EXPECT_EQ(o.ok, 0);
    EXPECT_EQ(o.number, 1);
    EXPECT_EQ(o.column, 0);
  }
}

TEST_F(Calc, SettingsReadsWithoutMemory) {
  tiv::test::write_file("zv2.ini", "[Calculator]\nNachkommastellen=2\nf16=Null\n");
  for (long n = 1;; ++n) {
    calc_init(0);
    calc_expression("1/0", nullptr, nullptr);
    char text[CALC_ERROR_TEXT_MAX + 1] = "untouched";
    tiv::fault::fail_allocation_at(n);
    calc_init(-1);
    calc_error(nullptr, nullptr, nullptr, text);
    const bool hit = tiv::fault::allocation_failure_hit();
    tiv::fault::fail_allocation_at(0);
    EXPECT_TRUE(std::string(text) == "Null" || std::string(text) == "Error in expression")
        << text;
    if (!hit) {
      EXPECT_STREQ(text, "Null");
      EXPECT_EQ(value_of("1.006*3"), 3.02);
      break;
    }
  }
}
#endif

}  // namespace
