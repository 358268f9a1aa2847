// The escape encoding: decoding, encoding, in place and round trips.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "frame/fault.h"
#include "rows.h"

namespace {

std::string decoded(const std::string& in) {
  char src[256], dst[256];
  std::strcpy(src, in.c_str());
  EXPECT_EQ(str_stoe(dst, src), dst);
  EXPECT_EQ(src, in);  // src is only read
  return dst;
}

std::string encoded(const std::string& in) {
  char src[256], dst[512];
  std::strcpy(src, in.c_str());
  EXPECT_EQ(str_etos(dst, src), dst);
  return dst;
}

TEST(Escapes, DecodeKnownEscapesAndKeepUnknownOnes) {
  // The second backslash is used up by the first; no numeric escapes.
  for (const auto& [in, want] : tiv::test::Rows<const char*, std::string>{{"a\\nb", "a\nb"},
        {"\\a\\b\\t\\n\\v\\f\\r\\\"\\'\\\\", "\a\b\t\n\v\f\r\"'\\"}, {"\\q", "\\q"}, {"\\", "\\"},
        {"x\\", "x\\"}, {"\\\\n", "\\n"}, {"\\0", "\\0"}, {"", ""}})
    EXPECT_EQ(decoded(in), want) << in;
}

TEST(Escapes, EncodeTheTenCharactersOnly) {
  for (const auto& [in, want] : tiv::test::Rows<const char*, std::string>{{"\t", "\\t"},
        {"\x7F", "\x7F"}, {"a\"b'c\\", "a\\\"b\\'c\\\\"}, {"\a\b\n\v\f\r", "\\a\\b\\n\\v\\f\\r"},
        {"", ""}})
    EXPECT_EQ(encoded(in), want) << in;
}

TEST(Escapes, NilDstWorksInPlaceAndNilSrcDoesNothing) {
  char buf[64] = "a\tb\\c";
  EXPECT_EQ(str_etos(nullptr, buf), buf);
  EXPECT_STREQ(buf, "a\\tb\\\\c");
  EXPECT_EQ(str_stoe(nullptr, buf), buf);
  EXPECT_STREQ(buf, "a\tb\\c");
  EXPECT_EQ(str_etos(buf, buf), buf);  // dst and src the same buffer
  EXPECT_STREQ(buf, "a\\tb\\\\c");
  char dst[4] = "xy";
  EXPECT_EQ(str_stoe(dst, nullptr), dst);
  EXPECT_STREQ(dst, "xy");
  EXPECT_EQ(str_etos(nullptr, nullptr), nullptr);
}

#ifdef TIVLIB_FAULT_INJECTION

TEST(EscapesWithoutMemory, SameResultWhenTheCopyCannotBeMade) {
  for (char* (*op)(char*, char*) : {&str_stoe, &str_etos}) {
    char expected[64] = "x\\ny\t\"\\q";
    op(nullptr, expected);
    char in_place[64] = "x\\ny\t\"\\q";
    tiv::fault::fail_allocation_at(1);
    op(nullptr, in_place);
    EXPECT_TRUE(tiv::fault::allocation_failure_hit());
    EXPECT_STREQ(in_place, expected);
    char src[64] = "x\\ny\t\"\\q", dst[64];
    tiv::fault::fail_allocation_at(1);
    op(dst, src);
    EXPECT_STREQ(dst, expected);
  }
}

#endif

}  // namespace
