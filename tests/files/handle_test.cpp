// File handles: mode rules, the 16-byte header written and checked, positions and nil handles.
#include <gtest/gtest.h>

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

  h = fio_open(nullptr, "h.bin", FIO_READ | FIO_HEADER);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->byte_order, FIO_ORDER_HOST);
  EXPECT_EQ(fio_tell(h), 16);
  EXPECT_EQ(fio_close(h), 0);
}

struct HeaderCase {
  std::string content;
  int32_t order;
  int32_t position;
};

TEST_F(Handles, HeaderCheckOnReading) {
  const HeaderCase cases[] = {
      {"", FIO_ORDER_NONE, 0},
      {"plain text without marks", FIO_ORDER_NONE, 0},
      {"1.1", FIO_ORDER_HOST, 3},                       // short: judged on what arrived
      {"1.1xxxxxNOTAGHERE", FIO_ORDER_HOST, 16},        // one mark is enough
      {"..@zv...MOTOROLA", FIO_ORDER_MOTOROLA, 16},
      {"..@zv...MOTOROL", FIO_ORDER_HOST, 15},          // short tag
      {std::string("a\0@zv....MOTOROLA", 17), FIO_ORDER_NONE, 0},  // text ends at the zero
  };
  for (const auto& c : cases) {
    write_file("f.bin", c.content);
    fio_handle* h = fio_open(nullptr, "f.bin", FIO_READ | FIO_HEADER);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(h->byte_order, c.order) << c.content;
    EXPECT_EQ(fio_tell(h), c.position) << c.content;
    EXPECT_EQ(fio_close(h), 0);
  }
}

TEST_F(Handles, AppendAndTextNeitherWriteNorCheckAHeader) {
  write_file("a.bin", "..@zv...MOTOROLA");
  fio_handle* h = fio_open(nullptr, "a.bin", FIO_APPEND | FIO_HEADER);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->byte_order, FIO_ORDER_HOST);
  EXPECT_EQ(fio_close(h), 0);
  EXPECT_EQ(read_file("a.bin"), "..@zv...MOTOROLA");

  write_file("r.txt", "no header");
  h = fio_open(nullptr, "r.txt", FIO_READ | FIO_TEXT | FIO_HEADER);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->byte_order, FIO_ORDER_HOST);
  EXPECT_EQ(fio_tell(h), 0);
  EXPECT_EQ(fio_close(h), 0);
}

TEST_F(Handles, NilHandles) {
  EXPECT_EQ(fio_close(nullptr), 0);
  EXPECT_EQ(fio_length(nullptr), -1);
  EXPECT_EQ(fio_seek(nullptr, 0, 0), -1);
  EXPECT_EQ(fio_tell(nullptr), -1);
  EXPECT_EQ(fio_flush(nullptr), -1);
  EXPECT_EQ(fio_filename(nullptr), nullptr);
  EXPECT_EQ(fio_fp(nullptr), nullptr);
}

TEST_F(Handles, SeekOriginsAndLengthKeepThePosition) {
  write_file("s.bin", "0123456789");
  fio_handle* h = fio_open(nullptr, "s.bin", FIO_READ);
  ASSERT_NE(h, nullptr);
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
  EXPECT_EQ(fio_open(nullptr, "missing.bin", FIO_READ), nullptr);
  EXPECT_EQ(fio_open(nullptr, "missing.bin", FIO_READ | FIO_UPDATE), nullptr);
  std::filesystem::create_directory("dir");
  EXPECT_EQ(fio_open(nullptr, "dir", FIO_READ), nullptr);
  EXPECT_EQ(fio_open(nullptr, "dir", FIO_WRITE), nullptr);
  const std::string long_dir(300, 'x');
  EXPECT_EQ(fio_open(long_dir.c_str(), "f", FIO_READ), nullptr);
  EXPECT_EQ(fio_open("no\\such\\dir", "f", FIO_WRITE), nullptr);
}

}  // namespace
}  // namespace tiv::test
