#include <gtest/gtest.h>

#include <tivlib/calc.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "fault_sweep.h"
#include "frame/fault.h"
#include "scoped_env.h"
#include "test_dir.h"

namespace {

// Every test runs in its own directory with the central settings file named "zv2.ini" there
// (absent unless the test writes it), and with no rounding.
class Calc : public tiv::test::InTempDir {
 protected:
  void SetUp() override { calc_init(0); }
  void TearDown() override { calc_init(0); }
  tiv::test::ScopedEnv zv_{"zv", "zv2.ini"};

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
  struct Value {
    const char* expression;
    double value;
  };
  // Each expression evaluates, exactly, to its value.
  static void expect_values(std::initializer_list<Value> rows) {
    for (const Value& r : rows) EXPECT_EQ(value_of(r.expression), r.value) << r.expression;
  }
  struct Failure {
    const char* expression;
    int32_t number, column, line = 0;
  };
  static void expect_errors(std::initializer_list<Failure> rows) {
    for (const Failure& r : rows) expect_error(r.expression, r.number, r.column, r.line);
  }
};

TEST_F(Calc, PrecedenceAssociativityAndUnaryMinus) {
  expect_values({{"1+2*3", 7.0}, {"2^3^2", 512.0}, {"-2^2", 4.0}, {"2^-1", 0.5}, {"(-2)^2", 4.0},
                 {"8/4/2", 1.0}, {"10-4-3", 3.0}, {"--3", 3.0}, {"2.5e1 * .5", 12.5},
                 {"1 + 2 * (3 - 1) ^ 2 / 4", 3.0}});
}

TEST_F(Calc, RelationsLogicAndTruth) {
  expect_values({{"3>2>1", 0.0}, {"1 OR 0 AND 0", 0.0}, {"NOT 0 + 1", 2.0}, {"NOT -0", 1.0},
                 {"NOT 0.5", 0.0}, {"2 and 3", 1.0}, {"0 Or 0", 0.0}});
  const char* truths[] = {"1<>2", "1><2", "1#2", "1=<1", "1<=1", "1=>1", "1>=1",
                          "1==1", "1=1", "2<<3", "3>>2", "2<3", "3>2"};
  for (const char* e : truths) EXPECT_EQ(value_of(e), 1.0) << e;
  const char* falsehoods[] = {"1<>1", "1#1", "2=<1", "1>=2", "1=2", "3<2", "2>3"};
  for (const char* e : falsehoods) EXPECT_EQ(value_of(e), 0.0) << e;
  // A NaN (from an unchecked domain) compares false except with "not equal"; it is true.
  expect_values({{"ASN(2) = ASN(2)", 0.0}, {"ASN(2) <> 1", 1.0}, {"NOT ASN(2)", 0.0}});
}

TEST_F(Calc, Conditionals) {
  expect_values({{"2>1 ? 5 : 7", 5.0}, {"1>2 ? 5 : 7", 7.0}, {"0 ? 1/0 : 3", 3.0},
                 {"1 ? 2 : SQRT(-1) + 10^400", 2.0}, {"1 ? 0 ? 5 : 6 : 7", 6.0},
                 {"0 ? 5 : 0 ? 6 : 7", 7.0}});
  // A syntax error counts in the branch not taken.
  expect_errors({{"1 ? 2 : )", 1, 8}, {"1 ? 2", 7, 5}, {"0 ? (1 : 2", 3, 7}});
}

TEST_F(Calc, Functions) {
  expect_values({{"sin(90)", 1.0}, {"Sin(90) + SIN(90)", 2.0}});
  for (const Value& r : {Value{"COS(60)", 0.5}, {"TAN(45)", 1.0}, {"COT(45)", 1.0}})
    EXPECT_NEAR(value_of(r.expression), r.value, 1e-15) << r.expression;
  expect_values({{"ASN(1)", 90.0}, {"ACS(0)", 90.0}, {"ATN(1)", 45.0}, {"ACT(0)", 90.0},
                 {"ACT(1)", 45.0}, {"ABS(-2.5)", 2.5}, {"SQRT(16)", 4.0}, {"EXP(0)", 1.0},
                 {"LGT(EXP(1))", 1.0}, {"LOG(1000)", 3.0}, {"PI", 3.141592653589793},
                 {"MIN(3,1,2)", 1.0}, {"MAX(2)", 2.0}, {"MAX(1, 7, 3>2, -9, 7)", 7.0},
                 {"MIN(MAX(1,2), 3) * 2", 4.0}, {"LOG(0)", -HUGE_VAL}, {"EXP(1000)", HUGE_VAL}});
  EXPECT_TRUE(std::isnan(value_of("ACS(2)")) && std::isnan(value_of("LGT(-1)")));
}

TEST_F(Calc, PowersAtTheEndsOfTheRange) {
  expect_values({{"0^2", 0.0}, {"(-2)^3", -8.0}, {"(-2)^-2", 0.25}});
  expect_errors({{"(-8)^(1/3)", 14, 10}, {"(-2)^3e9", 14, 8}, {"10^400", 15, 6}, {"2^-1100", 15, 7},
                 {"0^-1", 15, 4}});
}

TEST_F(Calc, EveryErrorNumberWithItsPosition) {
  expect_errors({{"x+1", 1, 0}, {"+5", 1, 0}, {"2**3", 1, 2}, {"1 2", 1, 2}, {"", 1, 0},
                 {"'a'", 1, 0}, {"\"abc", 1, 0}, {"SIN 30", 2, 4}, {"SIN(1,2)", 3, 5}, {"(1", 3, 2},
                 {"1+\n  (2", 3, 4, 1}, {"1/0", 16, 3}, {"SQRT(-1)", 17, 8}, {"AND(1)", 1, 6}});
  // After a failed division the term parses one more operand and stops behind it.
  expect_errors({{"1/0*2", 16, 5}, {"1/0*(2+3)", 16, 6}, {"1/0+)", 16, 3}, {"1/0*)", 1, 4}});
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
  expect_values({{"150", 200.0}, {"-150", -100.0}});  // ties go up
  calc_init(0);
  EXPECT_EQ(value_of("3.14159"), 3.14159);
  calc_init(1);
  calc_expression("1/0", nullptr, nullptr);  // nil outputs are tolerated
}

TEST_F(Calc, DecimalsMinusOneRoundsToTens) {
  // -1 is the request to read the settings, so -1 decimals come from the file.
  tiv::test::write_file("zv2.ini", "[Calculator]\nNachkommastellen=-1\n");
  calc_init(-1);
  expect_values({{"15", 20.0}, {"-15", -10.0}, {"14", 10.0}});
  tiv::test::write_file("zv2.ini", "[Calculator]\nf1=x\n");
  calc_init(-1);  // entry missing: unchanged
  EXPECT_EQ(value_of("14"), 10.0);
}

TEST_F(Calc, ErrorTextsFromTheSettingsFile) {
  char text[CALC_ERROR_TEXT_MAX + 1];
  int32_t number = -1;
  // The number and text of the error of the last expression, "-" if it is not asked for.
  auto error_of = [&](const char* expression, bool ask_number = true) {
    if (expression != nullptr) calc_expression(expression, nullptr, nullptr);
    number = -1;
    calc_error(ask_number ? &number : nullptr, nullptr, nullptr, text);
    return (ask_number ? std::to_string(number) : "-") + " " + text;
  };
  EXPECT_EQ(error_of("1/0"), "16 Error in expression");
  tiv::test::write_file("zv2.ini", "[Calculator]\nf0=Alles gut\nf16=Division durch Null\nf1=" +
                                       std::string(150, 'y') + "\n");
  EXPECT_EQ(error_of(nullptr), "16 Division durch Null");  // read at each call
  EXPECT_EQ(error_of("1+"), "1 " + std::string(100, 'y'));
  EXPECT_EQ(error_of("1"), "0 Alles gut");
  EXPECT_EQ(error_of("(1", false), "- Error in expression");
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

  // An overlong number keeps its first 255 characters, and its value is theirs.
  EXPECT_NEAR(std::log10(value_of((std::string(400, '9') + ".5").c_str())), 255.0, 1e-9);
  EXPECT_EQ(value_of("1e999"), HUGE_VAL);
  expect_errors({{"'\\", 1, 0}, {"SIN(\"unclosed", 1, 4}});
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
    Outcome o{};
    const bool hit = tiv::test::fails_at(n, [&] { o = run("2*3"); });
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
