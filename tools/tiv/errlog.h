// Watches the library's failure log zv.err in the working directory.
//
// The library empties zv.err at its first report of a process and appends every later report,
// so once the file differs from what it was at the start of the run, all of it is this run's.
// The rule at the end of the run:
//   - a zv.err that the run did not write is left exactly as it was (or absent);
//   - a zv.err that the run created but left empty is removed;
//   - a zv.err that the run wrote is kept, and a note on standard error points to it.
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
  // Remembers the state of `path` (normally the absolute path of ./zv.err) at this moment.
  explicit ErrLog(std::filesystem::path path);

  // True once the file differs from its state at the start: the library has reported.
  bool written() const;

  // The log text written since the previous call (everything this run wrote, at the first).
  std::string take_new();

  // Applies the end-of-run rule above.
  void finish(Context& ctx) const;

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
