// Reads into buffers, positional reads and iteration, the value parser, typed writes.
#include <tivlib/env.h>

#include <clocale>
#include <cstring>
#include <string>
#include <vector>
#include <tuple>

#include "env_test_util.h"
#include "rows.h"

namespace tiv::test {
namespace {

class EnvValues : public InTempDir {
 protected:
  Root env_{5};
  int32_t put(const char* path, const char* text) { return env_put(env_, "s", path, text); }
  int32_t get_double(const char* text, double* out) {
    put("v", text);
    return env_get_double(env_, "s", "v", 1, out);
  }
};

TEST_F(EnvValues, GetCopiesOnlyWhenTheTextFits) {
  put("a", "abc");
  char buffer[8] = "zzzzzzz";
  EXPECT_EQ(env_get(env_, "s", "a", 1, 3, buffer), ENV_TOO_SMALL);
  EXPECT_STREQ(buffer, "zzzzzzz");
  EXPECT_EQ(env_get(env_, "s", "a", 1, 4, buffer), 5);
  EXPECT_STREQ(buffer, "abc");
  env_put_external(env_, "s", "e", 1);
  EXPECT_EQ(env_get(env_, "s", "e", 1, 8, buffer), ENV_IS_DATA);
  EXPECT_EQ(env_get(env_, "s", nullptr, 1, 8, buffer), ENV_IS_DATA);
  intptr_t word = 0;
  EXPECT_EQ(env_get_external(env_, "s", "e", 1, &word), 5);
  EXPECT_EQ(word, 1);
  EXPECT_EQ(env_get_external(env_, "s", "a", 1, &word), ENV_IS_EXTERNAL);
  EXPECT_EQ(env_get_external(env_, "s", "missing", 1, &word), ENV_NOT_FOUND);
  EXPECT_EQ(word, 1);
  const char* ref = nullptr;
  EXPECT_EQ(env_get_reference(env_, "s", "a", 1, &ref), 5);
  EXPECT_STREQ(ref, "abc");
}

TEST_F(EnvValues, PositionalReads) {
  put("a", "1");
  put("b", "22");
  char name[8], data[8];
  int32_t id = -1;
  EXPECT_EQ(env_get_pos(env_, "s", nullptr, 1, 3, &id, 8, name, 8, data, nullptr), ENV_NOT_FOUND);
  EXPECT_EQ(env_get_pos(env_, "s", nullptr, 1, 2, &id, 8, name, 8, data, nullptr), ENV_IS_DATA);
  EXPECT_EQ(id, 5);
  EXPECT_STREQ(name, "b");
  EXPECT_STREQ(data, "22");
  std::strcpy(data, "x");
  EXPECT_EQ(env_get_pos(env_, "s", nullptr, 1, 1, &id, 8, name, 1, data, nullptr), ENV_TOO_SMALL);
  EXPECT_STREQ(name, "a");
  EXPECT_STREQ(data, "x");
  EXPECT_EQ(env_get_pos(env_, nullptr, nullptr, 1, 1, &id, 8, name, 8, data, nullptr), ENV_IS_BLOCK);
  EXPECT_STREQ(name, "s");
}

TEST_F(EnvValues, IterationWalksChildrenInOrder) {
  put("a", "1");
  env_put_external(env_, "s", "e", 9);
  put("b@c", "2");
  char name[8], data[8];
  intptr_t word = 0;
  int32_t id = -1;
  std::string seen;
  for (int32_t r = env_get_first(env_, "s", nullptr, 1, &id, 8, name, 8, data, &word); r != ENV_NOT_FOUND;
       r = env_get_next(8, name, 8, data, &word))
    seen += std::string(name) + ":" + std::to_string(r) + " ";
  EXPECT_EQ(seen, "a:-1 e:-3 b:-2 ");
  EXPECT_EQ(word, 9);
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_NOT_FOUND);
  EXPECT_EQ(env_get_first(env_, nullptr, nullptr, 1, &id, 8, name, 8, data, &word), ENV_IS_BLOCK);
  EXPECT_STREQ(name, "s");
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_NOT_FOUND);
  // A too small buffer ends the iteration.
  put("longname", "x");
  EXPECT_EQ(env_get_first(env_, "s", nullptr, 1, &id, 8, name, 8, data, &word), ENV_IS_DATA);
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_IS_EXTERNAL);
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_IS_BLOCK);
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_TOO_SMALL);
  // Closing the handle ends its iteration; an address beyond 255 characters starts none.
  env_handle* sub = env_open_subenv(env_, "s", nullptr, 1);
  EXPECT_EQ(env_get_first(sub, nullptr, nullptr, 1, &id, 8, name, 8, data, &word), ENV_IS_DATA);
  env_close(sub, 0);
  EXPECT_EQ(env_get_next(8, name, 8, data, &word), ENV_NOT_FOUND);
  EXPECT_EQ(env_get_first(env_, "s", std::string(256, 'p').c_str(), 1, &id, 8, name, 8, data, &word),
            ENV_ERROR);
  const std::string longest(255, 's');
  EXPECT_EQ(env_get_first(env_, longest.c_str(), nullptr, 1, &id, 8, name, 8, data, &word),
            ENV_NOT_FOUND);
}

