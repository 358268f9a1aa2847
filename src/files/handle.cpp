// File handles: fio_open with its mode rules and the binary header, and positioning.
#include "files/handle.h"

#include <climits>
#include <cstring>

#include <tivlib/heap.h>
#include <tivlib/str.h>

#include "files/path_text.h"
#include "platform/files.h"

namespace tiv::files {
namespace {

static_assert(sizeof kSignature - 1 == 10 && sizeof kIntelTag - 1 == kHeaderField &&
              sizeof kMotorolaTag - 1 == kHeaderField);
static_assert(2 * kHeaderField == FIO_HEADER_SIZE);

// The stream mode text: first letter, "+" for update, "t" or "b" last. Assumes exactly one
// of read, write, append.
void stream_mode(int32_t mode, char (&out)[4]) {
  std::size_t n = 0;
  out[n++] = (mode & FIO_READ) ? 'r' : (mode & FIO_WRITE) ? 'w' : 'a';
  if (mode & FIO_UPDATE) out[n++] = '+';
  out[n++] = (mode & FIO_TEXT) ? 't' : 'b';
  out[n] = '\0';
}

// The header check of a file opened for reading: a signature field holding "@zv" or "1.1"
// (read as text up to a zero byte) marks a header; then the tag decides the byte order.
void check_header(fio_handle& h) {
  char field[kHeaderField + 1] = {};
  const std::size_t got = std::fread(field, 1, kHeaderField, h.stream);
  field[got] = '\0';
  if (std::strstr(field, "@zv") == nullptr && std::strstr(field, "1.1") == nullptr) {
    std::clearerr(h.stream);
    std::fseek(h.stream, 0, SEEK_SET);
    h.byte_order = FIO_ORDER_NONE;
    return;
  }
  char tag[kHeaderField] = {};
  if (std::fread(tag, 1, kHeaderField, h.stream) == kHeaderField &&
      std::memcmp(tag, kMotorolaTag, kHeaderField) == 0)
    h.byte_order = FIO_ORDER_MOTOROLA;
}

}  // namespace

}  // namespace tiv::files

using namespace tiv::files;

extern "C" fio_handle* fio_open(const char* dir, const char* name, int32_t mode) noexcept {
  const int kinds = ((mode & FIO_READ) != 0) + ((mode & FIO_WRITE) != 0) + ((mode & FIO_APPEND) != 0);
  if (kinds != 1) return nullptr;
  char path[FIO_PATH_BUFFER];
  fio_makepath(path, "", dir, name);
  char stream_text[4];
  stream_mode(mode, stream_text);
  std::FILE* stream = tiv::platform::open_file(path, stream_text);
  if (stream == nullptr) return nullptr;
  auto* h = static_cast<fio_handle*>(heap_malloc(sizeof(fio_handle)));
  if (h == nullptr) {
    std::fclose(stream);
    return nullptr;
  }
  h->stream = stream;
  h->byte_order = FIO_ORDER_HOST;
  h->mode = mode;
  h->filename = str_alloc(path);
  if (h->filename == nullptr) h->filename = const_cast<char*>(kUnknownName);
  if (!(mode & FIO_HEADER) || (mode & FIO_TEXT) || (mode & FIO_APPEND)) return h;
  if (mode & FIO_WRITE) {
    // Write results are not looked at: a header that cannot be written is no failure.
    std::fwrite(kSignature, 1, kHeaderField, stream);
    std::fwrite(kIntelTag, 1, kHeaderField, stream);
    return h;
  }
  check_header(*h);
  return h;
}

extern "C" int32_t fio_close(fio_handle* handle) noexcept {
  if (handle == nullptr) return 0;
  const int rc = std::fclose(handle->stream);
  if (handle->filename != kUnknownName) heap_free(handle->filename);
  heap_free(handle);
  return rc == 0 ? 0 : -1;
}

extern "C" int32_t fio_length(fio_handle* handle) noexcept {
  if (handle == nullptr) return -1;
  const long here = std::ftell(handle->stream);
  if (here < 0 || std::fseek(handle->stream, 0, SEEK_END) != 0) return -1;
  const long end = std::ftell(handle->stream);
  std::fseek(handle->stream, here, SEEK_SET);
  if (end < 0 || end > INT32_MAX) return -1;
  return static_cast<int32_t>(end);
}

// The stream is a plain stdio stream; a host may read and write it directly, and must not
// close it (fio_close does).
extern "C" FILE* fio_fp(fio_handle* handle) noexcept {
  return handle ? handle->stream : nullptr;
}

extern "C" const char* fio_filename(fio_handle* handle) noexcept {
  return handle ? handle->filename : nullptr;
}

extern "C" int32_t fio_seek(fio_handle* handle, int32_t offset, int32_t origin) noexcept {
  if (handle == nullptr) return -1;
  const int whence = origin == 0 ? SEEK_SET : origin == 1 ? SEEK_CUR : SEEK_END;
  return std::fseek(handle->stream, offset, whence) == 0 ? 0 : -1;
}

extern "C" int32_t fio_tell(fio_handle* handle) noexcept {
  if (handle == nullptr) return -1;
  const long here = std::ftell(handle->stream);
  if (here < 0 || here > INT32_MAX) return -1;
  return static_cast<int32_t>(here);
}

extern "C" int32_t fio_flush(fio_handle* handle) noexcept {
  if (handle == nullptr) return -1;
  return std::fflush(handle->stream) == 0 ? 0 : -1;
}
