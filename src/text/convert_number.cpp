// Numbers to text and back, always in the C locale.
#include <tivlib/convert.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "text/c_locale.h"

namespace {

constexpr int32_t kWidthMax = CONVERT_WIDTH_MAX;
constexpr int32_t kPrecisionMax = CONVERT_PRECISION_MAX;
constexpr size_t kFormatMax = CONVERT_FORMAT_MAX;
constexpr size_t kOutputMax = CONVERT_OUTPUT_MAX;

// The longest possible output: a sign, the 309 digits of the largest double, the point and
// kPrecisionMax decimals, or a number padded to kWidthMax.
static_assert(1 + 309 + 1 + kPrecisionMax <= static_cast<int32_t>(kOutputMax));
static_assert(kWidthMax <= static_cast<int32_t>(kOutputMax));

int32_t clamp(int32_t v, int32_t lo, int32_t hi) { return v < lo ? lo : (v > hi ? hi : v); }

// Formats into a bounded buffer first, then copies to the caller's out.
template <typename... Args>
int32_t format_into(char* out, const char* format, Args... args) {
  char text[kOutputMax + 1];
  int n;
  {
    tiv::text::InCLocale c;
    n = std::snprintf(text, sizeof text, format, args...);
  }
  if (n < 0) n = 0;
  if (static_cast<size_t>(n) > kOutputMax) n = static_cast<int>(kOutputMax);
  std::memcpy(out, text, static_cast<size_t>(n));
  out[n] = '\0';
  return n;
}

// C-locale white space, as atof and atol skip it.
bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

const char* skip_digits(const char* p) {
  while (is_digit(*p)) ++p;
  return p;
}

// The decimal number at the start of text (after white space): its extent and where its
// exponent letter stands (nil without an exponent). Empty when no digit is there.
struct NumberText {
  const char* begin = nullptr;
  const char* end = nullptr;
  const char* exponent_letter = nullptr;
};

NumberText scan_decimal(const char* text) {
  NumberText n;
  const char* p = text;
  while (is_space(*p)) ++p;
  n.begin = p;
  if (*p == '+' || *p == '-') ++p;
  const char* digits = p;
  p = skip_digits(p);
  bool any = p != digits;
  if (*p == '.') {
    const char* frac = p + 1;
    const char* after = skip_digits(frac);
    any = any || after != frac;
    if (any) p = after;
  }
  if (!any) return {};
  if (*p == 'e' || *p == 'E' || *p == 'd' || *p == 'D') {
    const char* q = p + 1;
    if (*q == '+' || *q == '-') ++q;
    if (is_digit(*q)) {
      n.exponent_letter = p;
      p = skip_digits(q);
    }
  }
  n.end = p;
  return n;
}

// strtod in the C locale over the number's own characters, with a D exponent taken as E.
double parse_decimal(const NumberText& n, char* buffer) {
  const auto length = static_cast<size_t>(n.end - n.begin);
  std::memcpy(buffer, n.begin, length);
  buffer[length] = '\0';
  if (n.exponent_letter != nullptr) buffer[n.exponent_letter - n.begin] = 'e';
  locale_t c = tiv::text::c_locale();
  return c != nullptr ? strtod_l(buffer, nullptr, c) : std::strtod(buffer, nullptr);
}

}  // namespace

extern "C" {

// The format is built first ("%<width>.<precision>lf") and then applied. Width is clamped to
// +-CONVERT_WIDTH_MAX and precision to CONVERT_PRECISION_MAX so that the format fits its 15
// characters and the output CONVERT_OUTPUT_MAX; a negative precision means the default 6.
int32_t convert_dtos(double value, int32_t width, int32_t precision, char* out) noexcept {
  if (out == nullptr) return 0;
  width = clamp(width, -kWidthMax, kWidthMax);
  if (precision < 0) precision = 6;
  precision = clamp(precision, 0, kPrecisionMax);
  char format[kFormatMax + 1];
  std::snprintf(format, sizeof format, "%%%d.%dlf", static_cast<int>(width),
                static_cast<int>(precision));
  return format_into(out, format, value);
}

// As convert_dtos, with the format "%<width>ld"; a negative width aligns to the left.
int32_t convert_ltos(int32_t value, int32_t width, char* out) noexcept {
  if (out == nullptr) return 0;
  width = clamp(width, -kWidthMax, kWidthMax);
  char format[kFormatMax + 1];
  std::snprintf(format, sizeof format, "%%%dld", static_cast<int>(width));
  return format_into(out, format, static_cast<long>(value));
}

// atof rules: white space skipped, the longest decimal number read, D or d taken as an
// exponent letter, 0 when there is no number. Only decimal numbers count: hexadecimal, "inf"
// and "nan" give 0 (their leading digit, for "0x...").
double convert_stod(const char* text) noexcept {
  if (text == nullptr) return 0.0;
  const NumberText n = scan_decimal(text);
  if (n.begin == nullptr) return 0.0;
  const auto length = static_cast<size_t>(n.end - n.begin);
  char local[128];
  if (length < sizeof local) return parse_decimal(n, local);
  try {
    std::string big(length + 1, '\0');
    return parse_decimal(n, big.data());
  } catch (...) {
    return 0.0;
  }
}

// atol rules: white space skipped, an optional sign, decimal digits up to the first other
// character, 0 when there is none. Values beyond 32 bits are held at INT32_MIN / INT32_MAX.
int32_t convert_stol(const char* text) noexcept {
  if (text == nullptr) return 0;
  const char* p = text;
  while (is_space(*p)) ++p;
  const bool negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  constexpr int64_t kLimit = static_cast<int64_t>(INT32_MAX) + 1;
  int64_t value = 0;
  for (; is_digit(*p); ++p) {
    value = value * 10 + (*p - '0');
    if (value > kLimit) value = kLimit;
  }
  if (negative) value = -value;
  if (value > INT32_MAX) value = INT32_MAX;
  return static_cast<int32_t>(value);
}

}  // extern "C"
