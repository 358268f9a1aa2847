// Fuzz target of the scanner: the first two bytes choose the flags (tracing excluded, it
// writes a file), the rest is the text. Every token is taken up to the end of the input,
// with single characters read between tokens now and then.
#include <tivlib/scan.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

const uint8_t* input = nullptr;
size_t input_size = 0;
size_t input_position = 0;

int32_t read_input() {
  if (input_position >= input_size) return -1;
  const uint8_t b = input[input_position++];
  // Odd positions widen with the sign, so negative characters occur too.
  return (input_position & 1) ? static_cast<int32_t>(static_cast<int8_t>(b)) : b;
}

constexpr const char* const kKeywords[] = {"IF", "if", "else", "while", "_", "a", "zz", nullptr};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const int32_t flags = (static_cast<int32_t>(data[0]) | (static_cast<int32_t>(data[1]) << 8) |
                         ((data[1] & 0x80) ? SCAN_F_POWER : 0)) &
                        ~SCAN_F_TRACE;
  input = data + 2;
  input_size = size - 2;
  input_position = 0;
  scanner* s = scan_open(&read_input, flags, kKeywords);
  if (s == nullptr) return 0;
  int32_t kind = 0;
  scan_record record;
  size_t tokens = 0;
  do {
    const int32_t status = scan_token(s, &kind, &record);
    if (status < 0 || status > 7 || kind < 0 || kind > SCAN_T_EOF) __builtin_trap();
    if (std::strlen(record.text) > SCAN_TEXT_MAX) __builtin_trap();
    if ((++tokens & 15) == 0) {
      int32_t klass = 0;
      char c = 0;
      scan_character(s, &klass, &c);
    }
  } while (kind != SCAN_T_EOF && tokens < 4 * size + 16);
  if (kind != SCAN_T_EOF) __builtin_trap();  // every token but the owed dot consumes input
  scan_close(s);
  return 0;
}
