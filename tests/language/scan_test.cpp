#include <gtest/gtest.h>

#include <tivlib/scan.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "fault_sweep.h"
#include "frame/fault.h"
#include "scan_support.h"
#include "test_dir.h"

namespace {

using tiv::test::each;
using tiv::test::KindTexts;
using tiv::test::Longs;
using tiv::test::kinds_texts;
using tiv::test::scan_all;
using tiv::test::SourceText;
using tiv::test::Token;

TEST(ScanPositions, LinesColumnsTabsAndCarriageReturns) {
  const auto t = scan_all("ab\n\tcd\r\nx", 0);
  // The tab is one blank column; the carriage return a blank of its own column.
  EXPECT_EQ(each(t, &Token::line), (Longs{0, 1, 2, 2}));
  EXPECT_EQ(each(t, &Token::column), (Longs{0, 1, 0, 1}));
  EXPECT_EQ(t[3].kind, SCAN_T_EOF);
}

TEST(ScanWords, KeywordsByTablePositionIdentifiersByLength) {
  static const char* const keywords[] = {"while", "if", "do", "else", "end", nullptr};
  const auto t = scan_all("if x_1 else While end do_", 0, keywords);
  // Exact comparison: case matters.
  EXPECT_EQ(each(t, &Token::kind), (Longs{SCAN_T_KEYWORD, SCAN_T_IDENTIFIER, SCAN_T_KEYWORD,
                                          SCAN_T_IDENTIFIER, SCAN_T_KEYWORD, SCAN_T_IDENTIFIER,
                                          SCAN_T_EOF}));
  EXPECT_EQ(each(t, &Token::lvalue, 6), (Longs{1, 3, 3, 5, 4, 3}));
}

TEST(ScanWords, FoldingAndUmlauts) {
  static const char* const upper[] = {"BEGIN", nullptr};
  auto t = scan_all("begin Begin", SCAN_F_UPPER | SCAN_F_LOWER, upper);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "begin"},
                                       {SCAN_T_IDENTIFIER, "begin"},
                                       {SCAN_T_EOF, " "}}));  // lower case wins
  t = scan_all("begin", SCAN_F_UPPER, upper);
  EXPECT_EQ(t[0].kind, SCAN_T_KEYWORD);
  // \x84 is a-umlaut, \x8e its capital, \xe1 sharp s.
  t = scan_all("\x84\xe1x \x84", SCAN_F_UMLAUTS | SCAN_F_UPPER);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "\x8e\xe1X"},
                                       {SCAN_T_IDENTIFIER, "\x8e"},
                                       {SCAN_T_EOF, " "}}));
}

TEST(ScanWords, OverlongWordIsCutWithStatusAndStillSearched) {
  const std::string w255(255, 'a');
  const char* const table[] = {w255.c_str(), nullptr};
  auto t = scan_all(w255 + "bb+", 0, table);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_KEYWORD, w255}, {SCAN_T_PLUS, "+"}, {SCAN_T_EOF, " "}}));
  EXPECT_EQ(each(t, &Token::status), (Longs{SCAN_E_IDENTIFIER, SCAN_OK, SCAN_OK}));  // not sticky
}

TEST(ScanNumbers, FormsKindsAndValues) {
  const auto t = scan_all("12 1.5 .5 1. 1E+2 7e-1 0x10 007 4294967297 1.2.3", 0);
  EXPECT_EQ(kinds_texts(t),
            (KindTexts{{SCAN_T_LONG, "12"}, {SCAN_T_DOUBLE, "1.5"}, {SCAN_T_DOUBLE, ".5"},
                       {SCAN_T_DOUBLE, "1."}, {SCAN_T_DOUBLE, "1e+2"}, {SCAN_T_DOUBLE, "7e-1"},
                       {SCAN_T_LONG, "0"}, {SCAN_T_IDENTIFIER, "x10"}, {SCAN_T_LONG, "007"},
                       {SCAN_T_LONG, "4294967297"}, {SCAN_T_DOUBLE, "1.2"},
                       {SCAN_T_DOUBLE, ".3"}, {SCAN_T_EOF, " "}}));
  std::vector<double> doubles = each(t, &Token::dvalue, 6);
  doubles.erase(doubles.begin());
  EXPECT_EQ(doubles, (std::vector<double>{1.5, 0.5, 1.0, 100.0, 0.7}));
  // The last long is taken modulo 2^32.
  EXPECT_EQ((Longs{t[0].lvalue, t[1].lvalue, t[8].lvalue, t[9].lvalue}), (Longs{12, 0, 7, 1}));
}