TEST_F(EnvValues, DoubleGrammar) {
  const std::pair<const char*, double> good[] = {
      {"1.5", 1.5}, {".5", 0.5},   {"5.", 5.0},     {"+5", 5.0},        {"-5", -5.0},
      {"1e5", 1e5}, {"1E+5", 1e5}, {"1d3", 1000.0}, {"1e", 1.0},        {" \t2.5 \t", 2.5},
      {"7\n", 7.0}, {"8\rjunk", 8.0}, {"-.25e-2", -0.0025}};
  for (const auto& [text, value] : good) {
    double out = -99;
    EXPECT_EQ(get_double(text, &out), 5) << text;
    EXPECT_DOUBLE_EQ(out, value) << text;
  }
  for (const char* bad : {"", "1,5", "1e+", "x", ".", "+", "1 2", "--1"}) {
    double out = -99;
    EXPECT_EQ(get_double(bad, &out), ENV_BAD_FORMAT) << bad;
  }
  double out = 0;
  EXPECT_EQ(get_double("3.5x", &out), ENV_BAD_FORMAT);
  EXPECT_EQ(out, 3.5);  // stored before the rest of the text was looked at
}

TEST_F(EnvValues, LongGrammar) {
  int32_t out = 0;
  for (const auto& [text, want, value] : {std::tuple{"12.5", ENV_BAD_FORMAT, 12}, {" -42 \nanything", 5, -42}}) {
    put("v", text);
    EXPECT_EQ(env_get_long(env_, "s", "v", 1, &out), want) << text;
    EXPECT_EQ(out, value) << text;
  }
  EXPECT_EQ(env_get_long(env_, "s", "missing", 1, &out), ENV_NOT_FOUND);
  EXPECT_EQ(env_get_long(env_, "s", nullptr, 1, &out), ENV_IS_DATA);
}

TEST_F(EnvValues, Lists) {
  double d[4];
  int32_t count = 4;
  put("v", "1, 2 ,3");
  EXPECT_EQ(env_get_doubles(env_, "s", "v", 1, &count, d), 5);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(d[2], 3.0);
  for (const char* bad : {"1,,2", "1,2,", ""}) {
    put("v", bad);
    count = 4;
    EXPECT_EQ(env_get_doubles(env_, "s", "v", 1, &count, d), ENV_BAD_FORMAT) << bad;
    EXPECT_EQ(count, 0);
  }
  int32_t l[2] = {0, 0};
  put("v", "7,8,9");
  count = 2;
  EXPECT_EQ(env_get_longs(env_, "s", "v", 1, &count, l), ENV_TOO_SMALL);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(l[0], 7);
  EXPECT_EQ(l[1], 8);
  put("v", "7,8,9,x");  // too many and bad: the grammar wins
  count = 2;
  EXPECT_EQ(env_get_longs(env_, "s", "v", 1, &count, l), ENV_BAD_FORMAT);
}

