// The built-in unit factors: catalogue values in mm and cm based units to m based ones.
#include "profile/catalog.h"

#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

// One property: its factor is base to the power exponent, computed at each lookup.
struct FactorRow {
  std::string_view name;
  double base;
  int exponent;
};

constexpr std::array<FactorRow, 33> profil_factor_table{{
    {"b", 0.001, 1},  {"D", 0.001, 1},  {"a", 0.001, 1},  {"h", 0.001, 1},   {"A", 0.01, 2},
    {"Iy", 0.01, 4},  {"Wy", 0.01, 3},  {"Sy", 0.01, 3},  {"Iz", 0.01, 4},   {"Wz", 0.01, 3},
    {"iy", 0.01, 1},  {"iz", 0.01, 1},  {"It", 0.01, 4},  {"Wt", 0.01, 3},   {"ys", 0.01, 1},
    {"ym", 0.01, 1},  {"zs", 0.01, 1},  {"zm", 0.01, 1},  {"s", 0.001, 1},   {"t", 0.001, 1},
    {"r", 0.001, 1},  {"e", 0.01, 1},   {"ip", 0.01, 1},  {"im", 0.01, 1},   {"Cm", 0.01, 6},
    {"izg", 0.01, 1}, {"ez", 0.01, 1},  {"ey", 0.01, 1},  {"r1", 0.001, 1},  {"Styp", 1.0, 1},
    {"Ktyp", 1.0, 1}, {"n", 1.0, 1},    {"AQ", 0.01, 2},
}};

double factor_of(std::string_view name) {
  for (const FactorRow& row : profil_factor_table)
    if (row.name == name) return std::pow(row.base, row.exponent);
  return 1.0;
}

}  // namespace

extern "C" void profil_get_factors(const char* const* names, double* factors) noexcept {
  if (names == nullptr || factors == nullptr) return;
  for (int32_t i = 0; names[i] != nullptr; ++i) factors[i] = factor_of(names[i]);
}
