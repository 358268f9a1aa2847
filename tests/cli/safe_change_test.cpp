// Changes that never lose data: concurrent writers, links and modes, a full disk, a writer
// killed part way, CR LF kept, and files that a rewrite would lose refused unchanged.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "rows.h"
#include "tiv_runner.h"

namespace tiv::test {
namespace {

using SafeChange = InTempDir;

// Names in the current directory that a change left behind.
std::vector<std::string> leftovers() {
  std::vector<std::string> names;
  for (const auto& e : std::filesystem::directory_iterator("."))
    if (e.path().filename().string().find(".tiv-") != std::string::npos) names.push_back(e.path().filename());
  return names;
}

// Runs tiv in a child that may write at most `bytes` per file (a full disk), with the signal
// of an oversized write ignored, so that the write fails instead.
int tiv_on_full_disk(const std::vector<std::string>& args, rlim_t bytes) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, SIG_IGN);
    ::_exit(tiv(args).code);
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(SafeChange, ConcurrentWritersLoseNothing) {
  constexpr int kWriters = 4;
  constexpr int kEach = 12;
  write_file("s.ini", "[keep]\nuntouched=1\n");
  write_file("s.env", "[keep]\n  untouched =1\n");
  std::vector<pid_t> children;
  for (int w = 0; w < kWriters; ++w) {
    const pid_t pid = ::fork();
    if (pid == 0) {
      bool ok = true;
      for (int i = 0; i < kEach; ++i) {
        const std::string name = "w" + std::to_string(w) + "_" + std::to_string(i);
        ok = tiv({"ini", "set", "s.ini", "new", name, "v"}).code == 0 && ok;
        ok = tiv({"env", "set", "s.env", "new", name, "v"}).code == 0 && ok;
      }
      ::_exit(ok ? 0 : 1);
    }
    children.push_back(pid);
  }
  for (pid_t pid : children) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  for (int w = 0; w < kWriters; ++w) {
    for (int i = 0; i < kEach; ++i) {
      const std::string name = "w" + std::to_string(w) + "_" + std::to_string(i);
      expect_run(tiv({"ini", "get", "s.ini", "new", name}), 0, "v\n");
      expect_run(tiv({"env", "get", "s.env", "new", name}), 0, "v\n");
    }
  }
  expect_run(tiv({"ini", "get", "s.ini", "keep", "untouched"}), 0, "1\n");
  expect_run(tiv({"env", "get", "s.env", "keep", "untouched"}), 0, "1\n");
  EXPECT_EQ(leftovers(), std::vector<std::string>{});
}

TEST_F(SafeChange, LinksModesAndLineEndsAreKept) {
  std::filesystem::create_directory("real");
  write_file("real/a.env", "[S]\r\n  x =1\r\n");
  write_file("real/a.ini", "[S]\r\nx=1\r\n");
  ::chmod("real/a.env", 0640);
  ::chmod("real/a.ini", 0600);
  std::filesystem::create_symlink("real/a.env", "link.env");
  std::filesystem::create_symlink("real/a.ini", "link.ini");
  std::filesystem::create_hard_link("real/a.env", "hard.env");
  expect_run(tiv({"env", "set", "link.env", "S", "y", "2"}), 0, "");
  expect_run(tiv({"ini", "set", "link.ini", "S", "y", "2"}), 0, "");
  EXPECT_TRUE(std::filesystem::is_symlink("link.env"));
  EXPECT_TRUE(std::filesystem::is_symlink("link.ini"));
  EXPECT_EQ(read_file("real/a.env"), "[S]\r\n  x =1\r\n  y =2\r\n");
  EXPECT_EQ(read_file("hard.env"), read_file("real/a.env"));  // the hard link sees the change
  EXPECT_EQ(read_file("real/a.ini"), "[S]\r\nx=1\r\ny=2\r\n");
  struct stat st {};
  ASSERT_EQ(::stat("real/a.env", &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  ASSERT_EQ(::stat("real/a.ini", &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0600u);
  for (const char* dir : {".", "real"})
    for (const auto& e : std::filesystem::directory_iterator(dir))
      EXPECT_EQ(e.path().filename().string().find(".tiv-"), std::string::npos) << e.path();
}

TEST_F(SafeChange, AFullDiskLeavesTheFileWhole) {
  const std::string env = "[S]\n  x =1\n";
  const std::string ini = "[S]\nx=1\n";
  write_file("a.env", env);
  write_file("a.ini", ini);
  const std::string big(400, 'v');
  EXPECT_EQ(tiv_on_full_disk({"env", "set", "a.env", "S", "y", big}, 64), 4);
  EXPECT_EQ(tiv_on_full_disk({"ini", "set", "a.ini", "S", "y", big}, 64), 4);
  EXPECT_EQ(read_file("a.env"), env);
  EXPECT_EQ(read_file("a.ini"), ini);
  EXPECT_EQ(leftovers(), std::vector<std::string>{});
}

TEST_F(SafeChange, AWriterKilledPartWayLeavesTheOldOrTheNewFile) {
  std::string env = "[S]\n";
  for (int i = 0; i < 40000; ++i) env += "  v" + std::to_string(i) + " =" + std::to_string(i) + "\n";
  write_file("big.env", env);
  const std::string after = env + "  new =1\n";
  for (int delay_us : {0, 2000, 8000, 20000, 50000}) {
    const pid_t pid = ::fork();
    if (pid == 0) {
      ::execl(TIV_EXE, TIV_EXE, "env", "set", "big.env", "S", "new", "1", static_cast<char*>(nullptr));
      ::_exit(127);
    }
    ::usleep(static_cast<useconds_t>(delay_us));
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    const std::string now = read_file("big.env");
    EXPECT_TRUE(now == env || now == after) << delay_us << ": " << now.size() << " bytes";
    write_file("big.env", env);
    for (const std::string& name : leftovers()) std::filesystem::remove(name);  // kill -9 can't clean
  }
}

TEST_F(SafeChange, FilesARewriteWouldLoseAreRefusedUnchanged) {
  std::string deep = "[S]\n";
  for (int i = 0; i < 3000; ++i) deep += "a ={\n";
  for (int i = 0; i < 3000; ++i) deep += "}\n";
  const std::vector<std::pair<std::string, std::string>> files = {
      {"prose.env", "Dear reader, this is a letter = not a settings file.\n[but it has a bracket]\n"},
      {"binary.env", std::string("[S]\n  x =1\0\0\x01\x02\n", 15)},
      {"deep.env", deep},
      {"long.ini", "[S]\nx=" + std::string(600, 'x') + "\n"},
      {"binary.ini", std::string("[S]\nx=1\n\0\0", 10)}};
  for (const auto& [name, content] : files) write_file(name, content);
  for (const auto& [args, err] : Rows<std::vector<std::string>, std::string>{
           {{"env", "set", "prose.env", "S", "x", "1"},
            "tiv: prose.env: not changed: it has text in front of its first section, which a rewrite "
            "drops: perhaps no environment file at all (--force to go on)\n"},
           {{"env", "fmt", "binary.env"},
            "tiv: binary.env: not changed: it holds nul bytes: perhaps no environment file at all "
            "(--force to go on)\n"},
           {{"env", "set", "deep.env", "S", "x", "1"},
            "tiv: deep.env: not changed: its rewrite would be many times its size (blocks nested deep) "
            "(--force to go on)\n"},
           {{"ini", "set", "long.ini", "S", "y", "1"},
            "tiv: long.ini:2: not changed: the line is longer than 511 characters, which a change "
            "would cut (--force to go on)\n"},
           {{"ini", "delete", "binary.ini", "S", "x"},
            "tiv: binary.ini: not changed: it holds nul bytes, perhaps no settings file at all "
            "(--force to go on)\n"}})
    expect_run(tiv(args), 3, "", err);
  for (const auto& [name, content] : files) EXPECT_EQ(read_file(name), content) << name;
  EXPECT_EQ(leftovers(), std::vector<std::string>{});
  expect_run(tiv({"env", "set", "prose.env", "S", "x", "1", "--force"}), 0, "");
  EXPECT_EQ(read_file("prose.env"), "[but it has a bracket]\n[S]\n  x =1\n");
}

}  // namespace
}  // namespace tiv::test
