#include "text/c_locale.h"

namespace tiv::text {

locale_t c_locale() noexcept {
  static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return c;
}

InCLocale::InCLocale() noexcept
    : previous_(c_locale() != nullptr ? uselocale(c_locale()) : static_cast<locale_t>(nullptr)) {}

InCLocale::~InCLocale() {
  if (previous_ != nullptr) uselocale(previous_);
}

}  // namespace tiv::text