TEST_F(EnvValues, GetStringCopiesTheWholeTextOrEmptiesTheBuffer) {
  EXPECT_EQ(env_put_string(env_, "s", "a", " a b,c "), ENV_OK);
  EXPECT_EQ(env_put_string(env_, "s", "a", nullptr), ENV_ERROR);
  env_put_external(env_, "s", "e", 1);
  char out[8] = "zzzzzzz";
  EXPECT_EQ(env_get_string(env_, "s", "a", 1, 8, out), 5);
  EXPECT_STREQ(out, " a b,c ");  // no grammar: blanks and commas stay
  Root child{7, env_};
  EXPECT_EQ(env_get_string(child, "s", "a", 1, 8, out), 5);  // the parent answered
  for (const auto& [path, size, want] : {std::tuple{"a", 7, ENV_TOO_SMALL},
           {"missing", 8, ENV_NOT_FOUND}, {"e", 8, ENV_IS_DATA}, {nullptr, 8, ENV_IS_DATA}}) {
    std::strcpy(out, "zzzzzzz");
    EXPECT_EQ(env_get_string(env_, "s", path, 1, size, out), want) << path;
    EXPECT_STREQ(out, "") << path;
  }
  EXPECT_EQ(env_get_string(nullptr, "s", "a", 1, 8, out), ENV_ERROR);
}

TEST_F(EnvValues, GetStringsFillsTheCallersBuffers) {
  char b[3][4] = {"", "", ""};
  char* slots[3] = {b[0], b[1], b[2]};
  int32_t count = 3;
  put("w", " ab , c1,Z \nx y");
  EXPECT_EQ(env_get_strings(env_, "s", "w", 1, &count, 4, slots), 5);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(std::string(b[0]) + "|" + b[1] + "|" + b[2], "ab|c1|Z");
  // Letters and digits only; a word of size characters, too many words, a slot of none.
  for (const auto& [text, n, want] : {std::tuple{"a_b", 3, ENV_BAD_FORMAT}, {"a b", 3, ENV_BAD_FORMAT},
                                      {"a,,b", 3, ENV_BAD_FORMAT}, {"", 3, ENV_BAD_FORMAT},
                                      {"abc,abcd", 3, ENV_TOO_SMALL}, {"a,b,c,d", 3, ENV_TOO_SMALL},
                                      {"a,b,c,d,-", 3, ENV_BAD_FORMAT}, {"p,q", 1, ENV_TOO_SMALL}}) {
    put("w", text);
    count = n;
    EXPECT_EQ(env_get_strings(env_, "s", "w", 1, &count, 4, slots), want) << text;
    EXPECT_EQ(count, 0) << text;
  }
  EXPECT_EQ(std::string(b[0]) + "|" + b[1] + "|" + b[2], "p|b|c");  // written before the failure
  slots[1] = nullptr;
  put("w", "a,b");
  count = 3;
  EXPECT_EQ(env_get_strings(env_, "s", "w", 1, &count, 4, slots), ENV_TOO_SMALL);
  EXPECT_EQ(env_get_strings(env_, "s", "w", 1, nullptr, 4, slots), ENV_ERROR);
  EXPECT_EQ(log_text(), error_record("Nil parametr", "Env_pg"));
}

TEST_F(EnvValues, TypedWritesInTheCLocale) {
  const char* old = std::setlocale(LC_ALL, nullptr);
  const std::string saved = old ? old : "C";
  std::setlocale(LC_ALL, "de_DE.UTF-8");
  for (const auto& [value, want] : Rows<double, const char*>{{0.5, "0.5"}, {1e6, "1e+06"},
                                                              {3.14159265, "3.14159"}}) {
    EXPECT_EQ(env_put_double(env_, "s", "pi", value), ENV_OK);
    EXPECT_EQ(get_text(env_, "s", "pi"), want);
  }
  env_put_long(env_, "s", "n", -2147483647 - 1);
  EXPECT_EQ(get_text(env_, "s", "n"), "-2147483648");
  env_put_format(env_, "s", "f", "%.2f|%d", 1.5, 3);
  EXPECT_EQ(get_text(env_, "s", "f"), "1.50|3");
  double back = 0;
  EXPECT_EQ(env_get_double(env_, "s", "pi", 1, &back), 5);
  EXPECT_DOUBLE_EQ(back, 3.14159);
  std::setlocale(LC_ALL, saved.c_str());
}

