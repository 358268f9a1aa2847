// The record behind a fio_handle.
//
// A handle returned by fio_open always has an open stream. byte_order and mode never change
// after fio_open. filename is a heap copy of the opened path or the shared constant
// kUnknownName (when the copy could not be made), which is never freed.
#pragma once

#include <cstdint>
#include <cstdio>

#include <tivlib/fio.h>

#include "platform/files.h"

struct fio_handle {
  std::FILE* stream;
  int32_t byte_order;  // FIO_ORDER_HOST, FIO_ORDER_MOTOROLA or FIO_ORDER_NONE
  int32_t mode;        // the flags exactly as passed to fio_open
  char* filename;
};

namespace tiv::files {

inline constexpr const char* kUnknownName = "????";
inline constexpr const char* kSource = "Fio";  // source name of this family's reports

// The signature and tags of the binary header (8 characters each, no terminator on disk).
inline constexpr char kSignature[] = "1.1  @zv  ";  // only the first 8 characters are written
inline constexpr char kIntelTag[] = "INTEL   ";
inline constexpr char kMotorolaTag[] = "MOTOROLA";
inline constexpr std::size_t kHeaderField = 8;

// Reads one byte of the handle; on a text stream CR LF arrives as LF. Inline: it is the
// inner loop of fio_getchar and the line reads.
inline int read_char(fio_handle* handle) noexcept {
  if (handle->mode & FIO_TEXT) return platform::get_text_char(handle->stream);
  return getc_unlocked(handle->stream);
}

}  // namespace tiv::files
