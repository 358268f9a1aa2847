#include "platform/environment.h"

#include <cstdlib>

namespace tiv::platform {

const char* get_variable(const char* name) noexcept {
  return name != nullptr ? std::getenv(name) : nullptr;
}

int put_variable(char* text) noexcept { return ::putenv(text) == 0 ? 0 : -1; }

}  // namespace tiv::platform