TEST_F(EnvValues, ListWrites) {
  const double d[] = {1.5, -2, 1e-7};
  EXPECT_EQ(env_put_doubles(env_, "s", "d", 3, d), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "d"), "1.5,-2,1e-07");
  const int32_t l[] = {1, 22, -3};
  EXPECT_EQ(env_put_longs(env_, "s", "l", 3, l), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "l"), "1,22,-3");
  const char* words[] = {"a,b", "c"};
  EXPECT_EQ(env_put_strings(env_, "s", "w", 2, words), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "w"), "a,b,c");
  EXPECT_EQ(env_put_longs(env_, "s", "l", 0, l), ENV_ERROR);
  EXPECT_EQ(env_put_doubles(env_, "s", "l", 1, nullptr), ENV_ERROR);
  const char* none[] = {nullptr, "x"};
  EXPECT_EQ(env_put_strings(env_, "s", "w", 2, none), ENV_ERROR);
  EXPECT_EQ(get_text(env_, "s", "w"), "a,b,c");
  const char* cut[] = {"a", nullptr, "b"};
  EXPECT_EQ(env_put_strings(env_, "s", "w", 3, cut), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "w"), "a");
}

TEST_F(EnvValues, ListsAndFormatsAreCutAtTheTextLimit) {
  int32_t values[300];
  for (int32_t i = 0; i < 300; ++i) values[i] = 1000 + i;  // 4 digits and a comma each
  EXPECT_EQ(env_put_longs(env_, "s", "l", 300, values), ENV_OK);
  const std::string text = get_text(env_, "s", "l");
  EXPECT_EQ(text.size(), 1020u);  // 204 items with their commas, and one more comma fits
  EXPECT_EQ(text.back(), ',');
  int32_t back[300];
  int32_t count = 300;
  EXPECT_EQ(env_get_longs(env_, "s", "l", 1, &count, back), ENV_BAD_FORMAT);
  // A list text of exactly 1023 characters is stored whole; one more character is cut.
  std::vector<int32_t> sevens(128, 1234567);  // 128 items of 7 and 127 commas
  EXPECT_EQ(env_put_longs(env_, "s", "l", 128, sevens.data()), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "l").size(), 1023u);
  const std::vector<double> ones(512, 1.0);
  EXPECT_EQ(env_put_doubles(env_, "s", "l", 512, ones.data()), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "l").size(), 1023u);
  EXPECT_EQ(env_put_doubles(env_, "s", "l", 513, std::vector<double>(513, 1.0).data()), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "l").size(), 1023u);  // the 513th item does not fit
  const std::string longest(1023, 'w');
  const char* one[] = {longest.c_str()};
  EXPECT_EQ(env_put_strings(env_, "s", "l", 1, one), ENV_OK);
  EXPECT_EQ(get_text(env_, "s", "l"), longest);
  // A formatted text holds 1023 characters at most.
  EXPECT_EQ(env_put_format(env_, "s", "f", "%s", std::string(1023, 'x').c_str()), ENV_OK);
  EXPECT_EQ(env_data_length(env_, "s", "f", 1), 1023);
  EXPECT_EQ(env_put_format(env_, "s", "f", "%s", std::string(1024, 'y').c_str()), ENV_ERROR);
  EXPECT_EQ(env_data_length(env_, "s", "f", 1), 1023);
  EXPECT_EQ(env_put(env_, "s", "f", nullptr), ENV_ERROR);
}

}  // namespace
}  // namespace tiv::test
