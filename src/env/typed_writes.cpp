// Writes of text and words, and the typed writes: numbers by "%g" and "%ld" in the C locale,
// lists joined with "," into a text of at most 1023 characters.
#include <tivlib/env.h>

#include <charconv>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <locale.h>
#include <string_view>

#include "env/locate.h"
#include "env/report.h"

using namespace tiv::env;

namespace {

constexpr std::size_t kTextMax = ENV_FORMAT_MAX;  // characters of a formatted or joined text
constexpr std::size_t kNumberMax = 32;

// A number as its text: "%g" (six significant digits) or "%ld", whatever the host's locale.
std::string_view format_number(double value, char (&out)[kNumberMax]) {
  auto [end, ec] = std::to_chars(out, out + kNumberMax, value, std::chars_format::general, 6);
  if (ec != std::errc{}) end = out;
  return {out, static_cast<std::size_t>(end - out)};
}
std::string_view format_number(int32_t value, char (&out)[kNumberMax]) {
  auto [end, ec] = std::to_chars(out, out + kNumberMax, value);
  if (ec != std::errc{}) end = out;
  return {out, static_cast<std::size_t>(end - out)};
}

// The text of a list write. A piece that doesn't fit the room left is refused, and so is
// every piece after it, so a long list is cut where it stops fitting (perhaps after a ",").
class ListText {
 public:
  void add(std::string_view piece) {
    // The room left counts the whole buffer, the terminator's byte included.
    if (refused_ || piece.size() >= sizeof text_ - length_) {
      refused_ = true;
      return;
    }
    std::memcpy(text_ + length_, piece.data(), piece.size());
    length_ += piece.size();
    text_[length_] = '\0';
  }
  const char* c_str() const { return text_; }

 private:
  char text_[kTextMax + 1] = {};
  std::size_t length_ = 0;
  bool refused_ = false;
};

// Calls vsnprintf under the C locale, so that a host locale can't change the decimal point.
int format_in_c_locale(char* out, std::size_t size, const char* format, va_list args) {
  static locale_t c_locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  locale_t previous = c_locale != static_cast<locale_t>(nullptr) ? uselocale(c_locale) : nullptr;
  const int n = std::vsnprintf(out, size, format, args);
  if (previous != static_cast<locale_t>(nullptr)) uselocale(previous);
  return n;
}

// Stores count numbers joined by "," as one text; see ListText for where a long list is cut.
template <class Number>
int32_t put_number_list(env_handle* env, const char* section, const char* path, int32_t count,
                        const Number* values) noexcept {
  if (count < 1 || values == nullptr) return ENV_ERROR;
  ListText text;
  char digits[kNumberMax];
  for (int32_t i = 0; i < count; ++i) {
    if (i > 0) text.add(",");
    text.add(format_number(values[i], digits));
  }
  return env_put(env, section, path, text.c_str());
}

}  // namespace

extern "C" {

int32_t env_put(env_handle* env, const char* section, const char* path,
                const char* value) noexcept {
  if (value == nullptr) return ENV_ERROR;
  return env_put_core(env, section, path, value, 0);
}

int32_t env_put_external(env_handle* env, const char* section, const char* path,
                         intptr_t word) noexcept {
  return env_put_core(env, section, path, nullptr, word);
}

int32_t env_put_string(env_handle* env, const char* section, const char* path,
                       const char* value) noexcept {
  return env_put(env, section, path, value);
}

int32_t env_put_format(env_handle* env, const char* section, const char* path,
                       const char* format, ...) noexcept {
  if (format == nullptr) return ENV_ERROR;
  char text[kTextMax + 1];
  va_list args;
  va_start(args, format);
  const int n = format_in_c_locale(text, sizeof text, format, args);
  va_end(args);
  if (n < 0 || static_cast<std::size_t>(n) > kTextMax) return ENV_ERROR;
  return env_put(env, section, path, text);
}

// A single number is written as a list of one: the same text, without a ",".
int32_t env_put_double(env_handle* env, const char* section, const char* path,
                       double value) noexcept {
  return put_number_list(env, section, path, 1, &value);
}

int32_t env_put_long(env_handle* env, const char* section, const char* path,
                     int32_t value) noexcept {
  return put_number_list(env, section, path, 1, &value);
}

int32_t env_put_doubles(env_handle* env, const char* section, const char* path, int32_t count,
                        const double* values) noexcept {
  return put_number_list(env, section, path, count, values);
}

int32_t env_put_longs(env_handle* env, const char* section, const char* path, int32_t count,
                      const int32_t* values) noexcept {
  return put_number_list(env, section, path, count, values);
}

// The list ends at a string that is nil or longer than 1024 characters. If that is the
// first one there is nothing to store: the result is -10 and the element is left as it was.
int32_t env_put_strings(env_handle* env, const char* section, const char* path, int32_t count,
                        const char* const* values) noexcept {
  if (count < 1 || values == nullptr) return ENV_ERROR;
  auto usable = [](const char* s) { return s != nullptr && std::strlen(s) <= kTextMax + 1; };
  if (!usable(values[0])) return ENV_ERROR;
  ListText text;
  text.add(values[0]);
  for (int32_t i = 1; i < count && usable(values[i]); ++i) {
    text.add(",");
    text.add(values[i]);
  }
  return env_put(env, section, path, text.c_str());
}

}  // extern "C"