TEST(ScanNumbers, ExponentWithoutDigit) {
  const auto t = scan_all("1else 2e+", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_DOUBLE, "1e"}, {SCAN_T_IDENTIFIER, "lse"},
                                       {SCAN_T_DOUBLE, "2e+"}, {SCAN_T_EOF, " "}}));
  EXPECT_EQ(each(t, &Token::status), (Longs{SCAN_E_EXPONENT, SCAN_OK, SCAN_E_EXPONENT, SCAN_OK}));
  EXPECT_EQ((std::vector<double>{t[0].dvalue, t[2].dvalue}), (std::vector<double>{1.0, 2.0}));
}

TEST(ScanNumbers, OutOfRangeAndOverlongNumbersStayInsideTheRecord) {
  auto t = scan_all("1e400 1e-400 -1e999", SCAN_F_SIGNED);
  EXPECT_EQ(each(t, &Token::dvalue, 3), (std::vector<double>{HUGE_VAL, 0.0, -HUGE_VAL}));
  const std::string digits(400, '9');
  t = scan_all(digits + "." + digits + " x", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_DOUBLE, digits.substr(0, 255)},
                                       {SCAN_T_IDENTIFIER, "x"}, {SCAN_T_EOF, " "}}));
}

TEST(ScanSigns, SignedNumbersAndTheOwedDot) {
  // A sign followed by a dot that starts no number gives the sign, then the dot.
  auto t = scan_all("a+.b", SCAN_F_SIGNED);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_PLUS, "+"},
                                       {SCAN_T_DOT, "."}, {SCAN_T_IDENTIFIER, "b"},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[3].column, 3);

  t = scan_all("a+.5 -12 +12 -x", SCAN_F_SIGNED);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_DOUBLE, ".5"},
                                       {SCAN_T_LONG, "-12"}, {SCAN_T_LONG, "12"},
                                       {SCAN_T_MINUS, "-"}, {SCAN_T_IDENTIFIER, "x"},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[1].dvalue, 0.5);
  EXPECT_EQ((Longs{t[2].lvalue, t[3].lvalue}), (Longs{-12, 12}));
  t = scan_all("-.5 -12", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_MINUS, "-"}, {SCAN_T_DOUBLE, ".5"},
                                       {SCAN_T_MINUS, "-"}, {SCAN_T_LONG, "12"},
                                       {SCAN_T_EOF, " "}}));
  t = scan_all("-.5", SCAN_F_SIGNED);
  EXPECT_EQ(t[0].text + "=" + std::to_string(t[0].dvalue), "-.5=-0.500000");
}

