// The escape encoding: decoding, encoding, in place and round trips.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "frame/fault.h"

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
  EXPECT_EQ(decoded("a\\nb"), "a\nb");
  EXPECT_EQ(decoded("\\a\\b\\t\\n\\v\\f\\r\\\"\\'\\\\"), "\a\b\t\n\v\f\r\"'\\");
  EXPECT_EQ(decoded("\\q"), "\\q");
  EXPECT_EQ(decoded("\\"), "\\");
  EXPECT_EQ(decoded("x\\"), "x\\");
  EXPECT_EQ(decoded("\\\\n"), "\\n");  // the second backslash is used up by the first
  EXPECT_EQ(decoded("\\0"), "\\0");    // no numeric escapes
  EXPECT_EQ(decoded(""), "");
}

TEST(Escapes, EncodeTheTenCharactersOnly) {
  EXPECT_EQ(encoded("\t"), "\\t");
  EXPECT_EQ(encoded("\x7F"), "\x7F");
  EXPECT_EQ(encoded("a\"b'c\\"), "a\\\"b\\'c\\\\");
  EXPECT_EQ(encoded("\a\b\n\v\f\r"), "\\a\\b\\n\\v\\f\\r");
  EXPECT_EQ(encoded(""), "");
}

TEST(Escapes, RoundTripOfEncodeThenDecodeButNotTheOtherWay) {
  const std::string text = "tab\there \"q\" back\\slash \\q\r\n";
  EXPECT_EQ(decoded(encoded(text)), text);
  EXPECT_EQ(encoded(decoded("\\q")), "\\\\q");
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
