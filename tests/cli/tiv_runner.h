// Runs the built tiv binary as a child process in the current directory, feeds it standard
// input and collects standard output, standard error and the exit code.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "test_dir.h"

namespace tiv::test {

struct Outcome {
  int code = -1;
  std::string out;
  std::string err;
};

// Settings of the child's environment: name and value, or an empty value to unset.
using EnvVars = std::vector<std::pair<std::string, std::string>>;

inline Outcome tiv(const std::vector<std::string>& args, const std::string& input = {},
               const EnvVars& env = {}) {
  int in_pipe[2], out_pipe[2], err_pipe[2];
  if (::pipe(in_pipe) != 0 || ::pipe(out_pipe) != 0 || ::pipe(err_pipe) != 0) std::abort();
  pid_t pid = ::fork();
  if (pid < 0) std::abort();
  if (pid == 0) {
    ::dup2(in_pipe[0], 0);
    ::dup2(out_pipe[1], 1);
    ::dup2(err_pipe[1], 2);
    for (int fd : {in_pipe[0], in_pipe[1], out_pipe[0], out_pipe[1], err_pipe[0], err_pipe[1]}) ::close(fd);
    // The library's settings lookups read these; a test sees only what it sets itself.
    ::unsetenv("zv");
    ::unsetenv("ZV");
    ::unsetenv("TIV_EXAMPLES");
    for (const auto& [name, value] : env) {
      if (value.empty()) {
        ::unsetenv(name.c_str());
      } else {
        ::setenv(name.c_str(), value.c_str(), 1);
      }
    }
    std::vector<char*> argv;
    std::string exe = TIV_EXE;
    argv.push_back(exe.data());
    std::vector<std::string> copy = args;
    for (auto& a : copy) argv.push_back(a.data());
    argv.push_back(nullptr);
    ::execv(exe.c_str(), argv.data());
    ::_exit(127);
  }
  ::close(in_pipe[0]);
  ::close(out_pipe[1]);
  ::close(err_pipe[1]);
  Outcome run;
  std::size_t written = 0;
  int in_fd = in_pipe[1];
  if (input.empty()) {
    ::close(in_fd);
    in_fd = -1;
  }
  int out_fd = out_pipe[0], err_fd = err_pipe[0];
  while (out_fd >= 0 || err_fd >= 0) {
    pollfd fds[3] = {{out_fd, POLLIN, 0}, {err_fd, POLLIN, 0}, {in_fd, POLLOUT, 0}};
    if (::poll(fds, 3, -1) < 0) continue;
    char buffer[4096];
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || fds[i].revents == 0) continue;
      ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        (i == 0 ? run.out : run.err).append(buffer, static_cast<std::size_t>(n));
      } else {
        ::close(fds[i].fd);
        (i == 0 ? out_fd : err_fd) = -1;
      }
    }
    if (in_fd >= 0 && fds[2].revents != 0) {
      ssize_t n = ::write(in_fd, input.data() + written, input.size() - written);
      if (n > 0) written += static_cast<std::size_t>(n);
      if (n <= 0 || written == input.size()) {
        ::close(in_fd);
        in_fd = -1;
      }
    }
  }
  if (in_fd >= 0) ::close(in_fd);
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

}  // namespace tiv::test
