// Typed binary I/O on a handle: numbers in raw memory form, characters and strings.
//
// Double and long form one pair, float and short another: a text handle refuses doubles and
// longs silently but passes floats and shorts; a foreign or missing header (byte_order other
// than 0) refuses floats and shorts with a report, while doubles and longs are read (swapped
// for "MOTOROLA") and written in host order. Every item is read or written whole.
#include <algorithm>
#include <bit>
#include <cstring>

#include <tivlib/zv.h>

#include "files/handle.h"

static_assert(std::endian::native == std::endian::little,
              "the file format and its byte-order header assume a little-endian host");
static_assert(sizeof(double) == 8 && sizeof(float) == 4);

namespace tiv::files {
namespace {

constexpr const char* kForeignOrder = "HPUX/AIX - not yet implemented";

template <typename T>
int32_t put_item(fio_handle* h, const T& value) {
  return fwrite_unlocked(&value, sizeof value, 1, h->stream) == 1 ? 0 : -1;
}

// Reads one item; with `swap` its bytes are stored in reverse order (big-endian to host).
template <typename T>
int32_t get_item(fio_handle* h, T* out, bool swap) {
  unsigned char bytes[sizeof(T)];
  if (fread_unlocked(bytes, sizeof bytes, 1, h->stream) != 1) return -1;
  if (swap) std::reverse(bytes, bytes + sizeof bytes);
  std::memcpy(out, bytes, sizeof bytes);
  return 0;
}

// double and long: refused on text handles; written in host order whatever the header
// says, except that an append handle with a foreign order is refused with a report.
template <typename T>
int32_t put_wide(fio_handle* h, T value, const char* append_text, int line) {
  if (h == nullptr || (h->mode & FIO_TEXT)) return -1;
  if (h->byte_order != FIO_ORDER_HOST && (h->mode & FIO_APPEND)) {
    zv_error(append_text, nullptr, nullptr, kSource, line);
    return -1;
  }
  return put_item(h, value);
}

template <typename T>
int32_t get_wide(fio_handle* h, T* out) {
  if (h == nullptr || out == nullptr || (h->mode & FIO_TEXT)) return -1;
  return get_item(h, out, h->byte_order == FIO_ORDER_MOTOROLA);
}

// float and short: the text flag is not looked at; any foreign or missing order is refused.
template <typename T>
int32_t put_narrow(fio_handle* h, T value, int line) {
  if (h == nullptr) return -1;
  if (h->byte_order != FIO_ORDER_HOST) {
    zv_error(kForeignOrder, nullptr, nullptr, kSource, line);
    return -1;
  }
  return put_item(h, value);
}

template <typename T>
int32_t get_narrow(fio_handle* h, T* out, int line) {
  if (h == nullptr || out == nullptr) return -1;
  if (h->byte_order != FIO_ORDER_HOST) {
    zv_error(kForeignOrder, nullptr, nullptr, kSource, line);
    return -1;
  }
  return get_item(h, out, false);
}

// The shared loop of fio_getstring and fio_getstringdel: stops at the end of the file, a
// zero byte or LF (consumed, not stored), after maxlen characters, or behind a delimiter
// (stored). Gives -1 only when the end of the file comes first.
int32_t get_line(fio_handle* h, int32_t maxlen, const char* delimiters, char* buffer) {
  int32_t n = 0;
  for (;;) {
    const int c = read_char(h);
    if (c == EOF && n == 0) {
      buffer[0] = '\0';
      return -1;
    }
    if (c == EOF || c == '\0' || c == '\n') break;
    buffer[n++] = static_cast<char>(c);
    if (n >= maxlen) break;
    if (delimiters != nullptr && std::strchr(delimiters, c) != nullptr) break;
  }
  buffer[n] = '\0';
  return 0;
}

}  // namespace
}  // namespace tiv::files

using namespace tiv::files;

extern "C" int32_t fio_putdouble(fio_handle* h, double value) noexcept {
  return put_wide(h, value, "fio_putdouble: not yet implemented in append-mode", __LINE__);
}

extern "C" int32_t fio_putlong(fio_handle* h, int32_t value) noexcept {
  return put_wide(h, value, "fio_putlong: not yet implemented in append-mode", __LINE__);
}

extern "C" int32_t fio_putfloat(fio_handle* h, float value) noexcept {
  return put_narrow(h, value, __LINE__);
}

extern "C" int32_t fio_putshort(fio_handle* h, int16_t value) noexcept {
  return put_narrow(h, value, __LINE__);
}

extern "C" int32_t fio_getdouble(fio_handle* h, double* out) noexcept { return get_wide(h, out); }

extern "C" int32_t fio_getlong(fio_handle* h, int32_t* out) noexcept { return get_wide(h, out); }

extern "C" int32_t fio_getfloat(fio_handle* h, float* out) noexcept {
  return get_narrow(h, out, __LINE__);
}

extern "C" int32_t fio_getshort(fio_handle* h, int16_t* out) noexcept {
  return get_narrow(h, out, __LINE__);
}

extern "C" int32_t fio_putchar(fio_handle* h, char c) noexcept {
  if (h == nullptr) return -1;
  return putc_unlocked(static_cast<unsigned char>(c), h->stream) == EOF ? -1 : 0;
}

// Writes text into a field of `width` characters: cut at the width, padded with blanks.
// Width 0 means the text's length; a negative width writes the whole text, unpadded.
extern "C" int32_t fio_putstring(fio_handle* h, const char* text, int32_t width) noexcept {
  if (h == nullptr) return -1;
  if (text == nullptr) text = "";
  const std::size_t length = std::strlen(text);
  const bool bounded = width >= 0;
  const std::size_t field = width > 0 ? static_cast<std::size_t>(width) : length;
  const std::size_t count = bounded ? std::min(length, field) : length;
  const std::size_t written = fwrite_unlocked(text, 1, count, h->stream);
  if (written < count) return -1;
  if (!bounded) return 0;
  for (std::size_t i = written; i < field; ++i)
    if (putc_unlocked(' ', h->stream) == EOF) return -1;
  return 0;
}

extern "C" int32_t fio_getchar(fio_handle* h, char* out) noexcept {
  if (h == nullptr) return -1;
  const int c = read_char(h);
  if (out == nullptr) return c == EOF ? -1 : c;
  if (c == EOF) return -1;
  *out = static_cast<char>(c);
  return 0;
}

extern "C" int32_t fio_getstring(fio_handle* h, int32_t maxlen, char* buffer) noexcept {
  if (h == nullptr || buffer == nullptr || maxlen < 1) return -1;
  return get_line(h, maxlen, nullptr, buffer);
}

extern "C" int32_t fio_getstringdel(fio_handle* h, int32_t maxlen, const char* delimiters,
                                    char* buffer) noexcept {
  if (h == nullptr || buffer == nullptr) return -1;
  if (maxlen < 1) {
    buffer[0] = '\0';
    return -1;
  }
  if (delimiters != nullptr && delimiters[0] == '\0') delimiters = nullptr;
  return get_line(h, maxlen, delimiters, buffer);
}

extern "C" int32_t fio_read_to_buf(void* buffer, int32_t size, int32_t count, fio_handle* h) noexcept {
  if (h == nullptr || buffer == nullptr || size <= 0 || count <= 0) return 0;
  return static_cast<int32_t>(std::fread(buffer, static_cast<std::size_t>(size),
                                         static_cast<std::size_t>(count), h->stream));
}
