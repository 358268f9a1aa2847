// What every subcommand of tiv shares: the exit codes, the failure it throws, and the streams
// it writes to. Results go to `out`, messages to `err`, always as "tiv: FILE:LINE: message".
#pragma once

#include <algorithm>
#include <iosfwd>
#include <string>
#include <utility>

namespace tiv::cli {

// Exit codes of the tool. A larger code is the more serious one, so a command that goes on
// after a failure (several files, several expressions) ends with the largest code it met.
enum Exit : int {
  kDone = 0,       // done
  kNotFound = 1,   // what was asked for is not there
  kUsage = 2,      // the command line is wrong
  kBadFormat = 3,  // a file or a value does not have the expected form
  kIo = 4,         // a file could not be read or written
};

// A failure of a command. `file` and `line` say where the problem lies when that is known
// (line 0: no line; empty file: no file).
struct Failure {
  int code = kUsage;
  std::string message;
  std::string file;
  int line = 0;
};

// Throws a Failure; the command line driver prints it and exits with its code.
[[noreturn]] void fail(int code, std::string message, std::string file = {}, int line = 0);

// The streams of one run of the tool and the worst outcome so far of commands that report a
// failure and go on.
struct Context {
  std::ostream& out;
  std::ostream& err;
  int exit_code = kDone;

  // Prints "tiv: FILE:LINE: message" (parts that are unknown are left out) to `err`.
  void report(const Failure& failure);
  // Prints the failure and remembers its code for the end of the run.
  void report_and_go_on(const Failure& failure) {
    report(failure);
    note_code(failure.code);
  }
  void note_code(int code) { exit_code = std::max(exit_code, code); }
};

}  // namespace tiv::cli
