// Test support: each test that touches files runs in a fresh temporary directory, which is
// also where the library's log zv.err lands.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace tiv::test {

// Makes a fresh directory, enters it for the test and removes it afterwards.
class TempDir {
 public:
  TempDir() {
    char pattern[] = "/tmp/tivlib-test.XXXXXX";
    const char* made = ::mkdtemp(pattern);
    if (made == nullptr) std::abort();
    path_ = made;
    old_ = std::filesystem::current_path();
    std::filesystem::current_path(path_);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::current_path(old_, ec);
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  std::filesystem::path old_;
};

// A fixture whose every test runs in its own temporary directory.
class InTempDir : public ::testing::Test {
 protected:
  TempDir dir_;
};

inline std::string read_file(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

inline void write_file(const std::filesystem::path& p, const std::string& content) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out << content;
}

inline bool file_exists(const std::filesystem::path& p) { return std::filesystem::exists(p); }

}  // namespace tiv::test
