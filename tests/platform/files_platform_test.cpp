// The platform layer for files: name resolution, drives, text reads, masks and locks.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <tuple>
#include <vector>

#include "platform/dir_search.h"
#include "platform/drives.h"
#include "platform/files.h"
#include "platform/locks.h"
#include "test_dir.h"

namespace tiv::test {
namespace {

using tiv::platform::real_path;
using Platform = InTempDir;

TEST_F(Platform, ResolvesComponentsExactlyThenIgnoringCaseFirstInByteOrder) {
  std::filesystem::create_directories("Data/Sub");
  write_file("Data/Sub/Profile.PRO", "x");
  write_file("Data/sub.txt", "y");
  EXPECT_EQ(real_path("data\\sub\\profile.pro"), "Data/Sub/Profile.PRO");
  EXPECT_EQ(real_path("Data/Sub/Profile.PRO"), "Data/Sub/Profile.PRO");
  EXPECT_EQ(real_path("data\\sub.txt"), "Data/sub.txt");
  // A missing name keeps its spelling, and so does everything behind it.
  EXPECT_EQ(real_path("data\\new\\Deep.x", platform::Intent::create), "Data/new/Deep.x");
  EXPECT_EQ(real_path("data\\.\\..\\data\\sub"), "Data/./../Data/Sub");
  EXPECT_EQ(real_path(""), "");
  // Several matches ignoring case: the first in byte order.
  write_file("abc", "1");
  write_file("ABc", "2");
  write_file("aBC", "3");
  EXPECT_EQ(real_path("Abc"), "ABc");
  EXPECT_EQ(real_path("abc"), "abc");
}

TEST_F(Platform, DrivesAndRootedPaths) {
  const std::string here = dir_.path().string();
  write_file("In.txt", "");
  // Built by appending: GCC 12 warns falsely (-Wrestrict) on a chain of string additions.
  const auto under = [&](const char* prefix) {
    std::string s(prefix);
    s.append(here, 1, std::string::npos);
    s += "\\in.txt";
    return s;
  };
  EXPECT_EQ(real_path(under("c:\\")), here + "/In.txt");
  EXPECT_EQ(real_path(under("\\")), here + "/In.txt");
  EXPECT_EQ(real_path("c:in.txt"), "In.txt");
  ::setenv("TIVLIB_DRIVE_K", (here + "///").c_str(), 1);
  EXPECT_EQ(platform::drive_root(11), here);
  EXPECT_EQ(real_path("k:\\IN.TXT"), here + "/In.txt");
  EXPECT_EQ(real_path("K:in.txt"), here + "/In.txt");  // K:'s directory is its root
  EXPECT_EQ(platform::to_drive_form(here + "/x", 11), "K:\\x");
  EXPECT_EQ(platform::to_drive_form(here, 11), "K:\\");
  EXPECT_EQ(platform::to_drive_form("/usr", 11), "C:\\usr");
  ::unsetenv("TIVLIB_DRIVE_K");
  for (const auto& [path, drive] : {std::pair{"z:x", 26}, {"1:x", 0}, {"\xc4:x", 0}})
    EXPECT_EQ(platform::drive_of(path), drive) << path;
  EXPECT_FALSE(platform::set_current_drive(0));
  EXPECT_FALSE(platform::set_current_drive(27));
  EXPECT_EQ(platform::current_drive(), 3);
}

TEST_F(Platform, OpenFileDropsTheTextLetterAndRefusesDirectories) {
  std::FILE* f = platform::open_file("New.TXT", "wt");
  ASSERT_NE(f, nullptr);
  std::fputs("a\r\nb\rc\r\n", f);
  std::fclose(f);
  EXPECT_TRUE(file_exists("New.TXT"));
  std::filesystem::create_directory("d");
  EXPECT_EQ(platform::open_file("d", "rb"), nullptr);
  EXPECT_EQ(platform::open_file(nullptr, "r"), nullptr);
  f = platform::open_file("new.txt", "rt");
  ASSERT_NE(f, nullptr);
  char buffer[16];
  EXPECT_EQ(platform::read_text(f, buffer, sizeof buffer), 6u);
  EXPECT_EQ(std::string(buffer, 6), "a\nb\rc\n");
  std::fclose(f);
}

TEST(Masks, WildCardsIgnoringCase) {
  for (const auto& [mask, name, want] : {std::tuple{"*.*", "noext", true}, {"*", ".", true},
           {"*.PRO", "stahl.pro", true}, {"*.PRO", "stahl.pro.bak", false}, {"a?c", "ABC", true},
           {"a?c", "ac", false}, {"read*.*", "readme", true}, {"*a*b*", "xxaYYbzz", true},
           {"*a*b", "xxaYYbzz", false}, {"", "", true}})
    EXPECT_EQ(platform::mask_matches(mask, name), want) << mask << " " << name;
}

TEST_F(Platform, SearchGivesModesAndSizes) {
  write_file("f.txt", "12345");
  std::vector<platform::FoundEntry> found;
  ASSERT_TRUE(platform::search_directory("F.TXT", found));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].name, "f.txt");
  EXPECT_EQ(found[0].size, 5u);
  EXPECT_FALSE(found[0].directory);
  found.clear();
  ASSERT_TRUE(platform::search_directory(".\\*.none", found));
  EXPECT_TRUE(found.empty());
  EXPECT_FALSE(platform::search_directory("missing\\*.*", found));
}

// Two open files of one process exclude each other, as two handles did on the old platform.
TEST_F(Platform, LocksBelongToTheOpenFile) {
  write_file("l.bin", "0123456789");
  const int a = ::open("l.bin", O_RDWR);
  const int b = ::open("l.bin", O_RDWR);
  const int r = ::open("l.bin", O_RDONLY);
  ASSERT_TRUE(a >= 0 && b >= 0 && r >= 0);
  using platform::LockResult;
  EXPECT_EQ(platform::lock_range(a, 0, 10, 2, 5), LockResult::done);
  EXPECT_EQ(platform::lock_range(b, 0, 10, 2, 5), LockResult::failed);
  EXPECT_EQ(platform::lock_range(r, 0, 10, 1, 0), LockResult::failed);
  EXPECT_EQ(platform::lock_range(b, 10, 5, 1, 0), LockResult::done);  // beyond a's range
  EXPECT_EQ(platform::unlock_range(a, 0, 0), LockResult::done);
  EXPECT_EQ(platform::lock_range(r, 0, 10, 1, 0), LockResult::done);
  ::close(a);
  ::close(b);
  ::close(r);
  EXPECT_EQ(platform::lock_range(a, 0, 10, 1, 0), LockResult::bad_descriptor);
  EXPECT_EQ(platform::unlock_range(a, 0, 0), LockResult::bad_descriptor);
}

}  // namespace
}  // namespace tiv::test
