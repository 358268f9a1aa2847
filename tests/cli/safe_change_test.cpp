// Changes that never lose data: concurrent writers, links and modes, a full disk, a writer
// killed part way, CR LF kept, and files that a rewrite would lose refused unchanged.
#include <fcntl.h>
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

// Runs tiv with one resource limited to `bytes` (a full disk: RLIMIT_FSIZE, with the signal of
// an oversized write ignored so that the write fails; a memory limit: RLIMIT_AS). The child
// limits itself and execs at once, output to /dev/null. Gives the exit code, or 128 plus the
// signal that ended the run.
int tiv_limited(const std::vector<std::string>& args, int resource, rlim_t bytes) {
  std::vector<std::string> words = args;
  words.insert(words.begin(), TIV_EXE);
  std::vector<char*> argv;
  for (auto& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  const pid_t pid = ::fork();
  if (pid == 0) {
    const int null_fd = ::open("/dev/null", O_RDWR);
    for (int fd : {0, 1, 2}) ::dup2(null_fd, fd);
    const rlimit limit{bytes, bytes};
    ::setrlimit(resource, &limit);
    ::signal(SIGXFSZ, SIG_IGN);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
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
  EXPECT_EQ(tiv_limited({"env", "set", "a.env", "S", "y", big}, RLIMIT_FSIZE, 64), 4);
  EXPECT_EQ(tiv_limited({"ini", "set", "a.ini", "S", "y", big}, RLIMIT_FSIZE, 64), 4);
  EXPECT_EQ(read_file("a.env"), env);
  EXPECT_EQ(read_file("a.ini"), ini);
  EXPECT_EQ(leftovers(), std::vector<std::string>{});
}

TEST_F(SafeChange, MemoryLimitsLeaveFilesWhole) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer needs more address space than the limits leave";
#endif
  std::string env = "[S]\n";
  for (int i = 0; i < 50000; ++i) env += "  v" + std::to_string(i) + " =value number " + std::to_string(i) + "\n";
  const std::string after = env + "  new =1\n";
  for (rlim_t megabytes : {12, 20, 30, 60}) {
    write_file("big.env", env);
    write_file("big.ini", "[S]\nx=1\n");
    const int set = tiv_limited({"env", "set", "big.env", "S", "new", "1"}, RLIMIT_AS, megabytes << 20);
    EXPECT_TRUE((set == 0 && read_file("big.env") == after) || (set == 4 && read_file("big.env") == env))
        << megabytes << " MB: exit " << set;
    const int ini = tiv_limited({"ini", "set", "big.ini", "S", "y", "2"}, RLIMIT_AS, megabytes << 20);
    EXPECT_TRUE((ini == 0 && read_file("big.ini") == "[S]\nx=1\ny=2\n") ||
                (ini == 4 && read_file("big.ini") == "[S]\nx=1\n"))
        << megabytes << " MB: exit " << ini;
    const int dump = tiv_limited({"env", "dump", "big.env", "--json"}, RLIMIT_AS, megabytes << 20);
    EXPECT_TRUE(dump == 0 || dump == 3 || dump == 4) << megabytes << " MB: exit " << dump;
    EXPECT_EQ(leftovers(), std::vector<std::string>{});
  }
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
