// The escape encoding of strings: ten characters and their backslash letters, no numeric
// escapes. Decoding what was encoded gives the text back.
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <array>
#include <cstring>

namespace {

struct Escape {
  char letter;  // behind the backslash
  char code;    // the character it stands for
};

constexpr Escape kEscapes[] = {
    {'a', '\a'}, {'b', '\b'}, {'t', '\t'}, {'n', '\n'},  {'v', '\v'},
    {'f', '\f'}, {'r', '\r'}, {'"', '"'},  {'\'', '\''}, {'\\', '\\'},
};

// For each byte: the letter that encodes it (0: none), and the character a letter decodes
// to (0: not an escape letter).
struct Tables {
  std::array<char, 256> letter_of{};
  std::array<char, 256> code_of{};
};

constexpr Tables make_tables() {
  Tables t;
  for (const Escape& e : kEscapes) {
    t.letter_of[static_cast<unsigned char>(e.code)] = e.letter;
    t.code_of[static_cast<unsigned char>(e.letter)] = e.code;
  }
  return t;
}

constexpr Tables kTables = make_tables();

char letter_of(char c) { return kTables.letter_of[static_cast<unsigned char>(c)]; }
char code_of(char c) { return kTables.code_of[static_cast<unsigned char>(c)]; }

// Decodes in into out. Safe when out == in: the output never runs ahead of the input.
void decode(char* out, const char* in) {
  while (*in != '\0') {
    const char code = in[0] == '\\' ? code_of(in[1]) : '\0';
    if (code != '\0') {
      *out++ = code;
      in += 2;
    } else {
      *out++ = *in++;
    }
  }
  *out = '\0';
}

// Encodes in into out, front to back; out must not overlap in.
void encode_forward(char* out, const char* in) {
  for (; *in != '\0'; ++in) {
    const char letter = letter_of(*in);
    if (letter != '\0') *out++ = '\\';
    *out++ = letter != '\0' ? letter : *in;
  }
  *out = '\0';
}

// Encodes s over itself, back to front, so no character is overwritten before it is read.
void encode_in_place(char* s) {
  const size_t n = std::strlen(s);
  size_t grown = n;
  for (size_t i = 0; i < n; ++i)
    if (letter_of(s[i]) != '\0') ++grown;
  s[grown] = '\0';
  for (size_t i = n; i-- > 0;) {
    const char letter = letter_of(s[i]);
    if (letter != '\0') {
      s[--grown] = letter;
      s[--grown] = '\\';
    } else {
      s[--grown] = s[i];
    }
  }
}

}  // namespace

extern "C" {

// Works from a copy of src, so dst and src may be the same buffer; with a nil dst the result
// goes over src. When the copy can't be allocated, decoding goes straight from src, which is
// as safe as long as dst is src or does not overlap it.
char* str_stoe(char* dst, char* src) noexcept {
  if (src == nullptr) return dst;
  char* out = dst != nullptr ? dst : src;
  char* copy = str_alloc(src);
  decode(out, copy != nullptr ? copy : src);
  heap_free(copy);
  return out;
}

// As str_stoe. The output can be twice as long as src. When the copy can't be allocated,
// an output over src is encoded back to front in place, any other output front to back.
char* str_etos(char* dst, char* src) noexcept {
  if (src == nullptr) return dst;
  char* out = dst != nullptr ? dst : src;
  char* copy = str_alloc(src);
  if (copy != nullptr)
    encode_forward(out, copy);
  else if (out == src)
    encode_in_place(src);
  else
    encode_forward(out, src);
  heap_free(copy);
  return out;
}

}  // extern "C"
