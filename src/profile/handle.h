// The record behind a profil_handle and the limits of the catalogue reader.
//
// A handle is a cursor on one open catalogue file. Its memory is fixed at open time: the
// header's column tables and a read window of constant size, whatever the length of the file.
#pragma once

#include <tivlib/fio.h>
#include <tivlib/profil.h>

#include <cstdint>

namespace tiv::profile {

inline constexpr int kFieldMax = PROFIL_FIELD_MAX;     // characters kept of one field
inline constexpr int kQueryMax = PROFIL_QUERY_MAX;     // characters used of a name query
inline constexpr int kPageLines = PROFIL_PAGE_LINES;   // line starts remembered per handle
inline constexpr int kPathMax = FIO_PATH_MAX;          // characters of a composed path
inline constexpr int kDirectoryMax = PROFIL_DIRECTORY_MAX;
inline constexpr int kResultSize = PROFIL_RESULT_SIZE;
inline constexpr int kPartMax = PROFIL_PART_SIZE - 1;  // characters of a kind or size part

// Bytes of the read window. The file is pulled through the window in blocks with
// fio_read_to_buf, so the per-byte work of the reader is an array access, not a call.
inline constexpr int32_t kWindowSize = 64 * 1024;

// Bytes behind the window that a 16-byte copy may touch.
inline constexpr int32_t kWindowSlack = 16;

// The part of the file that the reader holds in memory. bytes[0] is the file's byte at
// `origin`; the next byte to deliver is bytes[next]; bytes[filled..] are not valid. The
// stream of the fio handle always stands at origin + filled.
struct Window {
  int32_t origin = 0;
  int32_t next = 0;
  int32_t filled = 0;
  unsigned char bytes[kWindowSize + kWindowSlack];
};

}  // namespace tiv::profile

// The handle's copy of one search condition. column -1: the condition never applies.
struct profil_condition {
  int32_t column;
  int32_t op;     // PROFIL_OP_ code
  double value;
};

// The cursor on an open catalogue file. Positions are 32-bit byte offsets, as fio_seek takes
// them, so a catalogue file may hold up to 2 GiB.
//
// Invariants: line is 0..15 between operations; line_offsets[0] is the start of the current
// page of 16 lines (counted from data_start, blank lines not counted) and entry k is the start
// of line k of that page, or -1 where not yet known. current is the last character read as a
// signed byte (so a byte 255 reads as -1, the end of the file), or -1 at the end of the file.
// The column arrays have column_count entries; column_names holds column_count names, each
// ended by a zero byte, and one more zero byte.
struct profil_handle {
  fio_handle* file;
  char* path;
  int32_t data_start;
  int32_t page;
  int32_t line;
  int32_t line_offsets[tiv::profile::kPageLines];
  int32_t item_count;
  int32_t column_count;
  char* column_names;
  int32_t* column_item;
  double* column_factor;
  unsigned char* column_searched;
  int32_t term_count;
  profil_condition* terms;
  int32_t current;
  tiv::profile::Window window;
};
