// The writer of a rewritten settings file.
//
// Lines are joined, not terminated: every line goes behind a separation (one line end unless
// nothing has been written yet), so a file that ends with what this writer put out has no
// final line end. The writer counts what it has written (the position the separation looks
// at) and remembers whether any write fell short.
#pragma once

#include <cstdio>
#include <string_view>

namespace tiv::settings {

class Output {
 public:
  explicit Output(std::FILE* stream = nullptr) : stream_(stream) {}

  void attach(std::FILE* stream) { stream_ = stream; }
  std::FILE* stream() const { return stream_; }

  // Writes the text as it stands.
  void write(std::string_view text);
  // One line end if the position is not 0.
  void separate() {
    if (position_ != 0) write("\n");
  }
  // name=value, with no separation of its own.
  void write_pair(std::string_view name, std::string_view value) {
    write(name);
    write("=");
    write(value);
  }
  // "[name]", with no separation of its own.
  void write_bracketed(std::string_view name) {
    write("[");
    write(name);
    write("]");
  }

  long position() const { return position_; }
  bool failed() const { return failed_; }
  void note_failure() { failed_ = true; }

 private:
  std::FILE* stream_;
  long position_ = 0;
  bool failed_ = false;
};

}  // namespace tiv::settings
