// Numbers to text and back, in the C locale whatever the host's locale is.
#include <tivlib/convert.h>

#include <clocale>
#include <cmath>
#include <cstring>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "rows.h"

namespace {

std::string dtos(double v, int32_t width, int32_t precision) {
  char out[CONVERT_OUTPUT_MAX + 1];
  const int32_t n = convert_dtos(v, width, precision, out);
  EXPECT_EQ(n, static_cast<int32_t>(std::strlen(out)));
  return out;
}

std::string ltos(int32_t v, int32_t width) {
  char out[CONVERT_OUTPUT_MAX + 1];
  const int32_t n = convert_ltos(v, width, out);
  EXPECT_EQ(n, static_cast<int32_t>(std::strlen(out)));
  return out;
}

TEST(ConvertToText, WidthAndPrecisionAsInTheBuiltFormatUpToTheirLimits) {
  EXPECT_EQ(ltos(42, 5), "   42");
  EXPECT_EQ(ltos(42, -5), "42   ");
  EXPECT_EQ(ltos(-2147483647 - 1, 0), "-2147483648");
  EXPECT_EQ(dtos(3.14159, 0, 2), "3.14");
  EXPECT_EQ(dtos(-1.5, 8, 3), "  -1.500");
  EXPECT_EQ(dtos(2.5, -6, 1), "2.5   ");
  EXPECT_EQ(dtos(1.0, 0, -1), "1.000000");  // a negative precision means the default
  // Huge widths and precisions are held at their limits.
  EXPECT_EQ(ltos(7, 100000).size(), static_cast<size_t>(CONVERT_WIDTH_MAX));
  EXPECT_EQ(ltos(7, INT32_MIN).size(), static_cast<size_t>(CONVERT_WIDTH_MAX));
  const std::string big = dtos(-1.7976931348623157e308, INT32_MAX, INT32_MAX);
  EXPECT_EQ(big.size(), 1u + 309u + 1u + CONVERT_PRECISION_MAX);
  EXPECT_EQ(big.substr(0, 4), "-179");
}

TEST(ConvertFromText, AtofRulesWithDExponents) {
  // an exponent letter without digits is not read; decimal numbers only.
  for (const auto& [in, want] : tiv::test::Rows<const char*, double>{{"  1.5", 1.5},
        {"\t\n-2.25xyz", -2.25}, {"+3", 3.0}, {"1.5D3", 1500.0}, {"2d-2", 0.02}, {"2E+2", 200.0},
        {"2e", 2.0}, {"2d+x", 2.0}, {".5", 0.5}, {"5.", 5.0}, {".", 0.0}, {"abc", 0.0}, {"", 0.0},
        {nullptr, 0.0}, {"0x10", 0.0}, {"inf", 0.0}, {"1,5", 1.0}})
    EXPECT_EQ(convert_stod(in), want) << in;
  EXPECT_TRUE(std::isinf(convert_stod("1e999")));
  const std::string long_number = "1" + std::string(300, '0') + "d-300";
  EXPECT_EQ(convert_stod(long_number.c_str()), 1.0);
}

TEST(ConvertFromText, AtolRules) {
  for (const auto& [in, want] : tiv::test::Rows<const char*, int32_t>{{"  42abc", 42}, {"-17", -17},
        {"+8", 8}, {"1.9", 1}, {"1e3", 1}, {"x1", 0}, {nullptr, 0}, {"99999999999", INT32_MAX},
        {"-2147483648", INT32_MIN}, {"-99999999999", INT32_MIN}})
    EXPECT_EQ(convert_stol(in), want) << in;
}

// A host that runs in a German locale still reads and writes "1.5".
TEST(ConvertLocale, HostLocaleDoesNotChangeNumbers) {
  const std::string saved = std::setlocale(LC_ALL, nullptr);
  const char* names[] = {"de_DE.UTF-8", "de_DE.utf8", "de_DE"};
  bool set = false;
  for (const char* n : names) set = set || std::setlocale(LC_ALL, n) != nullptr;
  if (!set) GTEST_SKIP() << "no German locale on this machine";
  char probe[16];
  std::snprintf(probe, sizeof probe, "%.1f", 1.5);
  const bool comma = std::string(probe) == "1,5";
  const double read = convert_stod("1.5");
  const std::string written = dtos(1.5, 0, 6);
  std::setlocale(LC_ALL, saved.c_str());
  EXPECT_TRUE(comma) << "the locale should write a decimal comma";
  EXPECT_EQ(read, 1.5);
  EXPECT_EQ(written, "1.500000");
}

TEST(DosToWin, OnlyTheSevenGermanLettersChange) {
  char text[] = "\x81\x84\x8E\x94\x99\x9A\xE1\x80\x82 a";
  EXPECT_EQ(dos_to_win(text, 0), text);
  EXPECT_STREQ(text, "\xFC\xE4\xC4\xF6\xD6\xDC\xDF\x80\x82 a");
  char kept[] = "\x81";
  EXPECT_STREQ(dos_to_win(kept, 1), "\x81");
  EXPECT_EQ(dos_to_win(nullptr, 0), nullptr);
}

TEST(Numeric, RoundingToPowersOfTen) {
  for (const auto& [value, power, want] : {std::tuple{2.5, 0, 3.0}, {-2.5, 0, -2.0}, {1.2345, -2, 1.23},
           {1250.0, 2, 1300.0}, {-1249.0, 2, -1200.0}})
    EXPECT_DOUBLE_EQ(pround(value, power), want) << value << " " << power;
}

TEST(Numeric, SignsGiveExactlyMinusOneZeroOne) {
  for (const auto& [in, want] : tiv::test::Rows<int32_t, int32_t>{
           {INT32_MIN, -1}, {-1, -1}, {0, 0}, {1, 1}, {INT32_MAX, 1}})
    EXPECT_EQ(lsgn(in), want) << in;
  for (const auto& [in, want] : tiv::test::Rows<double, double>{{-1e-300, -1.0}, {-INFINITY, -1.0},
           {0.0, 0.0}, {-0.0, 0.0}, {1e-300, 1.0}, {NAN, 1.0}, {-NAN, 1.0}})
    EXPECT_EQ(fsgn(in), want) << in;
  EXPECT_FALSE(std::signbit(fsgn(-0.0)));
}

TEST(Numeric, TrigonometryInDegrees) {
  EXPECT_EQ(sin_deg(90), 1.0);
  EXPECT_EQ(acos_deg(1), 0.0);
  for (const auto& [fn, in, want] : {std::tuple{&sin_deg, 30.0, 0.5}, {sin_deg, -90, -1},
           {cos_deg, 60, 0.5}, {cos_deg, 180, -1}, {tan_deg, 45, 1}, {tan_deg, -135, 1}, {asin_deg, 0.5, 30},
           {asin_deg, -1, -90}, {acos_deg, 0.5, 60}, {acos_deg, -1, 180}, {atan_deg, 1, 45},
           {atan_deg, -1e300, -90}})
    EXPECT_NEAR(fn(in), want, 1e-12) << in;
  for (const auto& [yx, want] : tiv::test::Rows<std::pair<double, double>, double>{
           {{1, 0}, 90}, {{0, -1}, 180}, {{-1, -1}, -135}, {{-1, 1}, -45}, {{0, 1}, 0}})
    EXPECT_NEAR(atan2_deg(yx.first, yx.second), want, 1e-12) << yx.first << "," << yx.second;
  EXPECT_TRUE(std::isnan(asin_deg(1.5)));
  EXPECT_TRUE(std::isnan(acos_deg(-1.5)));
}

}  // namespace
