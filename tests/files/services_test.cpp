// File-system services: listing, copying, names, directories, hosts, locks and the stubs.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include <tivlib/clock.h>
#include <tivlib/fio.h>
#include <tivlib/heap.h>

#include "files_test_util.h"
#include "scoped_env.h"

namespace tiv::test {
namespace {

using Services = InTempDir;

// The drive form of a real absolute path when C: maps to "/".
std::string drive_form(const std::filesystem::path& p) {
  std::string s = "C:" + p.string();
  std::replace(s.begin(), s.end(), '/', '\\');
  return s;
}

std::string lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

void set_mtime(const char* name, time_t t) {
  const timespec times[2] = {{t, 0}, {t, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, name, times, 0), 0);
}

std::map<std::string, fio_dir_entry> listing(const char* dir, const char* mask) {
  fio_dir_entry* list = nullptr;
  int32_t count = -1;
  std::map<std::string, fio_dir_entry> out;
  if (fio_listdir(dir, mask, 0, &list, &count) != 0) return out;
  for (int32_t i = 0; i < count; ++i) out[list[i].name] = list[i];
  heap_free(list);
  return out;
}

TEST_F(Services, ListdirGivesEveryEntryWithAttributesAndTimes) {
  for (int i = 0; i < 6; ++i) write_file("f" + std::to_string(i) + ".txt", std::string(i, 'x'));
  write_file(".hidden", "h");
  write_file("ro.dat", "r");
  ::chmod("ro.dat", 0444);
  std::filesystem::create_directory("Sub");
  set_mtime("f1.txt", 1000000000);
  set_mtime("f2.txt", -1);
  const auto all = listing(dir_.path().c_str(), nullptr);
  ASSERT_EQ(all.size(), 11u);  // nine entries, "." and "..": the room grows at the 11th
  EXPECT_EQ(all.at(".").attributes, uint32_t{FIO_ATTR_DIR});
  EXPECT_EQ(all.at("..").attributes, uint32_t{FIO_ATTR_DIR});
  EXPECT_EQ(all.at("Sub").attributes, uint32_t{FIO_ATTR_DIR});
  EXPECT_EQ(all.at("f3.txt").attributes, uint32_t{FIO_ATTR_ARCHIVE | FIO_ATTR_FILE});
  EXPECT_EQ(all.at("f3.txt").size, 3u);
  EXPECT_EQ(all.at("ro.dat").attributes,
            uint32_t{FIO_ATTR_ARCHIVE | FIO_ATTR_READONLY | FIO_ATTR_FILE});
  EXPECT_EQ(all.at(".hidden").attributes,
            uint32_t{FIO_ATTR_ARCHIVE | FIO_ATTR_HIDDEN | FIO_ATTR_FILE});
  EXPECT_EQ(all.at("f1.txt").time, 1000000000);
  EXPECT_EQ(all.at("f2.txt").time, 315529200);
  ::chmod("ro.dat", 0644);
}

TEST_F(Services, ListdirWithNothingFoundGivesMinusOneAndCutsLongNames) {
  fio_dir_entry* list = reinterpret_cast<fio_dir_entry*>(1);
  int32_t count = 5;
  EXPECT_EQ(fio_listdir(nullptr, "*.none", 0, &list, &count), -1);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(fio_listdir("missing\\dir", nullptr, 0, &list, &count), -1);
  EXPECT_EQ(fio_listdir(nullptr, nullptr, 0, nullptr, &count), -1);
  // Long names are cut to 79 characters.
  const std::string name(100, 'L');
  write_file(name, "");
  const auto found = listing(nullptr, "L*");
  EXPECT_EQ(found.size(), 1u);
  EXPECT_EQ(found.count(std::string(79, 'L')), 1u);
}

TEST_F(Services, CopyCodes) {
  for (std::size_t size : {0u, 512u, 1300u}) {
    std::string content;
    for (std::size_t i = 0; i < size; ++i) content += static_cast<char>(i * 7);
    write_file("src.bin", content);
    EXPECT_EQ(fio_copy("", "src.bin", nullptr, "dst.bin"), 0) << size;
    EXPECT_EQ(read_file("dst.bin"), content) << size;
  }
  EXPECT_EQ(fio_copy(nullptr, "missing", nullptr, "dst.bin"), 1);
  EXPECT_EQ(fio_copy(nullptr, "src.bin", "no\\such", "dst.bin"), 2);
  std::filesystem::create_directory("d");
  EXPECT_EQ(fio_copy(nullptr, "d", nullptr, "dst2.bin"), 1);
  EXPECT_FALSE(file_exists("dst2.bin"));
  if (file_exists("/dev/full")) {
    write_file("big.bin", std::string(10000, 'b'));
    EXPECT_EQ(fio_copy(nullptr, "big.bin", "/dev", "full"), 3);
  }
}

TEST_F(Services, RenamePurgeExistAccessAndDirectories) {
  write_file("old.txt", "1");
  write_file("taken.txt", "2");
  EXPECT_EQ(fio_rename(nullptr, "old.txt", "taken.txt"), -1);
  EXPECT_EQ(fio_rename("", "OLD.TXT", "new.txt"), 0);
  EXPECT_EQ(read_file("new.txt"), "1");
  EXPECT_EQ(fio_rename(nullptr, "old.txt", "other.txt"), -1);
  EXPECT_EQ(fio_exist(nullptr, "new.txt"), 1);
  EXPECT_EQ(fio_exist(nullptr, "old.txt"), 0);
  std::filesystem::create_directory("dir");
  EXPECT_EQ(fio_exist("dir", nullptr), 1);
  EXPECT_EQ(fio_access(nullptr, "new.txt", 2), 1);
  ::chmod("new.txt", 0444);
  EXPECT_EQ(fio_access(nullptr, "new.txt", 2), 0);
  EXPECT_EQ(fio_access(nullptr, "new.txt", 4), 1);
  EXPECT_EQ(fio_access(nullptr, "gone.txt", 0), 0);
  ::chmod("new.txt", 0644);
  EXPECT_EQ(fio_purge(nullptr, "new.txt"), 0);
  EXPECT_EQ(fio_purge(nullptr, "new.txt"), -1);
  EXPECT_EQ(fio_purge(nullptr, "dir"), -1);
  EXPECT_EQ(fio_mkdir("Made"), 0);
  EXPECT_TRUE(std::filesystem::is_directory("made"));
  EXPECT_EQ(fio_mkdir("made"), -1);
  EXPECT_EQ(fio_chdir("MADE"), 0);
  EXPECT_EQ(std::filesystem::current_path(), dir_.path() / "made");
  EXPECT_EQ(fio_chdir(".."), 0);
  EXPECT_EQ(fio_chdir("nowhere"), -1);
  EXPECT_EQ(fio_chdir(nullptr), -1);
  EXPECT_EQ(fio_rmdir("made"), 0);
  EXPECT_EQ(fio_rmdir("made"), -1);
}

TEST_F(Services, WorkingDirectoryAndFullPaths) {
  const std::string cwd = drive_form(dir_.path());
  char buffer[FIO_PATH_BUFFER];
  EXPECT_STREQ(fio_getcwd(buffer, sizeof buffer), cwd.c_str());
  EXPECT_EQ(fio_getcwd(buffer, static_cast<int32_t>(cwd.size())), nullptr);
  EXPECT_STREQ(fio_get_host_cwd("  ", buffer, sizeof buffer), cwd.c_str());
  EXPECT_STREQ(fio_make_fullpath(buffer, nullptr, nullptr, "Name.Txt"), lower(cwd + "\\name.txt").c_str());
  EXPECT_STREQ(fio_make_fullpath(buffer, nullptr, "sub\\", "x"), lower(cwd + "\\sub\\x").c_str());
  EXPECT_STREQ(fio_make_fullpath(buffer, nullptr, "c:\\x\\", nullptr), "c:\\x");
  EXPECT_STREQ(fio_make_fullpath(buffer, nullptr, "\\top", "f"), "c:\\top\\f");
  EXPECT_EQ(fio_make_fullpath(nullptr, nullptr, nullptr, "x"), nullptr);
}

// Drive D: maps to a directory of the test; the current drive switches and comes back.
TEST_F(Services, DrivesMapToDirectories) {
  std::filesystem::create_directories("ddrive/Inner");
  const ScopedEnv d("TIVLIB_DRIVE_D", (dir_.path() / "ddrive").c_str());
  const ScopedEnv q("TIVLIB_DRIVE_Q", "/no/such/directory");
  const std::string c_cwd = drive_form(dir_.path());
  char buffer[FIO_PATH_BUFFER];
  for (const char* spelling : {"d:", "D:", "d", " dabc"}) {
    EXPECT_EQ(fio_sethostname(spelling), 0) << spelling;
    EXPECT_EQ(fio_gethostname(buffer, 3), 0);
    EXPECT_STREQ(buffer, "D:");
    EXPECT_STREQ(fio_getcwd(buffer, sizeof buffer), "D:\\");
    EXPECT_EQ(std::filesystem::current_path(), dir_.path() / "ddrive");
    EXPECT_STREQ(fio_get_host_cwd("c", buffer, sizeof buffer), c_cwd.c_str());
    EXPECT_EQ(fio_sethostname("c:"), 0);
    EXPECT_EQ(std::filesystem::current_path(), dir_.path());
  }
  // Another drive's directory changes without entering it.
  EXPECT_EQ(fio_chdir("d:\\inner"), 0);
  EXPECT_EQ(std::filesystem::current_path(), dir_.path());
  EXPECT_STREQ(fio_get_host_cwd("d:", buffer, sizeof buffer), "D:\\Inner");
  write_file("ddrive/Inner/Data.Txt", "on d");
  fio_handle* h = fio_open("d:", "data.txt", FIO_READ);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(fio_close(h), 0);
  EXPECT_EQ(fio_exist("d:\\INNER", "data.txt"), 1);
  EXPECT_EQ(fio_host_exist("q:"), 0);
  EXPECT_EQ(fio_sethostname("q"), -1);
  EXPECT_STREQ(fio_getcwd(buffer, sizeof buffer), c_cwd.c_str());
  EXPECT_EQ(fio_host_exist("d"), 1);
  EXPECT_EQ(fio_gethostname(buffer, 3), 0);
  EXPECT_STREQ(buffer, "C:");
  EXPECT_EQ(fio_chdir("d:\\"), 0);  // leave D: at its root for later tests
}

TEST_F(Services, TemporaryNamesCanBeCreatedAndFoundAgain) {
  char first[FIO_PATH_BUFFER];
  ASSERT_EQ(fio_tmpnam(first), first);
  char* shared = fio_tmpnam(nullptr);
  ASSERT_NE(shared, nullptr);
  EXPECT_STRNE(first, shared);
  EXPECT_EQ(fio_exist(nullptr, first), 0);
  fio_handle* h = fio_open(nullptr, first, FIO_WRITE | FIO_TEXT);
  EXPECT_EQ(fio_putstring(h, "temp", 0), 0);
  EXPECT_EQ(fio_close(h), 0);
  EXPECT_EQ(fio_purge(nullptr, first), 0);
  EXPECT_EQ(fio_exist(nullptr, first), 0);
}

TEST_F(Services, LockAndUnlock) {
  write_file("l.bin", "0123456789");
  fio_handle* h = fio_open(nullptr, "l.bin", FIO_READ | FIO_UPDATE);
  EXPECT_EQ(fio_seek(h, 3, 0), 0);
  EXPECT_EQ(fio_lock(h), 0);
  EXPECT_EQ(fio_tell(h), 3);
  EXPECT_EQ(fio_getchar(h, nullptr), '3');
  EXPECT_EQ(fio_unlock(h), 0);
  EXPECT_EQ(fio_getchar(h, nullptr), '4');
  EXPECT_EQ(fio_close(h), 0);
  fio_handle* r = fio_open(nullptr, "l.bin", FIO_READ);
  EXPECT_EQ(fio_lock(r), 0);  // read-only handles take a shared lock
  EXPECT_EQ(fio_unlock(r), 0);
  ::close(::fileno(fio_fp(r)));
  EXPECT_EQ(fio_lock(r), -5);
  EXPECT_EQ(fio_unlock(r), -1);
  EXPECT_EQ(fio_close(r), -1);
  EXPECT_EQ(fio_lock(nullptr), -4);
  EXPECT_EQ(fio_unlock(nullptr), -1);
}

TEST_F(Services, StubsReportAndTouchNothing) {
  write_file("a", "a");
  EXPECT_EQ(fio_move(nullptr, "a", nullptr, "b"), -1);
  EXPECT_EQ(fio_ispath("a"), 1);
  EXPECT_EQ(fio_islock(nullptr), -1);
  EXPECT_TRUE(file_exists("a"));
  EXPECT_FALSE(file_exists("b"));
  const std::string report = fio_error("Not yet implemented");
  EXPECT_EQ(masked_log(), report + report + report);
}

}  // namespace
}  // namespace tiv::test
