// The process environment, read and set.
#pragma once

namespace tiv::platform {

// The value of a variable, or nil when it is not set. Not a copy: valid until the
// environment changes.
const char* get_variable(const char* name) noexcept;

// Hands "name=value" to the environment, which keeps the very text (it must stay alive).
// Gives 0, or -1 on failure.
int put_variable(char* text) noexcept;

}  // namespace tiv::platform
