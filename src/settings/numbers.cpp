// Numbers in settings values.
#include "settings/numbers.h"

#include <charconv>
#include <cstring>

#include <tivlib/convert.h>

namespace tiv::settings {

namespace {

// Room for any double in "%lf" form (309 digits, sign, point, six decimals).
constexpr std::size_t kScratch = 400;

bool finish(const char* begin, std::to_chars_result r, char* out) {
  const std::size_t n = r.ec == std::errc() ? static_cast<std::size_t>(r.ptr - begin) : kScratch;
  if (n > kNumberMax) {
    out[0] = '\0';
    return false;
  }
  std::memcpy(out, begin, n);
  out[n] = '\0';
  return true;
}

// Appends each item with its comma while the total stays within kListMax, then drops the
// last comma.
template <class T, class Format>
bool format_list(const T* values, int32_t count, char* out, Format format) {
  std::size_t total = 0;
  out[0] = '\0';
  if (count <= 0) return true;
  if (values == nullptr) return false;
  char item[kNumberMax + 1];
  for (int32_t i = 0; i < count; ++i) {
    if (!format(values[i], item)) return false;
    const std::size_t n = std::strlen(item);
    if (total + n + 1 > kListMax) {
      out[0] = '\0';
      return false;
    }
    std::memcpy(out + total, item, n);
    out[total + n] = ',';
    total += n + 1;
  }
  out[total - 1] = '\0';
  return true;
}

template <class T, class Convert>
bool parse_list(char* text, T* values, int32_t room, int32_t* stored, Convert convert) {
  int32_t n = 0;
  if (room < 0) room = 0;
  if (text[0] != '\0') {
    char* piece = text;
    for (;;) {
      char* comma = std::strchr(piece, ',');
      if (comma != nullptr) *comma = '\0';
      if (n < room) values[n] = convert(piece);
      ++n;
      if (comma == nullptr || comma[1] == '\0') break;
      piece = comma + 1;
    }
  }
  if (n > room) return false;
  *stored = n;
  return true;
}

// A double in the given form with 6 digits of precision ("%lf" or "%lg" in the C locale).
bool format_double(double value, std::chars_format form, char* out) {
  char scratch[kScratch];
  return finish(scratch, std::to_chars(scratch, scratch + sizeof scratch, value, form, 6), out);
}

}  // namespace

bool format_long(int32_t value, char* out) {
  char scratch[kScratch];
  return finish(scratch, std::to_chars(scratch, scratch + sizeof scratch, value), out);
}

bool format_fixed(double value, char* out) {
  return format_double(value, std::chars_format::fixed, out);
}

bool format_general(double value, char* out) {
  return format_double(value, std::chars_format::general, out);
}

bool format_longs(const int32_t* values, int32_t count, char* out) {
  return format_list(values, count, out, format_long);
}

bool format_doubles(const double* values, int32_t count, char* out) {
  return format_list(values, count, out, format_general);
}

bool parse_longs(char* text, int32_t* values, int32_t room, int32_t* stored) {
  return parse_list(text, values, room, stored, [](const char* s) { return convert_stol(s); });
}

bool parse_doubles(char* text, double* values, int32_t room, int32_t* stored) {
  return parse_list(text, values, room, stored, [](const char* s) { return convert_stod(s); });
}

}  // namespace tiv::settings
