// Fuzzes the escape encoding, the whole-string tokenizer and the number readers on arbitrary
// text. Checks: encoding then decoding gives the input back; a tokenizer walk run to its end
// leaves the text as it was; the number readers never read past the text.
#include <tivlib/convert.h>
#include <tivlib/heap.h>
#include <tivlib/str.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  // The first byte picks the delimiter's length; the rest is the text, up to its first nul.
  const size_t delim_len = size > 0 ? data[0] % 4 : 0;
  const std::string rest(reinterpret_cast<const char*>(data) + (size > 0 ? 1 : 0),
                         size > 0 ? size - 1 : 0);
  const std::string text(rest.c_str());

  // Round trip through the escapes, into a separate buffer and in place.
  std::string src = text;
  std::string encoded(2 * text.size() + 1, '\0');
  str_etos(encoded.data(), src.data());
  if (src != text) std::abort();
  std::string decoded(encoded.size() + 1, '\0');
  str_stoe(decoded.data(), encoded.data());
  if (std::strcmp(decoded.c_str(), text.c_str()) != 0) std::abort();
  std::string in_place = text;
  in_place.resize(2 * text.size() + 1, '\0');
  str_etos(nullptr, in_place.data());
  str_stoe(nullptr, in_place.data());
  if (std::strcmp(in_place.c_str(), text.c_str()) != 0) std::abort();
  // Decoding never grows the text.
  std::string raw = text;
  str_stoe(nullptr, raw.data());
  if (std::strlen(raw.c_str()) > text.size()) std::abort();

  // A tokenizer walk to its end mends the text.
  const std::string delim = text.substr(0, delim_len);
  std::string walk = text;
  size_t tokens = 0;
  for (char* t = str_tok(walk.data(), delim.c_str()); t != nullptr; t = str_tok(nullptr, delim.c_str()))
    if (++tokens > text.size() + 1) std::abort();
  if (walk != text) std::abort();

  (void)convert_stod(text.c_str());
  (void)convert_stol(text.c_str());
  return 0;
}
