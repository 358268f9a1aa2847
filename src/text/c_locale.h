// The C locale as an object, so numbers are read and written the same whatever locale the
// host has set (a host in de_DE still gets "1.5", never "1,5").
#pragma once

#include <locale.h>

namespace tiv::text {

// The C locale, made once; nil only if it could not be made (then the thread's locale is used).
locale_t c_locale() noexcept;

// Makes the C locale the calling thread's locale for the lifetime of the object.
class InCLocale {
 public:
  InCLocale() noexcept;
  ~InCLocale();
  InCLocale(const InCLocale&) = delete;
  InCLocale& operator=(const InCLocale&) = delete;

 private:
  locale_t previous_;
};

}  // namespace tiv::text
