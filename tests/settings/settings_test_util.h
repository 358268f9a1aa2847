// Helpers of the settings tests: files in the test's own directory, the log with its line
// numbers blanked out, and a temporary directory for the rewrite's temporary files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <regex>
#include <string>

#include "scoped_env.h"
#include "test_dir.h"

namespace tiv::test {

// The log zv.err of the current directory, with every "line <number>" shown as "line N".
inline std::string log_text() {
  if (!file_exists("zv.err")) return {};
  return std::regex_replace(read_file("zv.err"), std::regex("line [0-9]+:"), "line N:");
}

// One zv_error record of the given source and texts, with an empty trace.
inline std::string error_record(const std::string& source, const std::string& text1,
                                const std::string& text2 = {}) {
  std::string r = ">ERROR   in \"" + source + "\" line N:\n  " + text1 + "!\n";
  if (!text2.empty()) r += "  " + text2 + "!\n";
  return r + "\n\n\n\n";
}

inline const std::string kMalformedRecord =
    error_record("Ini", "Incorrect entry's format. '=' is not found.");

// A test directory whose temporary files (of fio_tmpnam) go to its subdirectory "tmp", so a
// test can see which of them stay.
class SettingsDir : public InTempDir {
 protected:
  SettingsDir() : tmpdir_((dir_.path() / "tmp").string()) {
    std::filesystem::create_directory(tmpdir_);
    env_ = std::make_unique<ScopedEnv>("TMPDIR", tmpdir_.c_str());
  }
  // Number of files left in the temporary directory.
  int temporary_files() const {
    int n = 0;
    for (const auto& e : std::filesystem::directory_iterator(tmpdir_)) {
      (void)e;
      ++n;
    }
    return n;
  }
  // The content of the one file left in the temporary directory.
  std::string temporary_content() const {
    for (const auto& e : std::filesystem::directory_iterator(tmpdir_)) return read_file(e.path());
    return {};
  }

  std::string tmpdir_;
  std::unique_ptr<ScopedEnv> env_;
};

}  // namespace tiv::test
