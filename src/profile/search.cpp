// Searching by property values and stepping from row to row.
//
// All operations go on from the reader's place (profil_search rewinds first) and give one row
// per call. Conditions stay in the handle until replaced; they are joined by "and".
#include "profile/catalog.h"
#include "profile/reader.h"

#include <tivlib/heap.h>

#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace tiv::profile {
namespace {

constexpr double kEqualTolerance = 1e-15;

struct OperatorText {
  std::string_view text;
  int32_t code;
};
constexpr std::array<OperatorText, 8> kOperators{{
    {">", PROFIL_OP_GT},  {">=", PROFIL_OP_GE}, {"<", PROFIL_OP_LT},  {"<=", PROFIL_OP_LE},
    {"=", PROFIL_OP_EQ},  {"==", PROFIL_OP_EQ}, {"!=", PROFIL_OP_NE}, {"<>", PROFIL_OP_NE},
}};

// Deletes blanks and tabs from the caller's operator text, in place, and gives its code.
int32_t operator_code(char* op) {
  if (op == nullptr) return PROFIL_OP_NONE;
  char* to = op;
  for (const char* from = op; *from; ++from)
    if (*from != ' ' && *from != '\t') *to++ = *from;
  *to = '\0';
  for (const OperatorText& o : kOperators)
    if (o.text == op) return o.code;
  return PROFIL_OP_NONE;
}

bool holds(int32_t op, double value, double operand) {
  switch (op) {
    case PROFIL_OP_GT: return value > operand;
    case PROFIL_OP_LT: return value < operand;
    case PROFIL_OP_GE: return value >= operand;
    case PROFIL_OP_LE: return value <= operand;
    case PROFIL_OP_EQ: return std::fabs(value - operand) < kEqualTolerance;
    case PROFIL_OP_NE: return !(std::fabs(value - operand) < kEqualTolerance);
    default: return true;
  }
}

// All conditions on the column, in order; the first that fails rejects the value.
bool passes(const profil_handle& h, int32_t column, double value) {
  for (int32_t t = 0; t < h.term_count; ++t) {
    const profil_condition& c = h.terms[t];
    if (c.column == column && !holds(c.op, value, c.value)) return false;
  }
  return true;
}

// Replaces the handle's conditions by the terms. False (with no conditions left) if memory
// runs out.
bool take_terms(profil_handle& h, profil_term* terms, int32_t count) {
  drop_terms(h);
  if (count > 0 && terms != nullptr) {
    h.terms = static_cast<profil_condition*>(
        heap_calloc(static_cast<uint32_t>(count), sizeof(profil_condition)));
    if (h.terms == nullptr) return false;
  } else {
    count = 0;
  }
  h.term_count = count;
  for (int32_t c = 0; c < h.column_count; ++c) h.column_searched[c] = 0;
  for (int32_t t = 0; t < count; ++t) {
    profil_condition& cond = h.terms[t];
    cond.column = -1;
    const int32_t column = terms[t].name ? find_column(h, terms[t].name) : -1;
    if (column < 0) continue;  // no such property: the condition never applies
    h.column_searched[column] = 1;
    cond.column = column;
    cond.op = operator_code(terms[t].op);
    cond.value = terms[t].value;
  }
  return true;
}

// Reads columns 2.. of a row under the conditions. A failing value rejects the row; the rest
// of the row is then passed over without conversion. Gives whether the row qualifies.
bool read_checked_values(profil_handle& h, double* values) {
  char token[kFieldMax + 1];
  for (int32_t c = 2; c < h.column_count; ++c) {
    const bool searched = h.column_searched[c] != 0;
    const int32_t item = h.column_item[c];
    if (!searched && item < 0) {
      int32_t unused = 1;
      while (c + 1 < h.column_count && h.column_searched[c + 1] == 0 && h.column_item[c + 1] < 0)
        ++c, ++unused;
      skip_tokens(h, unused);
      continue;
    }
    const int length = read_token(h, token);
    const double value = field_value(h, c, token, length);
    if (searched && !passes(h, c, value)) {
      skip_tokens(h, h.column_count - c - 1);
      return false;
    }
    if (item >= 0 && values) values[item] = value;
  }
  return true;
}

// The search loop from the reader's place: the next row that matches the name and the
// conditions.
int32_t search_from_here(profil_handle& h, std::string_view query, double* values, char* result) {
  clear_values(h, values);
  RowName name;
  for (;;) {
    if (!read_name(h, name)) return -1;
    if (!name_matches(query, name.kind_view(), name.size_view())) {
      skip_line(h);
      continue;
    }
    if (read_checked_values(h, values)) break;
  }
  write_result(name, result);
  return 0;
}

// The rest of a row after its name: the wanted values and the result.
int32_t deliver_row(profil_handle& h, const RowName& name, double* values, char* result) {
  read_wanted_values(h, values);
  write_result(name, result);
  return 0;
}

}  // namespace
}  // namespace tiv::profile

using namespace tiv::profile;

extern "C" int32_t profil_search(profil_handle* h, profil_term* terms, int32_t count,
                                 const char* query, double* values, char* result) noexcept {
  char cleaned[kQueryMax + 1];
  const bool have_query = clean_query(query, cleaned);
  if (h == nullptr) return -1;
  if (!take_terms(*h, terms, count)) return -1;
  if (!have_query) return -1;  // a query is required; nil finds nothing
  h->current = ' ';
  rewind(*h);
  return search_from_here(*h, cleaned, values, result);
}

extern "C" int32_t profil_search_next(profil_handle* h, profil_term* terms, int32_t count,
                                      const char* query, double* values, char* result) noexcept {
  char cleaned[kQueryMax + 1];
  const bool have_query = clean_query(query, cleaned);
  if (h == nullptr) return -1;
  if (terms != nullptr && !take_terms(*h, terms, count)) return -1;
  if (!have_query) return -1;
  return search_from_here(*h, cleaned, values, result);
}

extern "C" int32_t profil_search_f(profil_handle* h, profil_filter filter, const char* query,
                                   double* values, char* result) noexcept {
  char cleaned[kQueryMax + 1];
  const bool have_query = clean_query(query, cleaned);
  if (h == nullptr || !have_query) return -1;
  clear_values(*h, values);
  const std::string_view wanted(cleaned);
  RowName name;
  for (;;) {
    if (!read_name(*h, name)) return -1;
    if (!name_matches(wanted, name.kind_view(), name.size_view())) {
      skip_line(*h);
      continue;
    }
    read_wanted_values(*h, values);
    if (filter == nullptr || filter(values) != 0) break;
  }
  write_result(name, result);
  return 0;
}

extern "C" int32_t profil_next(profil_handle* h, double* values, char* result) noexcept {
  if (h == nullptr) return -1;
  clear_values(*h, values);
  RowName name;
  if (!read_name(*h, name)) return -1;
  return deliver_row(*h, name, values, result);
}

extern "C" int32_t profil_prev(profil_handle* h, double* values, char* result) noexcept {
  if (h == nullptr) return -1;
  clear_values(*h, values);
  if (!step_back(*h)) return -1;
  RowName name;
  read_name(*h, name);  // an empty kind is delivered as it is
  return deliver_row(*h, name, values, result);
}
