// The str_ family: exact results at the edges where it differs from the standard library.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace {

// A buffer pre-filled with a marker, to see what a routine writes and what it leaves alone.
struct Buffer {
  char bytes[32];
  explicit Buffer(const char* start = "") {
    std::memset(bytes, '#', sizeof bytes);
    std::strcpy(bytes, start);
  }
};

TEST(StrCopy, NcpyTerminatesAndWritesNothingBehind) {
  Buffer b;
  EXPECT_EQ(str_ncpy(b.bytes, "abc", 10), b.bytes);
  EXPECT_EQ(std::string(b.bytes, 6), std::string("abc\0##", 6));
  for (const auto& [n, want] : {std::pair{2, "ab"}, {0, ""}, {-4, ""}})
    EXPECT_STREQ(str_ncpy(b.bytes, "abcdef", n), want) << n;
}

TEST(StrCopy, PcpyClipsAndEmptiesOnBadRanges) {
  Buffer b("zzz");
  for (const auto& [src, first, last, want] : {std::tuple{"abc", 1, 99, "bc"}, {"abc", 0, 0, "a"},
           {"abc", 3, 5, ""}, {"abc", 2, 1, ""}, {"abc", -1, 2, ""}, {"", 0, 0, ""}})
    EXPECT_STREQ(str_pcpy(b.bytes, src, first, last), want) << first << "," << last;
}

TEST(StrCopy, PcatLeavesDstAloneOnBadRanges) {
  Buffer b("xy");
  EXPECT_STREQ(str_pcat(b.bytes, "abc", 1, 99), "xybc");
  for (auto [first, last] : std::vector<std::pair<int, int>>{{2, 1}, {-1, 1}, {1, -1}, {3, 5}}) {
    Buffer c("xy");
    str_pcat(c.bytes, "abc", first, last);
    EXPECT_EQ(std::string(c.bytes, 4), std::string("xy\0#", 4)) << first << "," << last;
  }
}

TEST(StrCopy, NcatAppendsAtMostNAndATerminator) {
  // n is 16 bits wide: a count of 0 or below appends nothing.
  for (const auto& [src, n, want] : {std::tuple<const char*, int16_t, std::string>{"abc", 2, "xyab"},
                                      {"abc", 9, "xyabc"}, {"abc", 0, "xy"}, {"abc", -1, "xy"},
                                      {"", 3, "xy"}, {nullptr, 3, "xy"}}) {
    Buffer b("xy");
    EXPECT_EQ(str_ncat(b.bytes, src, n), b.bytes);
    EXPECT_EQ(std::string(b.bytes, want.size() + 2), want + std::string("\0#", 2)) << n;
  }
}

TEST(StrSearch, FirstAndLastCharacterAsAddressOrIndex) {
  const char* s = "abcabc";
  for (const auto& [text, c, first, last] : {std::tuple{s, 'a', 0, 3}, {s, 'c', 2, 5},
           {s, 'z', -1, -1}, {"", 'a', -1, -1}, {nullptr, 'a', -1, -1}}) {
    EXPECT_EQ(str_ichr(text, c), first) << c;
    EXPECT_EQ(str_irchr(text, c), last) << c;
    EXPECT_EQ(str_rchr(text, c), last < 0 ? nullptr : text + last) << c;
  }
  EXPECT_EQ(str_pos(s, "cab"), s + 2);
  EXPECT_EQ(str_ipos(s, "cab"), 2);
  EXPECT_EQ(str_pos(s, "cb"), nullptr);
  EXPECT_EQ(str_ipos(s, "abcabcx"), -1);
}

TEST(StrCompare, ExactlyMinusOneZeroOneAsUnsignedBytes) {
  using Compare = int32_t (*)(const char*, const char*);
  // Bytes above 0x7F sort behind ASCII; no case folding beyond A to Z.
  const struct {
    Compare compare;
    const char *a, *b;
    int32_t want;
  } rows[] = {{str_cmp, "a", "z", -1}, {str_cmp, "z", "a", 1}, {str_cmp, "abc", "abc", 0},
              {str_cmp, "\xE4", "a", 1}, {str_cmp, "ab", "abc", -1}, {str_icmp, "ABC", "abd", -1},
              {str_icmp, "Hello", "hELLO", 0}, {str_icmp, "\xC4", "\xE4", -1}, {str_eq, "a", "a", 1},
              {str_eq, "a", "A", 0}, {str_ieq, "a", "A", 1}, {str_ieq, "a", "b", 0}};
  for (const auto& r : rows) EXPECT_EQ(r.compare(r.a, r.b), r.want) << r.a << " " << r.b;
  EXPECT_EQ(str_ncmp("abcX", "abcY", 3), 0);
  EXPECT_EQ(str_ncmp("abcX", "abcY", 4), -1);
}

