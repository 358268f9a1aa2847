// Watches the library's failure log, which the tool points into the run's private directory.
//
// The library empties the log at its first report of a process and appends every later report,
// so once the file differs from what it was at the start of the run, all of it is this run's.
// At the end of a run that failed, what the library reported is shown on standard error.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "context.h"

namespace tiv::cli {

class ErrLog {
 public:
  // Remembers the state of `path` at this moment.
  explicit ErrLog(std::filesystem::path path);

  // True once the file differs from its state at the start: the library has reported.
  bool written() const;

  // The log text written since the previous call (everything this run wrote, at the first).
  std::string take_new();

  // Shows the log on ctx.err when the run ended with a failure (exit_code not 0) and the library
  // reported something.
  void finish(Context& ctx, int exit_code) const;

  const std::filesystem::path& path() const { return path_; }

 private:
  struct State {
    bool exists = false;
    std::uintmax_t size = 0;
    std::int64_t mtime_ns = 0;
    std::uintmax_t inode = 0;
    bool operator==(const State&) const = default;
  };
  static State probe(const std::filesystem::path& path);

  std::filesystem::path path_;
  State start_;
  std::uintmax_t consumed_ = 0;  // bytes of this run's log already handed out
};

// The texts of the report records in a piece of log: the "  text!" lines, without their two
// leading blanks and the exclamation mark. Traceback lines are left out.
std::vector<std::string> log_texts(std::string_view log);

}  // namespace tiv::cli
