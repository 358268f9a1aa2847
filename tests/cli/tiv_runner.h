// Runs the built tiv binary as a child process in the current directory and collects standard
// output, standard error and the exit code.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "test_dir.h"

namespace tiv::test {

struct Outcome {
  int code = -1;
  std::string out;
  std::string err;
};

// Runs tiv with the arguments and `input` (at most a pipe's worth) on standard input, and
// collects both output streams.
inline Outcome tiv(const std::vector<std::string>& args, const std::string& input = {}) {
  int out_pipe[2], err_pipe[2], in_pipe[2];
  if (::pipe(out_pipe) != 0 || ::pipe(err_pipe) != 0 || ::pipe(in_pipe) != 0) std::abort();
  if (::write(in_pipe[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
  ::close(in_pipe[1]);
  const pid_t pid = ::fork();
  if (pid < 0) std::abort();
  if (pid == 0) {
    const int in_fd = in_pipe[0];
    ::dup2(in_fd, 0);
    ::dup2(out_pipe[1], 1);
    ::dup2(err_pipe[1], 2);
    for (int fd : {in_fd, out_pipe[0], out_pipe[1], err_pipe[0], err_pipe[1]}) ::close(fd);
    // The library's settings lookups read these; a test sees only what it sets itself.
    for (const char* name : {"zv", "ZV", "TIV_EXAMPLES"}) ::unsetenv(name);
    std::vector<std::string> words = args;
    words.insert(words.begin(), TIV_EXE);
    std::vector<char*> argv;
    for (auto& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  ::close(in_pipe[0]);
  ::close(out_pipe[1]);
  ::close(err_pipe[1]);
  Outcome run;
  // Both pipes are drained together, so a child that fills one never blocks; poll skips the
  // entries of closed pipes (fd -1).
  pollfd fds[2] = {{out_pipe[0], POLLIN, 0}, {err_pipe[0], POLLIN, 0}};
  std::string* sinks[2] = {&run.out, &run.err};
  while (fds[0].fd >= 0 || fds[1].fd >= 0) {
    if (::poll(fds, 2, -1) < 0) continue;
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || fds[i].revents == 0) continue;
      char buffer[4096];
      const ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        sinks[i]->append(buffer, static_cast<std::size_t>(n));
      } else {
        ::close(fds[i].fd);
        fds[i].fd = -1;
      }
    }
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  run.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return run;
}

// The sample files of the source tree.
inline std::filesystem::path examples() { return TIV_EXAMPLES_DIR; }

// Checks the exit code of a run and its standard error, byte for byte.
inline void expect_exit(const Outcome& run, int code, const std::string& err) {
  EXPECT_EQ(run.code, code) << err;
  EXPECT_EQ(run.err, err);
}

// Checks the exit code, standard output and standard error of a run, byte for byte.
inline void expect_run(const Outcome& run, int code, const std::string& out,
                       const std::string& err = {}) {
  expect_exit(run, code, err);
  EXPECT_EQ(run.out, out);
}

}  // namespace tiv::test
