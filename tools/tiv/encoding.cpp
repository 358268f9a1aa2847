#include "encoding.h"

#include <array>
#include <cstdint>

#include "context.h"

namespace tiv::cli {

namespace {

Encoding g_file_encoding = Encoding::cp1252;

using HighHalf = std::array<char16_t, 128>;  // the characters of bytes 0x80 to 0xFF

constexpr HighHalf latin1_high() {
  HighHalf t{};
  for (int i = 0; i < 128; ++i) t[i] = static_cast<char16_t>(0x80 + i);
  return t;
}

// Windows-1252: Latin-1 but for 0x80..0x9F; the five bytes it leaves free keep their C1 code.
constexpr HighHalf cp1252_high() {
  HighHalf t = latin1_high();
  constexpr char16_t k80[32] = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  for (int i = 0; i < 32; ++i) t[i] = k80[i];
  return t;
}

constexpr HighHalf kCp437 = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8,
    0x00EF, 0x00EE, 0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2,
    0x00FB, 0x00F9, 0x00FF, 0x00D6, 0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192, 0x00E1,
    0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA, 0x00BA, 0x00BF, 0x2310, 0x00AC, 0x00BD,
    0x00BC, 0x00A1, 0x00AB, 0x00BB, 0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562,
    0x2556, 0x2555, 0x2563, 0x2551, 0x2557, 0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534,
    0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560,
    0x2550, 0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559, 0x2558, 0x2552, 0x2553, 0x256B,
    0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580, 0x03B1, 0x00DF, 0x0393,
    0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4, 0x03A6, 0x0398, 0x03A9, 0x03B4, 0x221E, 0x03C6,
    0x03B5, 0x2229, 0x2261, 0x00B1, 0x2265, 0x2264, 0x2320, 0x2321, 0x00F7, 0x2248, 0x00B0,
    0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0};
constexpr HighHalf kCp1252 = cp1252_high();
constexpr HighHalf kLatin1 = latin1_high();

const HighHalf& high_half(Encoding e) {
  return e == Encoding::cp437 ? kCp437 : e == Encoding::latin1 ? kLatin1 : kCp1252;
}

void put_utf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// The character at text[at] and its length in bytes; length 0 for a malformed sequence.
std::pair<char32_t, std::size_t> next_utf8(std::string_view text, std::size_t at) {
  static constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  const auto c = static_cast<unsigned char>(text[at]);
  if (c < 0x80) return {c, 1};
  std::size_t n;
  char32_t cp;
  if ((c & 0xE0) == 0xC0) n = 1, cp = c & 0x1F;
  else if ((c & 0xF0) == 0xE0) n = 2, cp = c & 0x0F;
  else if ((c & 0xF8) == 0xF0) n = 3, cp = c & 0x07;
  else return {0, 0};
  if (text.size() - at <= n) return {0, 0};
  for (std::size_t k = 1; k <= n; ++k) {
    const auto d = static_cast<unsigned char>(text[at + k]);
    if ((d & 0xC0) != 0x80) return {0, 0};
    cp = (cp << 6) | (d & 0x3F);
  }
  if (cp < kLeast[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return {0, 0};
  return {cp, n + 1};
}

}  // namespace

std::optional<Encoding> parse_encoding(std::string_view name) {
  for (std::size_t i = 0; i < std::size(kEncodingNames); ++i)
    if (kEncodingNames[i] == name) return static_cast<Encoding>(i);
  return std::nullopt;
}

void set_file_encoding(Encoding encoding) { g_file_encoding = encoding; }
Encoding file_encoding() { return g_file_encoding; }

bool is_utf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t n = next_utf8(text, at).second;
    if (n == 0) return false;
    at += n;
  }
  return true;
}

std::string to_utf8(std::string_view bytes) {
  if (is_utf8(bytes)) return std::string(bytes);
  std::string out;
  out.reserve(bytes.size() * 2);
  if (g_file_encoding == Encoding::utf8) {
    for (std::size_t at = 0; at < bytes.size();) {
      auto [cp, n] = next_utf8(bytes, at);
      put_utf8(out, n == 0 ? U'\uFFFD' : cp);
      at += n == 0 ? 1 : n;
    }
    return out;
  }
  const HighHalf& high = high_half(g_file_encoding);
  for (char c : bytes) {
    const auto b = static_cast<unsigned char>(c);
    put_utf8(out, b < 0x80 ? char32_t{b} : char32_t{high[b - 0x80]});
  }
  return out;
}

std::optional<std::string> to_file_bytes(std::string_view text) {
  if (g_file_encoding == Encoding::utf8 || !is_utf8(text)) return std::string(text);
  const HighHalf& high = high_half(g_file_encoding);
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    auto [cp, n] = next_utf8(text, at);
    at += n;
    if (cp < 0x80) {
      out += static_cast<char>(cp);
      continue;
    }
    std::size_t i = 0;
    while (i < high.size() && high[i] != cp) ++i;
    if (i == high.size()) return std::nullopt;
    out += static_cast<char>(0x80 + i);
  }
  return out;
}

std::string file_text(std::string_view text) {
  auto bytes = to_file_bytes(text);
  if (!bytes)
    fail(kBadFormat, "'" + std::string(text) + "' has a character that " +
                         std::string(kEncodingNames[static_cast<int>(g_file_encoding)]) + " can't hold");
  return *bytes;
}

}  // namespace tiv::cli
