// Helpers of the frame tests: the log's content and a recorder for message boxes.
#pragma once

#include <tivlib/zv.h>

#include <string>
#include <vector>

#include "test_dir.h"

namespace tiv::test {

inline std::string log_text() { return read_file("zv.err"); }

// Records every message box while it lives and restores the default afterwards.
class BoxRecorder {
 public:
  struct Box {
    std::string caption;
    std::string text;
  };
  BoxRecorder() { zv_set_message_box_handler(&BoxRecorder::record, reinterpret_cast<intptr_t>(this)); }
  ~BoxRecorder() { zv_set_message_box_handler(nullptr, 0); }
  BoxRecorder(const BoxRecorder&) = delete;
  BoxRecorder& operator=(const BoxRecorder&) = delete;
  const std::vector<Box>& boxes() const { return boxes_; }

 private:
  static void record(const char* caption, const char* text, intptr_t user) {
    reinterpret_cast<BoxRecorder*>(user)->boxes_.push_back({caption, text});
  }
  std::vector<Box> boxes_;
};

// Runs body in a freshly started copy of the test program (no report and no trace call has
// happened there yet); the test passes when body gives true.
#define TIV_IN_FRESH_PROCESS(body)                                          \
  do {                                                                      \
    GTEST_FLAG_SET(death_test_style, "threadsafe");                         \
    EXPECT_EXIT(std::exit((body)() ? 0 : 1), ::testing::ExitedWithCode(0), ""); \
  } while (0)

}  // namespace tiv::test
