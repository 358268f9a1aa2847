#include "language/number.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <locale.h>
#include <system_error>

namespace tiv::language {
namespace {

// The C locale, made once for the rare conversions that from_chars leaves to strtod.
locale_t c_locale() noexcept {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  return locale;
}

}  // namespace

double decimal_prefix_value(const char* text, std::size_t length) noexcept {
  double value = 0.0;
  const auto r = std::from_chars(text, text + length, value, std::chars_format::general);
  if (r.ec == std::errc{}) return value;
  if (r.ec == std::errc::result_out_of_range) {
    const locale_t locale = c_locale();
    if (locale != static_cast<locale_t>(0)) return strtod_l(text, nullptr, locale);
  }
  return 0.0;
}

}  // namespace tiv::language