TEST(ScanCharacters, ConstantsAndEscapes) {
  struct Case {
    const char* source;
    const char* text;
    int32_t lvalue;
    int32_t status;
    int32_t flags;
  };
  const Case cases[] = {
      {"'a'", "a", 97, SCAN_OK, 0},
      {"''''", "'", 39, SCAN_OK, 0},
      {"''", "'", 39, SCAN_E_CHAR, 0},
      {"'\\n'", "\\n", 10, SCAN_OK, 0},
      {"'\\101'", "\\101", 65, SCAN_OK, 0},
      {"'\\99'", "\\99", 81, SCAN_OK, 0},
      {"'\\1012'", "\\101", 65, SCAN_E_CHAR, 0},
      {"'\\x41'", "\\x41", 65, SCAN_OK, 0},
      {"'\\XfF'", "\\XfF", 255, SCAN_OK, 0},
      {"'\\''", "\\'", 39, SCAN_OK, 0},
      {"'\\q'", "\\q", 32, SCAN_E_ESCAPE, 0},
      {"'\\n'", "\\N", 32, SCAN_E_ESCAPE, SCAN_F_UPPER},
      {"'ab'", "a", 97, SCAN_E_CHAR, 0},
      {"'\xe9'", "\xe9", 233, SCAN_OK, 0},
  };
  for (const Case& c : cases) {
    const Token t = scan_all(c.source, c.flags).at(0);
    EXPECT_EQ(std::tie(t.kind, t.text, t.lvalue, t.status),
              std::make_tuple(SCAN_T_CHAR, std::string(c.text), c.lvalue, c.status)) << c.source;
  }
  // The unconsumed rest after a failed close starts the next token.
  EXPECT_EQ(kinds_texts(scan_all("'\\1012'", 0)),
            (KindTexts{{SCAN_T_CHAR, "\\101"}, {SCAN_T_LONG, "2"}, {SCAN_T_CHAR, ""},
                       {SCAN_T_EOF, " "}}));
}

TEST(ScanStrings, ContentsEscapesAndLimits) {
  auto t = scan_all(R"("a\"b\\" "x\\\"y")", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_STRING, R"(a\"b\\)"},
                                       {SCAN_T_STRING, R"(x\\\"y)"},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[0].lvalue, 6);
  t = scan_all("\"ab\\\ncd\"", SCAN_F_EOL | SCAN_F_UPPER);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_STRING, "AB\\"}, {SCAN_T_EOL, " "},
                                       {SCAN_T_IDENTIFIER, "CD"}, {SCAN_T_STRING, ""},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ((Longs{t[0].status, t[3].status}), (Longs{SCAN_E_UNCLOSED, SCAN_E_UNCLOSED}));
  t = scan_all("\"" + std::string(300, 'q') + "\"", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_STRING, std::string(255, 'q')}, {SCAN_T_EOF, " "}}));
  EXPECT_EQ((Longs{t[0].status, t[0].lvalue}), (Longs{SCAN_E_STRING, 255}));
  t = scan_all("\"" + std::string(300, 'q'), 0);
  EXPECT_EQ(t[0].status, SCAN_E_UNCLOSED);  // the last condition raised stands
}

TEST(ScanScript, QuotedSymbolsHashCommentsAndTheDoubleQuote) {
  auto t = scan_all("`a\\'b' \"x # rest\ny", SCAN_F_SCRIPT);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_QUOTED, "a\\'b"}, {SCAN_T_DQUOTE, "\""},
                                       {SCAN_T_IDENTIFIER, "x"}, {SCAN_T_IDENTIFIER, "y"},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[0].lvalue, 4);
  t = scan_all("`a # b", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_VOID, "`"}, {SCAN_T_IDENTIFIER, "a"},
                                       {SCAN_T_NOTEQUAL, "#"}, {SCAN_T_IDENTIFIER, "b"},
                                       {SCAN_T_EOF, " "}}));
}

