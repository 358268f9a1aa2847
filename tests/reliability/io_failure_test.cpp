// Write failures at many cut points: a forked child writes under a file-size limit, and the
// parent checks the code the library gave and what the files hold afterwards.
#include <tivlib/env.h>
#include <tivlib/fio.h>
#include <tivlib/ini.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "scoped_env.h"
#include "test_dir.h"
#include "write_limit.h"

namespace tiv::test {
namespace {

// Cut points: the first bytes, every `step` bytes, and both sides of each block boundary.
std::vector<std::size_t> cut_points(std::size_t size, std::size_t step, std::size_t block) {
  std::set<std::size_t> cuts{0, 1, 2, size - 1, size, size + 1};
  for (std::size_t at = 0; at < size; at += step) cuts.insert(at);
  for (std::size_t at = block; at <= size + block; at += block) {
    cuts.insert(at - 1);
    cuts.insert(at);
    cuts.insert(at + 1);
  }
  return {cuts.begin(), cuts.end()};
}

std::string numbered_lines(int count, const char* prefix) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += std::string(prefix) + std::to_string(i) + "=value number " + std::to_string(i) + "\n";
  return text;
}

bool is_prefix(const std::string& part, const std::string& whole) {
  return part.size() <= whole.size() && whole.compare(0, part.size(), part) == 0;
}

using IoFailure = InTempDir;

// fio_copy: 3 whenever the target could not take the whole source, and the target then holds
// a true prefix of the source; 0 only with an equal copy.
TEST_F(IoFailure, CopyReportsEveryShortWrite) {
  const std::string source = numbered_lines(60, "k");  // several 512-byte blocks and a rest
  write_file("source.bin", source);
  for (const std::size_t limit : cut_points(source.size(), 61, 512)) {
    std::filesystem::remove("target.bin");
    const int code = run_with_file_limit(limit, [] {
      return fio_copy("", "source.bin", "", "target.bin");
    });
    const std::string target = read_file("target.bin");
    SCOPED_TRACE("limit " + std::to_string(limit));
    if (limit >= source.size()) {
      EXPECT_EQ(code, 0);
      EXPECT_EQ(target, source);
    } else {
      EXPECT_EQ(code, 3);
      EXPECT_TRUE(is_prefix(target, source));
      EXPECT_LE(target.size(), limit);
    }
  }
}

// ini_write_string streams the file through a temporary file and copies it back. A short
// temporary file gives -1 and leaves the settings file as it was, with no temporary file left;
// a good rewrite gives 0 and the new content.
TEST_F(IoFailure, SettingsRewriteNeverLeavesATruncatedFile) {
  const std::filesystem::path tmp = dir_.path() / "tmp";
  std::filesystem::create_directory(tmp);
  const ScopedEnv tmpdir("TMPDIR", tmp.c_str());
  const std::string before = "[first]\n" + numbered_lines(20, "a") + "[s]\ne=1\n" +
                             numbered_lines(30, "b");
  write_file("a.ini", before);
  ASSERT_EQ(ini_write_string("a.ini", "s", "e", "a longer value than before"), 0);
  const std::string after = read_file("a.ini");
  ASSERT_NE(after, before);

  for (const std::size_t limit : cut_points(after.size(), 53, 512)) {
    write_file("a.ini", before);
    const int code = run_with_file_limit(limit, [] {
      return ini_write_string("a.ini", "s", "e", "a longer value than before");
    });
    SCOPED_TRACE("limit " + std::to_string(limit));
    const auto left = std::distance(std::filesystem::directory_iterator(tmp),
                                    std::filesystem::directory_iterator());
    if (limit >= after.size()) {
      EXPECT_EQ(code, 0);
      EXPECT_EQ(read_file("a.ini"), after);
    } else {
      EXPECT_EQ(code, INI_ERROR & 0xff);
      EXPECT_EQ(read_file("a.ini"), before);
    }
    EXPECT_EQ(left, 0);
  }
}

// env_write_file has no result: a full disk leaves a prefix of the text form, the tree stays
// as it was, and reading the cut file back never fails worse than a code.
// env_write_file replaces the file a link names (the link stays), keeps its mode, and writes
// a file with several hard links in place so that every name sees the new content.
TEST_F(IoFailure, EnvironmentWriteKeepsLinksAndModes) {
  env_handle* env = env_open(0, nullptr);
  ASSERT_NE(env, nullptr);
  env_put(env, "s", "x", "1");
  write_file("target.env", "old\n");
  ::chmod("target.env", 0640);
  std::filesystem::create_symlink("target.env", "link.env");
  std::filesystem::create_hard_link("target.env", "hard.env");
  env_write_file("link.env", env);
  EXPECT_EQ(env_last_write_result(), ENV_OK);
  EXPECT_TRUE(std::filesystem::is_symlink("link.env"));
  EXPECT_EQ(read_file("target.env"), "[s]\n  x =1\n");
  EXPECT_EQ(read_file("hard.env"), "[s]\n  x =1\n");
  struct stat st {};
  ASSERT_EQ(::stat("target.env", &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  std::filesystem::remove("hard.env");
  env_write_file("target.env", env);  // one link now: replaced through a temporary file
  ASSERT_EQ(::stat("target.env", &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(env_close(env, 0), ENV_OK);
}

// A full disk at any point of env_write_file leaves the old file whole, no temporary file, and
// a result that says so.
TEST_F(IoFailure, EnvironmentWriteReplacesTheFileWholeOrNotAtAll) {
  env_handle* env = env_open(0, nullptr);
  ASSERT_NE(env, nullptr);
  for (int i = 0; i < 1500; ++i) {
    const std::string key = "block@" + std::to_string(i % 7 + 1) + "@k" + std::to_string(i);
    env_put(env, i % 2 ? "odd" : "even", key.c_str(), "a value long enough to fill lines");
  }
  env_write_file("full.env", env);
  EXPECT_EQ(env_last_write_result(), ENV_OK);
  const std::string full = read_file("full.env");
  ASSERT_GT(full.size(), 2u * ENV_FILE_BUFFER);

  const std::string old = "[old]\n  x =1\n";
  for (const std::size_t limit : cut_points(full.size(), 7919, ENV_FILE_BUFFER)) {
    write_file("cut.env", old);
    const int code = run_with_file_limit(limit, [env] {
      env_write_file("cut.env", env);
      return env_last_write_result() == ENV_OK ? 0 : 1;
    });
    SCOPED_TRACE("limit " + std::to_string(limit));
    const std::string now = read_file("cut.env");
    if (limit >= full.size()) {
      EXPECT_EQ(code, 0);
      EXPECT_EQ(now, full);
    } else {
      EXPECT_EQ(code, 1);
      EXPECT_EQ(now, old);
    }
    for (const auto& e : std::filesystem::directory_iterator("."))
      EXPECT_EQ(e.path().filename().string().find(".tiv-"), std::string::npos) << e.path();
  }
  env_write_file("again.env", env);
  EXPECT_EQ(read_file("again.env"), full);
  env_write_file("missing-directory/x.env", env);
  EXPECT_EQ(env_last_write_result(), ENV_ERROR);
  EXPECT_EQ(env_close(env, 0), ENV_OK);
}

}  // namespace
}  // namespace tiv::test
