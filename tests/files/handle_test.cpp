// File handles: mode rules, the 16-byte header written and checked, positions and nil handles.
#include <gtest/gtest.h>

#include <tuple>

#include <tivlib/fio.h>

#include "files/handle.h"
#include "files_test_util.h"

namespace tiv::test {
namespace {

using Handles = InTempDir;

const std::string kHeader = "1.1  @zv" "INTEL   ";

TEST_F(Handles, ExactlyOneOfReadWriteAppend) {
  for (int32_t mode : {0, 3, 5, 6, 7, FIO_HEADER, FIO_TEXT | FIO_UPDATE}) {
    EXPECT_EQ(fio_open(nullptr, "m.bin", mode), nullptr) << mode;
    EXPECT_FALSE(file_exists("m.bin")) << mode;
  }
}

TEST_F(Handles, WriteWithHeaderLeavesSixteenBytes) {
  fio_handle* h = fio_open(nullptr, "H.BIN", FIO_WRITE | FIO_HEADER);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(fio_tell(h), 16);
  EXPECT_EQ(fio_length(h), 16);
  EXPECT_EQ(h->byte_order, FIO_ORDER_HOST);
  EXPECT_EQ(h->mode, FIO_WRITE | FIO_HEADER);
  EXPECT_STREQ(fio_filename(h), "h.bin");
  EXPECT_EQ(fio_close(h), 0);
  EXPECT_EQ(read_file("h.bin"), kHeader);
}

// Content, extra open mode, the byte order found and the position after the open.
using HeaderCase = std::tuple<std::string, int32_t, int32_t, int32_t>;

TEST_F(Handles, HeaderCheckOnReading) {
  const HeaderCase cases[] = {
      {kHeader, 0, FIO_ORDER_HOST, 16},
      {"", 0, FIO_ORDER_NONE, 0},
      {"plain text without marks", 0, FIO_ORDER_NONE, 0},
      {"1.1", 0, FIO_ORDER_HOST, 3},                       // short: judged on what arrived
      {"1.1xxxxxNOTAGHERE", 0, FIO_ORDER_HOST, 16},        // one mark is enough
      {"..@zv...MOTOROLA", 0, FIO_ORDER_MOTOROLA, 16},
      {"..@zv...MOTOROL", 0, FIO_ORDER_HOST, 15},          // short tag
      {std::string("a\0@zv....MOTOROLA", 17), 0, FIO_ORDER_NONE, 0},  // text ends at the zero
      {"no header", FIO_TEXT, FIO_ORDER_HOST, 0},          // text handles check no header
  };
  for (const auto& [content, mode, order, position] : cases) {
    write_file("f.bin", content);
    fio_handle* h = fio_open(nullptr, "f.bin", FIO_READ | FIO_HEADER | mode);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(h->byte_order, order) << content;
    EXPECT_EQ(fio_tell(h), position) << content;
    EXPECT_EQ(fio_close(h), 0);
  }
}

TEST_F(Handles, AppendNeitherWritesNorChecksAHeader) {
  write_file("a.bin", "..@zv...MOTOROLA");
  fio_handle* h = fio_open(nullptr, "a.bin", FIO_APPEND | FIO_HEADER);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->byte_order, FIO_ORDER_HOST);
  EXPECT_EQ(fio_close(h), 0);
  EXPECT_EQ(read_file("a.bin"), "..@zv...MOTOROLA");
}

TEST_F(Handles, SeekOriginsAndLengthKeepThePosition) {
  write_file("s.bin", "0123456789");
  fio_handle* h = fio_open(nullptr, "s.bin", FIO_READ);
  EXPECT_EQ(fio_seek(h, 4, 0), 0);
  EXPECT_EQ(fio_length(h), 10);
  EXPECT_EQ(fio_tell(h), 4);
  EXPECT_EQ(fio_seek(h, 2, 1), 0);
  EXPECT_EQ(fio_tell(h), 6);
  EXPECT_EQ(fio_seek(h, -3, 2), 0);
  EXPECT_EQ(fio_tell(h), 7);
  EXPECT_EQ(fio_seek(h, -1, 7), 0);  // an unknown origin counts from the end
  EXPECT_EQ(fio_seek(h, -20, 0), -1);
  EXPECT_EQ(fio_getchar(h, nullptr), '9');
  EXPECT_EQ(fio_flush(h), 0);
  EXPECT_EQ(fio_close(h), 0);
}

TEST_F(Handles, MissingFilesDirectoriesAndLongPathsGiveNil) {
  std::filesystem::create_directory("dir");
  const std::string long_dir(300, 'x');
  for (const auto& [dir, name, mode] : {std::tuple{"", "missing.bin", FIO_READ},
           {"", "missing.bin", FIO_READ | FIO_UPDATE}, {"", "dir", FIO_READ}, {"", "dir", FIO_WRITE},
           {long_dir.c_str(), "f", FIO_READ}, {"no\\such\\dir", "f", FIO_WRITE}})
    EXPECT_EQ(fio_open(dir, name, mode), nullptr) << dir << "\\" << name << " " << mode;
}

}  // namespace
}  // namespace tiv::test
