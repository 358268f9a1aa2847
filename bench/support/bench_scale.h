// Sizes of the benchmark programs: every generated input is its full size times the factor
// in TIV_BENCH_SCALE (1.0 when unset or not positive; 0.05 for quick runs).
#pragma once

#include <cstdlib>

namespace tiv::bench {

inline double scale_factor() {
  const char* s = std::getenv("TIV_BENCH_SCALE");
  const double v = s != nullptr ? std::atof(s) : 1.0;
  return v > 0 ? v : 1.0;
}

// full times the factor, but never below floor.
template <class Size>
Size scaled(Size full, Size floor) {
  const auto n = static_cast<Size>(static_cast<double>(full) * scale_factor());
  return n < floor ? floor : n;
}

}  // namespace tiv::bench
