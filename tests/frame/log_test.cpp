// The records of zv.err, byte for byte, and the trace stack shown under them.
#include <tivlib/version.h>
#include <tivlib/zv.h>

#include <sys/stat.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "frame_test_util.h"

namespace tiv::test {
namespace {

using Log = InTempDir;

TEST_F(Log, RecordsAppendWithinOneProcess) {
  zv_message("a", "b", "c", "Ini", 1);
  zv_switch_error(-7, "Env_core", 2);
  zv_message(nullptr, "only second", nullptr, "Fio", 3);
  EXPECT_EQ(log_text(),
            "> MESSAGE in \"Ini\" line 1:\n  a!\n  b!\n  c!\n\n\n"
            "SWITCH ERROR in \"Env_core\" line 2:\n  switch value = -7!\n\n\n\n"
            "> MESSAGE in \"Fio\" line 3:\n  only second!\n\n\n");
}

TEST_F(Log, TracebackShowsFramesTopFirstWithRepeatCounts) {
  for (int i = 0; i < 3; ++i) zv_begin("f");
  zv_begin("g");
  zv_message("no trace here", nullptr, nullptr, "S", 1);
  zv_error("x", nullptr, nullptr, "S", 2);
  zv_switch_error(5, "S", 3);
  for (int i = 0; i < 4; ++i) zv_end();
  zv_error("after", nullptr, nullptr, "S", 4);  // the stack is empty again
  const std::string trace =
      "  traceback:\n  - g called from ...\n  - 3 * f called from ...\n\n  - main.\n\n\n";
  EXPECT_EQ(log_text(), "> MESSAGE in \"S\" line 1:\n  no trace here!\n\n\n"
                        ">ERROR   in \"S\" line 2:\n  x!\n\n\n" + trace +
                        "SWITCH ERROR in \"S\" line 3:\n  switch value = 5!\n\n" + trace +
                        ">ERROR   in \"S\" line 4:\n  after!\n\n\n\n\n");
}

TEST_F(Log, OnlyTheTopFrameIsComparedAndLongNamesAreCut) {
  zv_begin("f");
  zv_begin("g");
  zv_begin("f");
  const std::string long_name(100, 'n');
  zv_begin(long_name.c_str());
  zv_begin((long_name + "other tail").c_str());  // same first 79 characters: a repeat
  zv_error(nullptr, nullptr, nullptr, "S", 1);
  for (int i = 0; i < 5; ++i) zv_end();
  EXPECT_EQ(log_text(), ">ERROR   in \"S\" line 1:\n\n\n  traceback:\n  - 2 * " +
                            std::string(79, 'n') +
                            " called from ...\n\n  - f called from ...\n  - g called from ...\n"
                            "  - f called from ...\n  - main.\n\n\n");
}

TEST_F(Log, EndWithoutBeginShowsBoxAndWritesBracketLinesEachTime) {
  BoxRecorder boxes;
  zv_end();
  zv_end();
  ASSERT_EQ(boxes.boxes().size(), 2u);
  EXPECT_EQ(boxes.boxes()[0].caption, "MISSMATCH WITH BEGIN-END-BRACKET:\n");
  EXPECT_EQ(boxes.boxes()[0].text, "  END without BEGIN!\n\n");
  EXPECT_EQ(log_text(), "> MISSMATCH WITH BEGIN-END-BRACKET:\n  END without BEGIN!\n\n"
                        "> MISSMATCH WITH BEGIN-END-BRACKET:\n  END without BEGIN!\n\n");
  zv_begin("h");  // the trace is still on
  zv_error(nullptr, nullptr, nullptr, "S", 9);
  zv_end();
  EXPECT_NE(log_text().find("  - h called from ...\n  - main.\n"), std::string::npos);
}

TEST_F(Log, ExitShowsBoxWritesRecordPostsQuitAndReturns) {
  BoxRecorder boxes;
  zv_clear_quit_request();
  zv_begin("main_loop");
  zv_exit("Fatal: ", "no memory", nullptr, "Heap", 77);
  zv_end();
  EXPECT_EQ(zv_quit_requested(), 1);
  zv_clear_quit_request();
  EXPECT_EQ(zv_quit_requested(), 0);
  ASSERT_EQ(boxes.boxes().size(), 1u);
  EXPECT_EQ(boxes.boxes()[0].caption, "EXIT :");
  EXPECT_EQ(boxes.boxes()[0].text, "Fatal: no memory");
  EXPECT_EQ(log_text(),
            "> EXIT    in \"Heap\" line 77:\n  Fatal: !\n  no memory!\n\n\n"
            "  traceback:\n  - main_loop called from ...\n  - main.\n\n\n");
}

TEST_F(Log, ExitWithNilTextsAndBoxTextCutAt255) {
  BoxRecorder boxes;
  zv_exit(nullptr, nullptr, nullptr, "S", 1);
  const std::string a(200, 'a'), b(100, 'b');
  zv_exit(a.c_str(), nullptr, b.c_str(), "S", 2);
  zv_clear_quit_request();
  ASSERT_EQ(boxes.boxes().size(), 2u);
  EXPECT_EQ(boxes.boxes()[0].text, "");
  EXPECT_EQ(boxes.boxes()[1].text, a + std::string(55, 'b'));
  EXPECT_EQ(log_text(), "> EXIT    in \"S\" line 1:\n\n\n\n\n"
                        "> EXIT    in \"S\" line 2:\n  " + a + "!\n  " + b + "!\n\n\n\n\n");
}

TEST_F(Log, ReportWithoutUsableDirectoryReturnsQuietly) {
  std::filesystem::create_directory("gone");
  std::filesystem::current_path("gone");
  std::filesystem::remove(std::filesystem::current_path());
  zv_error("lost", nullptr, nullptr, "S", 1);
  zv_message("lost", nullptr, nullptr, "S", 2);
  zv_switch_error(1, "S", 3);
  std::filesystem::current_path(dir_.path());
  zv_message("kept", nullptr, nullptr, "S", 4);
  EXPECT_EQ(log_text(), "> MESSAGE in \"S\" line 4:\n  kept!\n\n\n");
}

TEST_F(Log, DefaultBoxIsOneTrimmedLineOnStandardError) {
  testing::internal::CaptureStderr();
  zv_end();
  zv_exit("line one\nline two", nullptr, nullptr, "S", 1);
  zv_clear_quit_request();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "MISSMATCH WITH BEGIN-END-BRACKET: END without BEGIN!\nEXIT : line one line two\n");
}

TEST_F(Log, BeepsGoToTheHostHandlerWithItsWordAndDelaysReturnAtOnce) {
  std::vector<intptr_t> heard;
  const auto word = reinterpret_cast<intptr_t>(&heard);
  zv_set_beep_handler(
      [](intptr_t user) { reinterpret_cast<std::vector<intptr_t>*>(user)->push_back(user); }, word);
  zv_beep();
  zv_tone();
  zv_wait();
  zv_pause();
  EXPECT_EQ(heard, (std::vector<intptr_t>{word, word}));
  zv_set_beep_handler(nullptr, 0);
  zv_beep();
  EXPECT_EQ(heard.size(), 2u);
  EXPECT_FALSE(file_exists("zv.err"));  // neither a beep nor a delay is a report
}

// These need a process in its start state: no report yet, trace on.
TEST_F(Log, FirstReportOfAProcessEmptiesAnOlderLog) {
  TIV_IN_FRESH_PROCESS([] {
    write_file("zv.err", "old run\n");
    zv_message("new", nullptr, nullptr, "S", 1);
    zv_message("more", nullptr, nullptr, "S", 2);
    const std::string got = log_text();
    std::cerr << got;
    return got == "> MESSAGE in \"S\" line 1:\n  new!\n\n\n> MESSAGE in \"S\" line 2:\n  more!\n\n\n";
  });
}

TEST_F(Log, TwentyFramesFitTheTwentyFirstTurnsTheTraceOff) {
  TIV_IN_FRESH_PROCESS([] {
    BoxRecorder boxes;
    for (int i = 0; i < 20; ++i) zv_begin(("r" + std::to_string(i)).c_str());
    zv_begin("r19");  // a repeat of the top: no overflow
    zv_begin("r20");
    zv_end();  // the trace is off: nothing happens
    zv_begin("x");
    zv_error("after", nullptr, nullptr, "S", 1);
    for (int i = 0; i < 30; ++i) zv_end();  // off: no box, no bracket record
    const std::string got = log_text();
    std::cerr << got;
    return boxes.boxes().empty() &&
           got == ">ERROR   in \"Zv\" line " + got.substr(22, got.find(':') - 22) +
                      ":\n  zv_begin: runtime stack overflow!\n\n\n\n\n"
                      ">ERROR   in \"S\" line 1:\n  after!\n\n\n\n\n";
  });
}

TEST_F(Log, HostChoosesThePlaceOrSwitchesItOff) {
  zv_message("before", nullptr, nullptr, "S", 1);
  write_file("elsewhere.log", "old\n");
  ASSERT_EQ(zv_set_log_file("elsewhere.log"), 0);
  zv_message("one", nullptr, nullptr, "S", 2);  // the first record there empties it
  zv_message("two", nullptr, nullptr, "S", 3);
  ASSERT_EQ(zv_set_log_file(nullptr), 0);
  zv_message("dropped", nullptr, nullptr, "S", 4);
  EXPECT_EQ(zv_set_log_file(std::string(ZV_LOG_PATH_MAX + 1, 'x').c_str()), -1);
  zv_message("still dropped", nullptr, nullptr, "S", 5);
  ASSERT_EQ(zv_set_log_file("elsewhere.log"), 0);  // the same place again: appended to
  zv_message("three", nullptr, nullptr, "S", 7);
  ASSERT_EQ(zv_set_log_file(""), 0);
  zv_message("back", nullptr, nullptr, "S", 6);
  EXPECT_EQ(read_file("elsewhere.log"),
            "> MESSAGE in \"S\" line 2:\n  one!\n\n\n> MESSAGE in \"S\" line 3:\n  two!\n\n\n"
            "> MESSAGE in \"S\" line 7:\n  three!\n\n\n");
  EXPECT_EQ(log_text(), "> MESSAGE in \"S\" line 1:\n  before!\n\n\n"
                        "> MESSAGE in \"S\" line 6:\n  back!\n\n\n");
}

// What is no regular file at the log's place gets the record on standard error: a FIFO that
// nobody reads must not block, a directory must not fail silently. The user's own link is
// followed.
TEST_F(Log, ThePlaceIsOpenedSafely) {
  ASSERT_EQ(::mkfifo("fifo.err", 0600), 0);
  std::filesystem::create_directory("dir.err");
  write_file("target.err", "");
  std::filesystem::create_symlink("target.err", "link.err");
  for (const char* place : {"fifo.err", "dir.err"}) {
    ASSERT_EQ(zv_set_log_file(place), 0);
    testing::internal::CaptureStderr();
    zv_message("to stderr", nullptr, nullptr, "S", 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "> MESSAGE in \"S\" line 1:\n  to stderr!\n\n\n") << place;
  }
  ASSERT_EQ(zv_set_log_file("link.err"), 0);
  zv_message("through the link", nullptr, nullptr, "S", 2);
  EXPECT_EQ(read_file("target.err"), "> MESSAGE in \"S\" line 2:\n  through the link!\n\n\n");
  EXPECT_TRUE(std::filesystem::is_symlink("link.err"));
  zv_set_log_file("");
}

TEST(Version, TheLibraryAndItsHeadersTellTheSameVersion) {
  const std::string numbers = std::to_string(TIVLIB_VERSION_MAJOR) + "." +
                              std::to_string(TIVLIB_VERSION_MINOR) + "." +
                              std::to_string(TIVLIB_VERSION_PATCH);
  EXPECT_EQ(numbers, TIVLIB_VERSION_TEXT);
  EXPECT_STREQ(tivlib_version(), TIVLIB_VERSION_TEXT);
}

}  // namespace
}  // namespace tiv::test
