// Reading rows: the name fields, field values, the result text; and the name lookup.
#include "profile/catalog.h"
#include "profile/reader.h"

#include <tivlib/convert.h>

#include <cstring>

namespace tiv::profile {

bool read_name(profil_handle& h, char* kind, char* size) {
  read_token(h, kind);
  read_token(h, size);
  return kind[0] != '\0';
}

void clear_values(const profil_handle& h, double* values) {
  if (values == nullptr) return;
  for (int32_t i = 0; i < h.item_count; ++i) values[i] = -1.0;
}

// "nil" is a value the section does not have: -1.0, scaled like every other value, so that a
// negative value always tells of a missing one.
double field_value(const profil_handle& h, int32_t column, const char* token) {
  const double value = std::strcmp(token, "nil") == 0 ? -1.0 : convert_stod(token);
  return value * h.column_factor[column];
}

void read_wanted_values(profil_handle& h, double* values) {
  char token[kFieldMax + 1];
  for (int32_t c = 2; c < h.column_count; ++c) {
    const int32_t item = h.column_item[c];
    if (item < 0) {
      skip_token(h);
      continue;
    }
    read_token(h, token);
    const double value = field_value(h, c, token);
    if (values) values[item] = value;
  }
}

void write_result(const char* kind, const char* size, char* result) {
  if (result == nullptr) return;
  // Both fields hold at most kFieldMax characters, so the text always fits kResultSize.
  static_assert(2 * kFieldMax + 2 <= kResultSize);
  const size_t k = std::strlen(kind);
  std::memcpy(result, kind, k);
  result[k] = ' ';
  std::strcpy(result + k + 1, size);
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
  char kind[kFieldMax + 1], size[kFieldMax + 1];
  if (!read_name(*h, kind, size)) return -1;
  while (!name_matches(cleaned, kind, size)) {
    skip_line(*h);
    if (!read_name(*h, kind, size)) return -1;
  }
  read_wanted_values(*h, values);
  write_result(kind, size, result);
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