TEST(ScanComments, BlockLineAndBang) {
  const int32_t all = SCAN_F_BLOCK_COMMENT | SCAN_F_LINE_COMMENT | SCAN_F_BANG_COMMENT;
  auto t = scan_all("a/*/b/**/c /* x ** / */d// e\nf! g\nh /* open", all | SCAN_F_EOL);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_IDENTIFIER, "b"},
                                       {SCAN_T_IDENTIFIER, "c"}, {SCAN_T_IDENTIFIER, "d"},
                                       {SCAN_T_EOL, " "}, {SCAN_T_IDENTIFIER, "f"},
                                       {SCAN_T_EOL, " "}, {SCAN_T_IDENTIFIER, "h"},
                                       {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[1].column, 4);  // "/*/" is a whole comment
  EXPECT_EQ(t[2].column, 9);  // position taken after the comment
  EXPECT_EQ(t[5].line, 1);
  EXPECT_EQ(t[8].status, SCAN_OK);
  t = scan_all("a/*b*/!c//d", 0);
  EXPECT_EQ(kinds_texts(t),
            (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_SLASH, "/"}, {SCAN_T_STAR, "*"},
                       {SCAN_T_IDENTIFIER, "b"}, {SCAN_T_STAR, "*"}, {SCAN_T_SLASH, "/"},
                       {SCAN_T_EXCLAMATION, "!"}, {SCAN_T_IDENTIFIER, "c"},
                       {SCAN_T_SLASH, "/"}, {SCAN_T_SLASH, "/"}, {SCAN_T_IDENTIFIER, "d"},
                       {SCAN_T_EOF, " "}}));
}

TEST(ScanSymbols, RelationsAndPower) {
  auto t = scan_all("<=> <> >< =< => == << >> < = > === ** ***", SCAN_F_RELATIONS | SCAN_F_POWER);
  EXPECT_EQ(kinds_texts(t),
            (KindTexts{{SCAN_T_LESSEQUAL, "<="}, {SCAN_T_GREATER, ">"}, {SCAN_T_NOTEQUAL, "<>"},
                       {SCAN_T_NOTEQUAL, "><"}, {SCAN_T_LESSEQUAL, "=<"},
                       {SCAN_T_GREATEREQUAL, "=>"}, {SCAN_T_EQUAL, "=="}, {SCAN_T_LESS, "<<"},
                       {SCAN_T_GREATER, ">>"}, {SCAN_T_LESS, "<"}, {SCAN_T_EQUAL, "="},
                       {SCAN_T_GREATER, ">"}, {SCAN_T_EQUAL, "=="}, {SCAN_T_EQUAL, "="},
                       {SCAN_T_POWER, "^"}, {SCAN_T_POWER, "^"}, {SCAN_T_STAR, "*"},
                       {SCAN_T_EOF, " "}}));
  t = scan_all("<=**", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_LESS, "<"}, {SCAN_T_EQUAL, "="},
                                       {SCAN_T_STAR, "*"}, {SCAN_T_STAR, "*"},
                                       {SCAN_T_EOF, " "}}));
}

TEST(ScanSymbols, VoidCharacters) {
  auto t = scan_all("\x7f\xc8", 0);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_VOID, "\x7f"}, {SCAN_T_VOID, "\xc8"},
                                       {SCAN_T_EOF, " "}}));
}

TEST(ScanLines, EolTokensAndContinuations) {
  auto t = scan_all("a \\  \nb\\ c\n", SCAN_F_EOL | SCAN_F_CONTINUE);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_IDENTIFIER, "b"},
                                       {SCAN_T_BACKSLASH, "\\"}, {SCAN_T_IDENTIFIER, "c"},
                                       {SCAN_T_EOL, " "}, {SCAN_T_EOF, " "}}));
  EXPECT_EQ(t[1].line, 1);
  t = scan_all("a\\\nb", SCAN_F_EOL);
  EXPECT_EQ(kinds_texts(t), (KindTexts{{SCAN_T_IDENTIFIER, "a"}, {SCAN_T_BACKSLASH, "\\"},
                                       {SCAN_T_EOL, " "}, {SCAN_T_IDENTIFIER, "b"},
                                       {SCAN_T_EOF, " "}}));
}

