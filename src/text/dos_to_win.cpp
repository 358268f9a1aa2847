// The German letters of the DOS code page moved to their places in the Windows code page.
#include <tivlib/convert.h>

#include <array>

namespace {

struct Mapping {
  unsigned char dos;
  unsigned char win;
};

constexpr Mapping kGermanLetters[] = {
    {0x81, 0xFC}, {0x84, 0xE4}, {0x8E, 0xC4}, {0x94, 0xF6},
    {0x99, 0xD6}, {0x9A, 0xDC}, {0xE1, 0xDF},
};

// Every byte to itself except the seven letters above.
constexpr std::array<unsigned char, 256> make_table() {
  std::array<unsigned char, 256> t{};
  for (int i = 0; i < 256; ++i) t[static_cast<size_t>(i)] = static_cast<unsigned char>(i);
  for (const Mapping& m : kGermanLetters) t[m.dos] = m.win;
  return t;
}

constexpr auto kTable = make_table();

}  // namespace

extern "C" {

char* dos_to_win(char* text, int32_t keep) noexcept {
  if (text == nullptr || keep != 0) return text;
  for (char* p = text; *p != '\0'; ++p)
    *p = static_cast<char>(kTable[static_cast<unsigned char>(*p)]);
  return text;
}

}  // extern "C"
