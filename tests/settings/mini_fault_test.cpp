// Allocation failures in every step of an in-memory settings handle: each step is repeated
// with the nth allocation failing, n = 1, 2, ... until it runs clean. Nothing may crash, the
// handle stays closable, and the file never loses an entry.
#include <gtest/gtest.h>

#ifdef TIVLIB_FAULT_INJECTION

#include <string>

#include <tivlib/ini.h>
#include <tivlib/mini.h>
#include <tivlib/zv.h>

#include "fault_sweep.h"
#include "frame/fault.h"
#include "settings_test_util.h"

namespace {

using tiv::test::read_file;
using tiv::test::write_file;

constexpr const char* kSource = "; c\n[s]\na=1\nb=2\n\n[t]\nc=3\n";
constexpr const char* kNormal = "; c\n[s]\na=1\nb=2\n\n[t]\nc=3";
constexpr const char* kUpdated = "; c\n[s]\na=1\nb=2\n\n[t]\nc=3\nd=4";

void silent_box(const char*, const char*, intptr_t) {}

class MiniFaults : public tiv::test::SettingsDir {
 protected:
  MiniFaults() {
    zv_set_message_box_handler(silent_box, 0);
    write_file("a.ini", kSource);
  }
  ~MiniFaults() override {
    tiv::fault::fail_allocation_at(0);
    zv_set_message_box_handler(nullptr, 0);
    zv_clear_quit_request();
  }
  // The file holds the source or its normal form: nothing lost, nothing half written.
  void expect_file_whole() {
    const std::string now = read_file("a.ini");
    EXPECT_TRUE(now == kSource || now == kNormal) << now;
  }
};

TEST_F(MiniFaults, Open) {
  for (long n = 1; n < 100; ++n) {
    mini_file* h = nullptr;
    const bool hit =
        tiv::test::fails_at(n, [&] { h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL); });
    if (h != nullptr) {
      char buf[8];
      int32_t size = 7;
      const int32_t code = mini_read_string(h, "t", "c", buf, &size);
      EXPECT_TRUE(code == INI_OK || code == INI_NO_SECTION) << code;
      EXPECT_EQ(mini_close(&h), 1);
    }
    expect_file_whole();
    if (!hit) break;
  }
}

TEST_F(MiniFaults, ReadLoadsOnFirstUse) {
  for (long n = 1; n < 100; ++n) {
    mini_file* h = mini_open(nullptr, "a.ini", 0);
    ASSERT_NE(h, nullptr);
    char buf[8] = "";
    int32_t size = 7;
    int32_t code = -9;
    const bool hit =
        tiv::test::fails_at(n, [&] { code = mini_read_string(h, "s", "b", buf, &size); });
    // A failure may hit a name that has a fallback; otherwise the section isn't loaded.
    EXPECT_TRUE(code == INI_OK ? std::string(buf) == "2" : hit && code == INI_NO_SECTION)
        << code << " " << buf;
    EXPECT_EQ(mini_close(&h), 1);
    expect_file_whole();
    if (!hit) break;
  }
}

TEST_F(MiniFaults, Change) {
  for (long n = 1; n < 100; ++n) {
    write_file("a.ini", kSource);
    mini_file* h = mini_open(nullptr, "a.ini", 0);
    ASSERT_NE(h, nullptr);
    int32_t code = -9;
    const bool hit = tiv::test::fails_at(n, [&] { code = mini_write_string(h, "s", "a", "9"); });
    EXPECT_TRUE(code == INI_OK || code == INI_ERROR) << code;
    EXPECT_EQ(mini_close(&h), 1);
    if (code == INI_OK) {
      EXPECT_EQ(read_file("a.ini"), "; c\n[s]\na=9\nb=2\n\n[t]\nc=3");
    } else {
      expect_file_whole();
    }
    if (!hit) {
      EXPECT_EQ(code, INI_OK);
      break;
    }
  }
}

TEST_F(MiniFaults, UpdateAndClose) {
  for (long n = 1; n < 100; ++n) {
    write_file("a.ini", kSource);
    mini_file* h = mini_open(nullptr, "a.ini", MINI_LOAD_ALL);
    ASSERT_NE(h, nullptr);
    ASSERT_EQ(mini_write_string(h, "t", "d", "4"), INI_OK);
    int32_t updated = -1;
    const bool hit = tiv::test::fails_at(n, [&] { updated = mini_update_file(h); });
    // A failed update leaves the file as it was; the close writes it all the same.
    EXPECT_EQ(read_file("a.ini"), updated == 1 ? kUpdated : kSource);
    EXPECT_EQ(mini_close(&h), 1);
    EXPECT_EQ(read_file("a.ini"), kUpdated);
    if (!hit) {
      EXPECT_EQ(updated, 1);
      break;
    }
  }
  EXPECT_EQ(temporary_files(), 0);
}

}  // namespace

#endif  // TIVLIB_FAULT_INJECTION
