// Corners of the file-system services that the family tests leave out: where temporary
// names go for every kind of TMPDIR, and services given empty or impossible names.
#include <tivlib/fio.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "rows.h"
#include "test_dir.h"

namespace tiv::test {
namespace {

// The drive form of a Linux directory with C: at the root: "C:\a\b".
std::string drive_form(const std::string& linux_dir) {
  std::string out = "C:";
  for (const char c : linux_dir) out += c == '/' ? '\\' : c;
  return out;
}

class PlatformEdges : public InTempDir {
 protected:
  ~PlatformEdges() override { ::unsetenv("TMPDIR"); }
  // The directory part of a fresh temporary name, checked to end in "tiv" and 8 hex digits.
  std::string temporary_directory() {
    char buffer[FIO_PATH_BUFFER];
    if (fio_tmpnam(buffer) != buffer) return "<nil>";
    const std::string name = buffer;
    const std::size_t cut = name.rfind('\\');
    const std::string leaf = name.substr(cut + 1);
    EXPECT_EQ(leaf.size(), 11u) << name;
    EXPECT_EQ(leaf.rfind("tiv", 0), 0u) << name;
    EXPECT_EQ(leaf.find_first_not_of("0123456789abcdef", 3), std::string::npos) << name;
    return name.substr(0, cut);
  }
};

TEST_F(PlatformEdges, TemporaryNamesFollowTmpdirOrFallBackToTmp) {
  const std::string here = dir_.path().string();
  // TMPDIR (unset when absent) and the directory part of the names.
  for (const auto& [tmpdir, directory] : Rows<std::optional<std::string>, std::string>{
           {std::nullopt, drive_form("/tmp")}, {"", drive_form("/tmp")},
           {"relative/dir", drive_form("/tmp")}, {here, drive_form(here)},
           {here + "///", drive_form(here)}, {"/", "C:"}}) {
    if (tmpdir) {
      ::setenv("TMPDIR", tmpdir->c_str(), 1);
    } else {
      ::unsetenv("TMPDIR");
    }
    EXPECT_EQ(temporary_directory(), directory) << tmpdir.value_or("(unset)");
  }
  // A directory too long for the drive form of a temporary name falls back to /tmp.
  const std::string deep = "/" + std::string(250, 'd');
  ::setenv("TMPDIR", deep.c_str(), 1);
  EXPECT_EQ(temporary_directory(), drive_form("/tmp"));
  // Two names in a row differ.
  char a[FIO_PATH_BUFFER];
  char b[FIO_PATH_BUFFER];
  ASSERT_NE(fio_tmpnam(a), nullptr);
  ASSERT_NE(fio_tmpnam(b), nullptr);
  EXPECT_STRNE(a, b);
}

TEST_F(PlatformEdges, ServicesRefuseEmptyAndMissingNames) {
  write_file("file.txt", "x");
  EXPECT_EQ(fio_exist("", ""), 0);
  EXPECT_EQ(fio_exist(nullptr, "missing.txt"), 0);
  EXPECT_EQ(fio_access(nullptr, "missing.txt", 2), 0);
  EXPECT_EQ(fio_purge(nullptr, ""), -1);
  EXPECT_EQ(fio_purge(nullptr, "missing.txt"), -1);
  EXPECT_EQ(fio_rename(nullptr, "missing.txt", "other.txt"), -1);
  EXPECT_EQ(fio_rename(nullptr, "", "other.txt"), -1);
  EXPECT_EQ(fio_rmdir("missing"), -1);
  EXPECT_EQ(fio_copy(nullptr, "missing.txt", nullptr, "copy.txt"), 1);
  EXPECT_EQ(fio_copy(nullptr, "file.txt", "no\\such\\dir", "copy.txt"), 2);
  EXPECT_EQ(read_file("file.txt"), "x");
  EXPECT_FALSE(file_exists("copy.txt"));
  EXPECT_FALSE(file_exists("other.txt"));
}

}  // namespace
}  // namespace tiv::test
