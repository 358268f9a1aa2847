// Decimal conversion of the numbers the scanner reads, in the C locale whatever locale the
// host has set.
#pragma once

#include <cstddef>

namespace tiv::language {

// Value of the longest prefix of text[0, length) that forms a decimal floating number
// ("1e" gives 1.0, "-.5" gives -0.5); out of range gives an infinity or zero as strtod does.
// 0.0 if no prefix fits. text must be nul-terminated at length.
double decimal_prefix_value(const char* text, std::size_t length) noexcept;

}  // namespace tiv::language
