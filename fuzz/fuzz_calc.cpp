// Fuzz target of the calculator: the input, cut at its first nul, is one expression.
#include <tivlib/calc.h>

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string expression(reinterpret_cast<const char*>(data), size);
  double value = 0.0;
  int32_t ok = -1;
  calc_expression(expression.c_str(), &value, &ok);
  int32_t number = -1, line = -1, column = -1;
  calc_error(&number, &line, &column, nullptr);
  if (ok != (number == 0 ? 1 : 0)) __builtin_trap();
  if (number != 0 && number != 1 && number != 2 && number != 3 && number != 7 &&
      (number < 14 || number > 17))
    __builtin_trap();
  if (line < 0 || column < 0) __builtin_trap();
  return 0;
}