TEST(StrShape, CaseChangesAllPlainLettersOnly) {
  char s[] = "abc Zz \xE4\xC4 1";
  EXPECT_STREQ(str_cap(s), "ABC ZZ \xE4\xC4 1");
  EXPECT_STREQ(str_low(s), "abc zz \xE4\xC4 1");
}

TEST(StrShape, TrimRemovesBlanksOnlyAndMovesTheText) {
  for (const auto& [trim, in, want] : {std::tuple{&str_trim, "  a b  ", "a b"},
           {&str_trim, "\t a \n", "\t a \n"}, {&str_trim, "    ", ""}, {&str_ltrim, "  x  ", "x  "},
           {&str_rtrim, "  x  ", "  x"}}) {
    Buffer b(in);
    EXPECT_EQ(trim(b.bytes), b.bytes) << in;
    EXPECT_STREQ(b.bytes, want) << in;
  }
}

TEST(StrShape, RptClipsAt255) {
  EXPECT_EQ(std::string(str_rpt('x', 300)), std::string(255, 'x'));
  for (const auto& [n, want] : {std::pair{3, "---"}, {0, ""}, {-5, ""}})
    EXPECT_STREQ(str_rpt('-', n), want) << n;
  EXPECT_EQ(str_rpt('a', 1), str_rpt('b', 2));  // one static buffer
}

std::vector<std::string> all_tokens(char* s, const char* delim) {
  std::vector<std::string> out;
  for (char* t = str_tok(s, delim); t != nullptr; t = str_tok(nullptr, delim)) out.emplace_back(t);
  return out;
}

TEST(StrTok, WholeStringDelimiterSkipsRunsAndMendsTheString) {
  char s[] = "a, b, , c";
  EXPECT_EQ(all_tokens(s, ", "), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_STREQ(s, "a, b, , c");  // a walk run to its end leaves the text as it was
  EXPECT_EQ(str_tok(nullptr, ", "), nullptr);  // and stays at its end
  char t[] = ", , x, y";
  EXPECT_EQ(all_tokens(t, ", "), (std::vector<std::string>{"x", "y"}));
  char u[] = "a,b";
  EXPECT_EQ(all_tokens(u, ", "), (std::vector<std::string>{"a,b"}));  // not a set of characters
}

TEST(StrTok, WalkLeftOffEarlyLeavesTheCut) {
  char s[] = "one--two--three";
  EXPECT_STREQ(str_tok(s, "--"), "one");
  EXPECT_STREQ(str_tok(nullptr, "--"), "two");
  EXPECT_EQ(std::string(s, sizeof s - 1), std::string("one--two\0-three", 15));
  char empty[] = "";
  EXPECT_EQ(str_tok(empty, ","), nullptr);
}

TEST(StrTok, NilDelimiterWalksNulSeparatedStrings) {
  char list[] = "ab\0cd\0e\0";  // ends in two nul characters
  EXPECT_EQ(all_tokens(list, nullptr), (std::vector<std::string>{"ab", "cd", "e"}));
  EXPECT_EQ(std::string(list, sizeof list), std::string("ab\0cd\0e\0\0", 9));
}

TEST(StrNil, NilTextsReadAsEmptyAndNilBuffersStayUntouched) {
  EXPECT_EQ(str_len(nullptr), 0);
  EXPECT_EQ(str_cmp(nullptr, ""), 0);
  EXPECT_EQ(str_eq(nullptr, "a"), 0);
  EXPECT_EQ(str_chr(nullptr, 'a'), nullptr);
  EXPECT_EQ(str_ipos("abc", nullptr), -1);
  EXPECT_EQ(str_cpy(nullptr, "a"), nullptr);
  EXPECT_EQ(str_trim(nullptr), nullptr);
  char s[4] = "ab";
  EXPECT_STREQ(str_cat(s, nullptr), "ab");
}

}  // namespace
