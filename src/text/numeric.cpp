// Rounding to a power of ten, sign functions and trigonometry in degrees.
#include <tivlib/convert.h>

#include <cmath>

namespace {
constexpr double kDegree = 0.017453292519943295;  // radians in a degree
constexpr double kRadian = 57.29577951308232;     // degrees in a radian
}  // namespace

extern "C" {

// power is the exponent of the rounding unit: -2 rounds to hundredths. Halves go up, toward
// positive infinity, for negative numbers too.
double pround(double value, int32_t power) noexcept {
  const double unit = std::pow(10.0, power);
  return std::floor(value / unit + 0.5) * unit;
}

int32_t lsgn(int32_t value) noexcept { return value < 0 ? -1 : (value > 0 ? 1 : 0); }

// Negative zero gives 0.0; a value that compares as unordered (not a number) gives 1.0.
double fsgn(double value) noexcept {
  if (value < 0.0) return -1.0;
  if (value == 0.0) return 0.0;
  return 1.0;
}

double sin_deg(double angle) noexcept { return std::sin(angle * kDegree); }
double cos_deg(double angle) noexcept { return std::cos(angle * kDegree); }
double tan_deg(double angle) noexcept { return std::tan(angle * kDegree); }
double asin_deg(double value) noexcept { return std::asin(value) * kRadian; }
double acos_deg(double value) noexcept { return std::acos(value) * kRadian; }
double atan_deg(double value) noexcept { return std::atan2(value, 1.0) * kRadian; }
double atan2_deg(double y, double x) noexcept { return std::atan2(y, x) * kRadian; }

}  // extern "C"
