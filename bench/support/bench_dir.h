// A temporary directory for a benchmark program, removed with everything in it at the end.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace tiv::bench {

class BenchDir {
 public:
  // pattern ends in XXXXXX, which mkdtemp fills in. With enter, the directory is the working
  // directory until the end.
  explicit BenchDir(const char* pattern, bool enter = false) {
    std::string name = pattern;
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
    if (enter) {
      std::filesystem::current_path(path_);
      entered_ = true;
    }
  }
  BenchDir(const BenchDir&) = delete;
  BenchDir& operator=(const BenchDir&) = delete;
  ~BenchDir() {
    std::error_code ec;
    if (entered_) std::filesystem::current_path("/", ec);
    std::filesystem::remove_all(path_, ec);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  bool entered_ = false;
};

}  // namespace tiv::bench
