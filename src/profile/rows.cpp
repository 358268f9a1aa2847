// Reading rows: the name fields, field values, the result text; and the name lookup.
#include "profile/catalog.h"
#include "profile/reader.h"

#include <tivlib/convert.h>

#include <charconv>
#include <cstring>
#include <system_error>

namespace tiv::profile {

bool read_name(profil_handle& h, RowName& name) {
  name.kind_length = read_token(h, name.kind);
  name.size_length = read_token(h, name.size);
  return name.kind_length > 0;
}

void clear_values(const profil_handle& h, double* values) {
  if (values == nullptr) return;
  for (int32_t i = 0; i < h.item_count; ++i) values[i] = -1.0;
}

namespace {

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The number of a field as convert_stod reads it. A field that is one plain decimal number
// (digits, point, exponent; no "inf", "nan" or hexadecimal, no other characters) is converted
// by std::from_chars, which rounds correctly just as strtod does and needs no locale; every
// other text goes to convert_stod with its own rules.
// Powers of ten that a double holds exactly.
constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Plain "[-]digits[.digits]" with at most 15 significant digits: the digits make an integer
// below 2^53 and the point a power of ten below 10^23, both exact doubles, so their one
// correctly rounded division is the correctly rounded value that strtod gives as well.
// Gives false for every other text.
bool short_decimal(const char* token, int length, double& value) {
  const char* p = token;
  const char* const end = token + length;
  const bool negative = p < end && *p == '-';
  p += negative;
  const char* const integer = p;
  uint64_t digits = 0;  // wraps harmlessly for long texts, which are refused below
  while (p < end && is_digit(*p)) digits = digits * 10 + static_cast<uint64_t>(*p++ - '0');
  const auto integer_digits = static_cast<int>(p - integer);
  int decimals = 0;
  if (p < end && *p == '.') {
    const char* const fraction = ++p;
    while (p < end && is_digit(*p)) digits = digits * 10 + static_cast<uint64_t>(*p++ - '0');
    decimals = static_cast<int>(p - fraction);
  }
  const int count = integer_digits + decimals;
  if (p != end || count == 0 || count > 15) return false;
  value = static_cast<double>(digits) / kExactPowers[decimals];
  if (negative) value = -value;
  return true;
}

double field_number(const char* token, int length) {
  double fast = 0.0;
  if (short_decimal(token, length, fast)) return fast;
  const char* p = token + (token[0] == '-');
  if (is_digit(p[0]) || (p[0] == '.' && is_digit(p[1]))) {
    const char* end = token + length;
    double value = 0.0;
    const auto [stop, error] = std::from_chars(token, end, value, std::chars_format::general);
    if (error == std::errc() && stop == end) return value;
  }
  return convert_stod(token);
}

}  // namespace

// "nil" is a value the section does not have: -1.0, scaled like every other value, so that a
// negative value always tells of a missing one.
double field_value(const profil_handle& h, int32_t column, const char* token, int length) {
  const bool nil = length == 3 && token[0] == 'n' && token[1] == 'i' && token[2] == 'l';
  const double value = nil ? -1.0 : field_number(token, length);
  return value * h.column_factor[column];
}

void read_wanted_values(profil_handle& h, double* values) {
  char token[kFieldMax + 1];
  for (int32_t c = 2; c < h.column_count; ++c) {
    const int32_t item = h.column_item[c];
    if (item < 0) {
      int32_t unwanted = 1;
      while (c + 1 < h.column_count && h.column_item[c + 1] < 0) ++c, ++unwanted;
      skip_tokens(h, unwanted);
      continue;
    }
    const int length = read_token(h, token);
    const double value = field_value(h, c, token, length);
    if (values) values[item] = value;
  }
}

void write_result(const RowName& name, char* result) {
  if (result == nullptr) return;
  // Both fields hold at most kFieldMax characters, so the text always fits kResultSize.
  static_assert(2 * kFieldMax + 2 <= kResultSize);
  const auto k = static_cast<size_t>(name.kind_length);
  const auto s = static_cast<size_t>(name.size_length);
  std::memcpy(result, name.kind, k);
  result[k] = ' ';
  std::memcpy(result + k + 1, name.size, s);
  result[k + 1 + s] = '\0';
}

}  // namespace tiv::profile

using namespace tiv::profile;

extern "C" int32_t profil_get(profil_handle* h, const char* query, double* values,
                              char* result) noexcept {
  char cleaned[kQueryMax + 1];
  const bool have_query = clean_query(query, cleaned);
  if (h == nullptr) return -1;
  if (!have_query) return -1;  // a query is required; nil finds nothing
  rewind(*h);
  clear_values(*h, values);
  const std::string_view wanted(cleaned);
  RowName name;
  if (!read_name(*h, name)) return -1;
  while (!name_matches(wanted, name.kind_view(), name.size_view())) {
    skip_line(*h);
    if (!read_name(*h, name)) return -1;
  }
  read_wanted_values(*h, values);
  write_result(name, result);
  return 0;
}

extern "C" char* profil_convert_result(const char* result, char* kind, char* size) noexcept {
  if (kind == nullptr) return nullptr;
  std::string_view text = result ? std::string_view(result).substr(0, kPartMax) : "";
  const size_t blank = text.find(' ');
  const std::string_view front = text.substr(0, blank);
  front.copy(kind, front.size());
  kind[front.size()] = '\0';
  if (size != nullptr) {
    const std::string_view back = blank == std::string_view::npos ? "" : text.substr(blank + 1);
    back.copy(size, back.size());
    size[back.size()] = '\0';
  }
  return kind;
}