TEST(ScanCharacterLevel, ClassesAndReset) {
  SourceText::set("a1_\n");
  scanner* s = scan_open(&SourceText::read, SCAN_F_UPPER, nullptr);
  ASSERT_NE(s, nullptr);
  std::string got;
  for (int i = 0; i < 6; ++i) {
    int32_t klass = -1;
    char c = '?';
    scan_character(s, &klass, &c);
    got += std::to_string(klass) + (c == '\0' ? std::string("0") : std::string(1, c)) + " ";
  }
  EXPECT_EQ(got, std::to_string(SCAN_T_BLANK) + "  " + std::to_string(SCAN_T_LETTER) + "A " +
                     std::to_string(SCAN_T_DIGIT) + "1 " + std::to_string(SCAN_T_OTHER) + "_ " +
                     std::to_string(SCAN_T_EOL) + "\n " + std::to_string(SCAN_T_EOF) + "0 ");
  SourceText::position = 0;
  scan_reset(s);
  int32_t kind = -1;
  scan_record r{};
  scan_token(s, &kind, &r);
  EXPECT_STREQ(r.text, "A1_");
  scan_close(s);
}

class ScanTrace : public tiv::test::InTempDir {};

TEST_F(ScanTrace, RecordsOfTwoScannersAndTheEmptyingOfTheFile) {
  static const char* const keywords[] = {"IF", nullptr};
  SourceText::set("IF x 12 2.5 'c' -.\n\"s\"");
  scanner* a = scan_open(&SourceText::read, SCAN_F_TRACE | SCAN_F_SIGNED, keywords);
  scanner* b = scan_open(&SourceText::read, SCAN_F_TRACE, nullptr);
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  int32_t kind = 0;
  scan_record r{};
  do scan_token(a, &kind, &r);
  while (kind != SCAN_T_EOF);
  scan_close(b);
  SourceText::set("+");
  scanner* c = scan_open(&SourceText::read, 0, nullptr);
  scan_token(c, &kind, &r);  // not tracing: writes nothing
  scan_close(c);
  scan_close(a);
  EXPECT_EQ(tiv::test::read_file("trc"),
            "S1  [ 0: 0]\tkeyword    <IF> #0\n"
            "S1  [ 0: 3]\tidentifier <x>\n"
            "S1  [ 0: 5]\tlong       <12>  12\n"
            "S1  [ 0: 8]\tdouble     <2.5>  2.500000\n"
            "S1  [ 0:12]\tchar       <c>\n"
            "S1  [ 0:16]\tsymbol     <->\n"
            "S1  [ 1: 0]\tstring     <s>\n"
            "S1  [ 1: 3]\teof        < >\n");
  SourceText::set("`");
  scanner* d = scan_open(&SourceText::read, SCAN_F_TRACE, nullptr);
  scan_token(d, &kind, &r);
  scan_close(d);
  EXPECT_EQ(tiv::test::read_file("trc"), "S1  [ 0: 0]\t** void ** <`>\n");
}

TEST(ScanOpen, NilArgumentsAndEmptyTables) {
  EXPECT_EQ(scan_open(nullptr, 0, nullptr), nullptr);
  scan_close(nullptr);
  scan_reset(nullptr);
  int32_t kind = -1;
  scan_record r{};
  EXPECT_EQ(scan_token(nullptr, &kind, &r), SCAN_OK);
  EXPECT_EQ(kind, SCAN_T_EOF);
  static const char* const empty[] = {nullptr};
  const auto t = scan_all("a", 0, empty);
  EXPECT_EQ(t[0].kind, SCAN_T_IDENTIFIER);
}

#ifdef TIVLIB_FAULT_INJECTION
TEST(ScanFaults, OpenWithoutMemoryGivesNil) {
  static const char* const keywords[] = {"B", "A", nullptr};
  SourceText::set("A");
  for (long n = 1;; ++n) {
    scanner* s = nullptr;
    const bool hit = tiv::test::fails_at(n, [&] { s = scan_open(&SourceText::read, 0, keywords); });
    if (hit) {
      EXPECT_EQ(s, nullptr);
      continue;
    }
    ASSERT_NE(s, nullptr);
    int32_t kind = -1;
    scan_record r{};
    scan_token(s, &kind, &r);
    EXPECT_EQ(kind, SCAN_T_KEYWORD);
    EXPECT_EQ(r.lvalue, 1);
    scan_close(s);
    break;
  }
}
#endif

}  // namespace
