// Path composition: joints, priorities, case and separators, limits, 8.3 names, extensions.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include <tivlib/fio.h>

#include "rows.h"

namespace {

std::string make(const char* host, const char* dir, const char* name) {
  char out[FIO_PATH_BUFFER + 16];
  std::fill(std::begin(out), std::end(out), '#');
  EXPECT_EQ(fio_makepath(out, host, dir, name), out);
  return out;
}

// One call of make: the three parts and the joined path.
using Path = std::tuple<const char*, const char*, const char*, const char*>;

TEST(Makepath, JoinsLowerCasesAndTurnsSeparators) {
  for (const auto& [drive, dir, name, want] : std::initializer_list<Path>{
        {nullptr, "c:\\Data", "Name.TXT", "c:\\data\\name.txt"},
        {nullptr, "c:/Data/", "Name.TXT", "c:\\data\\name.txt"},
        {nullptr, "c:\\a\\", "\\b", "c:\\a\\b"}, {"c:", "\\x", nullptr, "c:\\x"},
        {"c:", "x", nullptr, "c:x"}, {nullptr, "a", nullptr, "a"}, {nullptr, nullptr, nullptr, ""},
        {"", "", "", ""}, {"d:\\root", "sub", "f", "d:\\root\\sub\\f"},
        {nullptr, "a\\", "b\\c.d", "a\\b\\c.d"},
        // later arguments win
        {"e:", "c:\\dir", "d:\\x.y", "d:\\x.y"}, {"e:", "c:\\dir", "x.y", "c:\\dir\\x.y"},
        {"e:", "\\dir", "x.y", "e:\\dir\\x.y"}})
    EXPECT_EQ(make(drive, dir, name), want) << want;
}

TEST(Makepath, NilOutGivesNilAndOutMayAliasAnArgument) {
  EXPECT_EQ(fio_makepath(nullptr, "c:", "a", "b"), nullptr);
  char buffer[FIO_PATH_BUFFER] = "Some\\Dir";
  EXPECT_STREQ(fio_makepath(buffer, nullptr, buffer, "File"), "some\\dir\\file");
  char name[FIO_PATH_BUFFER] = "Leaf.X";
  EXPECT_STREQ(fio_makepath(name, "c:", "\\top", name), "c:\\top\\leaf.x");
}

TEST(Makepath, LongPartsAreCutWithinTheBuffer) {
  std::string dir;
  while (dir.size() < 300) dir += "ABCDEFGHI\\";
  const std::string name(120, 'n');
  const std::string out = make(nullptr, dir.c_str(), name.c_str());
  EXPECT_EQ(out.size(), 255u);
  EXPECT_EQ(out.substr(0, 10), "abcdefghi\\");
  // A last component without separator is a name part too, cut to 79 characters.
  EXPECT_EQ(make(nullptr, std::string(300, 'D').c_str(), "x"), std::string(79, 'd') + "\\x");
  // A name part holds at most 79 characters.
  EXPECT_EQ(make(nullptr, "c:\\", name.c_str()), "c:\\" + std::string(79, 'n'));
}

TEST(Divide, SplitsHostDirectoryAndName) {
  char host[3], dir[FIO_PATH_BUFFER], name[FIO_PATH_BUFFER];
  const auto parts = [&] { return std::string(host) + "|" + dir + "|" + name; };
  EXPECT_EQ(fio_divide("c:\\a\\b.txt", host, dir, name), 0);
  EXPECT_EQ(parts(), "c:|\\a\\|b.txt");
  EXPECT_EQ(fio_divide("b", host, dir, name), 0);
  EXPECT_EQ(parts(), "||b");
  const std::string deep = "c:" + std::string(400, '\\');
  EXPECT_EQ(fio_divide(deep.c_str(), host, dir, name), 0);
  EXPECT_EQ(std::string(dir).size(), 255u);
}

TEST(TestFilename, EightDotThreeRule) {
  for (const auto& [in, want] : tiv::test::Rows<const char*, int32_t>{{"autoexec.bat", 0},
        {"autoexec1.bat", 1}, {"a.batx", 1}, {"a b.txt", 1}, {"*.*", 2}, {"a?.txt", 2},
        {"a.b.c", 1}, {"name.", 0}, {".ext", 0}, {"", 1}, {"\xe4\xf6\xfc.\xdf", 0},
        {"a+b", 1}, {"a.[", 1}})
    EXPECT_EQ(fio_test_filename(in), want) << in;
}

TEST(ExtentionPos, LastDotFromIndexOne) {
  for (const auto& [in, want] : tiv::test::Rows<const char*, int32_t>{{"a.b", 1}, {"a.b.c", 3},
        {".abc", -1}, {"abc", -1}, {"", -1}, {"d.x\\name", 1}})
    EXPECT_EQ(fio_get_extention_pos(in), want) << in;
}

}  // namespace
