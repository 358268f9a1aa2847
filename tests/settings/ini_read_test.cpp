// Reads of settings files: names, values, limits, lists and the default file.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <tivlib/ini.h>

#include "settings_test_util.h"

namespace {

using tiv::test::kMalformedRecord;
using tiv::test::log_text;
using tiv::test::write_file;

class IniRead : public tiv::test::SettingsDir {};

// Headers are trimmed, values keep their blanks; names are case-sensitive, the section
// argument is compared untrimmed, only the first of repeated sections is searched, and a nil or
// blank section is the unnamed one. A failed read leaves the buffer alone.
TEST_F(IniRead, LookupsByName) {
  write_file("a.ini", "[ Abc ] trailing\n a = 5\n");
  write_file("r.ini", "[Abc]\nx=1\n[Abc]\ny=2\nx=3\n");
  write_file("u.ini", "; c\nk=v\n[s]\nk=w\n");
  struct Row { const char *file, *section, *entry; int32_t code; const char* want; };
  const char* kept = "untouched";
  for (const Row& r : {Row{"a.ini", "Abc", "a", INI_OK, " 5"}, {"r.ini", "Abc", "x", INI_OK, "1"},
                       {"a.ini", "abc", "a", INI_NO_SECTION, kept},
                       {"a.ini", " Abc ", "a", INI_NO_SECTION, kept},
                       {"a.ini", "Abc", "A", INI_NO_ENTRY, kept},
                       {"r.ini", "Abc", "y", INI_NO_ENTRY, kept},
                       {"u.ini", nullptr, "k", INI_OK, "v"}, {"u.ini", "   ", "k", INI_OK, "v"},
                       {"missing.ini", "s", "k", INI_ERROR, kept}}) {
    SCOPED_TRACE(std::string(r.file) + " " + r.entry);
    char buf[32] = "untouched";
    int32_t size = 31;
    EXPECT_EQ(ini_read_string(r.file, r.section, r.entry, buf, &size), r.code);
    EXPECT_STREQ(buf, r.want);
    EXPECT_EQ(size, 31);
  }
  int32_t v = 0;
  EXPECT_EQ(ini_read_long("a.ini", "Abc", "a", &v), INI_OK);
  EXPECT_EQ(v, 5);
  EXPECT_EQ(log_text(), "");
}

TEST_F(IniRead, ValueAgainstBufferSize) {
  write_file("a.ini", "[s]\ne=abcd\n");
  char buf[8];
  std::memset(buf, 'x', sizeof buf);
  int32_t size = 4;
  EXPECT_EQ(ini_read_string("a.ini", "s", "e", buf, &size), INI_OK);
  EXPECT_EQ(std::string(buf, 6), std::string("abcd\0x", 6));
  EXPECT_EQ(size, 4);
  size = 3;
  EXPECT_EQ(ini_read_string("a.ini", "s", "e", buf, &size), INI_TOO_SMALL);
  EXPECT_EQ(std::string(buf) + "/" + std::to_string(size), "abc/3");
  EXPECT_EQ(ini_read_string("a.ini", "s", "e", nullptr, &size), INI_TOO_SMALL);
}

TEST_F(IniRead, ListsOfEntryNames) {
  write_file("a.ini", "[s]\nabc=1\nbroken\nde = 2\n[t]\nz=1\n");
  char buf[16];
  std::memset(buf, 'x', sizeof buf);
  int32_t size = 16;
  EXPECT_EQ(ini_read_string("a.ini", "s", nullptr, buf, &size), INI_OK);
  EXPECT_EQ(size, 7);
  EXPECT_EQ(std::string(buf, 9), std::string("abc\0de\0\0x", 9));
  EXPECT_EQ(log_text(), kMalformedRecord);

  // A list that doesn't fit: the last name is cut and the list closed.
  std::memset(buf, 'x', sizeof buf);
  size = 7;
  EXPECT_EQ(ini_read_string("a.ini", "s", nullptr, buf, &size), INI_TOO_SMALL);
  EXPECT_EQ(size, 6);
  EXPECT_EQ(std::string(buf, 8), std::string("abc\0d\0\0x", 8));
}

// Empty items read as 0 and a trailing comma adds none; more items than room keep the first
// ones and the count; a failed read sets the count to 0.
TEST_F(IniRead, NumberLists) {
  write_file("a.ini", "[s]\na=1,,3\nb=1,2,\nc=1.5, 2e1,x\nd=1,2,3\n");
  struct Row { const char* entry; int32_t room, code, count; std::vector<int32_t> items; };
  for (const Row& r : {Row{"a", 4, INI_OK, 3, {1, 0, 3, 9}}, {"b", 4, INI_OK, 2, {1, 2, 9, 9}},
                       {"d", 2, INI_TOO_SMALL, 2, {1, 2, 9, 9}},
                       {"none", 2, INI_NO_ENTRY, 0, {9, 9, 9, 9}}}) {
    int32_t l[4] = {9, 9, 9, 9};
    int32_t count = r.room;
    EXPECT_EQ(ini_read_longs("a.ini", "s", r.entry, l, &count), r.code) << r.entry;
    EXPECT_EQ(count, r.count) << r.entry;
    EXPECT_EQ(std::vector<int32_t>(l, l + 4), r.items) << r.entry;
  }
  double d[3];
  int32_t count = 3;
  EXPECT_EQ(ini_read_doubles("a.ini", "s", "c", d, &count), INI_OK);
  EXPECT_EQ(d[1] + d[2], 20.0);  // "2e1" and "x"
  EXPECT_EQ(ini_read_longs("a.ini", "s", "d", nullptr, &count), INI_TOO_SMALL);
}

TEST_F(IniRead, LongLinesArriveInPieces) {
  const std::string value(600, 'x');
  write_file("a.ini", "[s]\na=" + value + "\nb=1\n");
  char buf[700];
  int32_t size = 699;
  EXPECT_EQ(ini_read_string("a.ini", "s", "a", buf, &size), INI_OK);
  EXPECT_EQ(std::string(buf), std::string(509, 'x'));
  // The rest of the line has no "=" and is reported on the way to b.
  EXPECT_EQ(ini_read_string("a.ini", "s", "b", buf, &size), INI_OK);
  EXPECT_EQ(log_text(), kMalformedRecord);
}

TEST_F(IniRead, DefaultFileRule) {
  tiv::test::ScopedEnv unset("zv", nullptr);
  char buf[8];
  int32_t size = 7;
  EXPECT_EQ(ini_read_string(nullptr, "s", "e", buf, &size), INI_ERROR);
  write_file(".zv.ini", "[s]\ne=dot\n");  // "." followed directly by zv.ini
  EXPECT_EQ(ini_read_string(nullptr, "s", "e", buf, &size), INI_OK);
  EXPECT_STREQ(buf, "dot");
  std::filesystem::create_directory("conf");
  write_file("conf/zv.ini", "[s]\ne=conf\n");
  {
    tiv::test::ScopedEnv zv("zv", "conf/");
    EXPECT_EQ(ini_read_string("", "s", "e", buf, &size), INI_OK);
    EXPECT_STREQ(buf, "conf");
    write_file("zv.ini", "[s]\ne=here\n");
    EXPECT_EQ(ini_read_string(nullptr, "s", "e", buf, &size), INI_OK);
    EXPECT_STREQ(buf, "here");
  }
}

TEST_F(IniRead, RwFamilyGuardsNilArguments) {
  write_file("a.ini", "[s]\nl=4\nd=2.5\n");
  EXPECT_EQ(ini_rw_long(0, "a.ini", "s", "l", nullptr), INI_TOO_SMALL);
  EXPECT_EQ(ini_rw_double(1, "a.ini", "s", "d", nullptr), INI_TOO_SMALL);
  int32_t count = 1;
  EXPECT_EQ(ini_rw_longs(0, "a.ini", "s", "l", nullptr, &count), INI_TOO_SMALL);
  int32_t one[1];
  EXPECT_EQ(ini_rw_longs(0, "a.ini", "s", "l", one, nullptr), INI_TOO_SMALL);
  int32_t l = 0;
  double d = 0;
  EXPECT_EQ(ini_rw_long(0, "a.ini", "s", "l", &l), INI_OK);
  EXPECT_EQ(ini_rw_double(0, "a.ini", "s", "d", &d), INI_OK);
  EXPECT_EQ(ini_rw_longs(0, "a.ini", "s", "l", one, &count), INI_OK);
  EXPECT_EQ(std::tuple(l, d, one[0], count), std::tuple(4, 2.5, 4, 1));
  l = 12;
  d = 1.5;
  int32_t ls[] = {1, -2};
  count = 2;
  EXPECT_EQ(ini_rw_long(1, "a.ini", "s", "l", &l), INI_OK);
  EXPECT_EQ(ini_rw_double(1, "a.ini", "s", "d", &d), INI_OK);
  EXPECT_EQ(ini_rw_longs(1, "a.ini", "s", "ls", ls, &count), INI_OK);
  EXPECT_EQ(tiv::test::read_file("a.ini"), "[s]\nl=12\nd=1.500000\nls=1,-2\n");
}

// The flag picks the direction: a read fills the caller's buffer or array, a write puts the
// buffer or the first *count items into the file.
TEST_F(IniRead, RwStringAndDoublesInBothDirections) {
  write_file("a.ini", "[s]\nt= old\nds=1,,2.5\n");
  char buf[8] = "";
  int32_t size = 7;
  EXPECT_EQ(ini_rw_string(0, "a.ini", "s", "t", buf, &size), INI_OK);
  EXPECT_STREQ(buf, " old");
  EXPECT_EQ(size, 7);
  double ds[4] = {9, 9, 9, 9};
  int32_t count = 4;
  EXPECT_EQ(ini_rw_doubles(0, "a.ini", "s", "ds", ds, &count), INI_OK);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(std::vector<double>(ds, ds + 4), (std::vector<double>{1, 0, 2.5, 9}));
  EXPECT_EQ(ini_rw_doubles(0, "a.ini", "s", "none", ds, &count), INI_NO_ENTRY);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ini_rw_doubles(1, "a.ini", "s", "ds", nullptr, &count), INI_TOO_SMALL);
  EXPECT_EQ(ini_rw_doubles(1, "a.ini", "s", "ds", ds, nullptr), INI_TOO_SMALL);

  std::strcpy(buf, "new");
  EXPECT_EQ(ini_rw_string(1, "a.ini", "s", "t", buf, nullptr), INI_OK);
  double w[] = {0.5, 1e-7, 3, 4};
  count = 3;
  EXPECT_EQ(ini_rw_doubles(1, "a.ini", "s", "w", w, &count), INI_OK);
  EXPECT_EQ(tiv::test::read_file("a.ini"), "[s]\nt=new\nds=1,,2.5\nw=0.5,1e-07,3\n");
}

}  // namespace
