// The exported calculator: its process-wide state, the reader over the expression text, the
// settings (decimals and error texts) and rounding.
#include <tivlib/calc.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include <tivlib/convert.h>
#include <tivlib/ini.h>
#include <tivlib/scan.h>
#include <tivlib/zv.h>

#include "language/calc_parser.h"
#include "language/scanner.h"

namespace {

constexpr const char* kSettingsName = "zv";
constexpr const char* kSection = "Calculator";
constexpr const char* kDecimalsEntry = "Nachkommastellen";
constexpr const char* kDefaultErrorText = "Error in expression";
constexpr int32_t kAskSettings = -1;

// Process-wide state. calc_decimals lasts until set again; the others describe the last
// expression.
int32_t calc_decimals = 0;
int32_t calc_status = 0;
int32_t calc_line = 0;
int32_t calc_column = 0;

// Read position in the expression of the running calc_expression. The reader gives one byte
// per call, widened with its sign, and stays on the terminator, which ends the input.
const char* calc_read_position = "";

int32_t read_expression_byte() noexcept {
  const char c = *calc_read_position;
  if (c != '\0') ++calc_read_position;
  return static_cast<int32_t>(static_cast<signed char>(c));
}

// The rounding power for the decimals (its negation), kept inside 32 bits.
int32_t rounding_power(int32_t decimals) noexcept {
  return decimals == INT32_MIN ? INT32_MAX : -decimals;
}

}  // namespace

extern "C" void calc_init(int32_t decimals) noexcept {
  if (decimals != kAskSettings) {
    calc_decimals = decimals;
    return;
  }
  int32_t value = 0;
  if (ini_read_long(zv_getinipath(kSettingsName), kSection, kDecimalsEntry, &value) == 0)
    calc_decimals = value;
}

// A nil expression counts as an empty one. If the scanner can't be opened (no memory) the
// expression fails with error 1 at line 0, column 0. result is always written: with the value
// of a good expression, or with what the parser left (0.0 if nothing), rounded alike.
extern "C" void calc_expression(const char* expression, double* result, int32_t* ok) noexcept {
  calc_status = 0;
  calc_read_position = expression != nullptr ? expression : "";
  double value = 0.0;
  scanner* scan = tiv::language::open_scanner(
      &read_expression_byte, tiv::language::kCalcScanFlags, tiv::language::kCalcKeywords,
      tiv::language::kCalcKeywordCount, tiv::language::kCalcKeywordOrder);
  if (scan == nullptr) {
    calc_status = tiv::language::kCalcSyntax;
    calc_line = 0;
    calc_column = 0;
  } else {
    const tiv::language::CalcOutcome outcome = tiv::language::evaluate_expression(scan, value);
    calc_status = outcome.status;
    calc_line = outcome.line;
    calc_column = outcome.column;
    scan_close(scan);
  }
  calc_read_position = "";
  if (calc_decimals != 0) value = pround(value, rounding_power(calc_decimals));
  if (result != nullptr) *result = value;
  if (ok != nullptr) *ok = calc_status == 0 ? 1 : 0;
}

// The text is "Error in expression" unless the key "f<number>" of [Calculator] in the central
// settings file exists (a value longer than 100 characters is cut). Number 0 is looked up too.
extern "C" void calc_error(int32_t* number, int32_t* line, int32_t* column, char* text) noexcept {
  if (number != nullptr) *number = calc_status;
  if (line != nullptr) *line = calc_line;
  if (column != nullptr) *column = calc_column;
  if (text == nullptr) return;
  std::memcpy(text, kDefaultErrorText, std::strlen(kDefaultErrorText) + 1);
  char key[16];
  std::snprintf(key, sizeof key, "f%d", static_cast<int>(calc_status));
  char value[CALC_ERROR_TEXT_MAX + 1] = {};
  int32_t size = CALC_ERROR_TEXT_MAX;
  const int32_t found = ini_read_string(zv_getinipath(kSettingsName), kSection, key, value, &size);
  if (found == 0 || found == 3) {
    value[CALC_ERROR_TEXT_MAX] = '\0';
    std::memcpy(text, value, std::strlen(value) + 1);
  }
}
