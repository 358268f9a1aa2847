// Runs a piece of code in a forked child whose files can't grow past a given size, the way
// a full disk stops writes: RLIMIT_FSIZE, with SIGXFSZ ignored so the write just falls short.
#pragma once

#include <csignal>
#include <cstdint>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tiv::test {

// What the child gave: its exit code (0..255), or kChildCrashed when it didn't exit.
inline constexpr int kChildCrashed = -1000;

// Runs body in a child limited to `limit` bytes per file; body's result travels back as the
// exit code, so it must lie in 0..255 (callers map library codes into that range).
inline int run_with_file_limit(rlim_t limit, const std::function<int()>& body) {
  const pid_t child = ::fork();
  if (child == -1) return kChildCrashed;
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit r{limit, limit};
    if (::setrlimit(RLIMIT_FSIZE, &r) != 0) ::_exit(254);
    ::_exit(body() & 0xff);
  }
  int status = 0;
  if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return kChildCrashed;
  return WEXITSTATUS(status);
}

}  // namespace tiv::test
