// Matching a name query ("HEB200", "ipe(100)", "100x50", "x50", ...) against the kind and
// size fields of a row.
//
// Stage 1 compares the query's leading letters with the kind, ignoring the case of a to z; an
// x or X ends the letters, since it separates sizes. Stage 2 walks the rest of the query and
// the size field together: a plain number asks for at least that size, a number in parentheses
// for exactly that size, a missing number is a wild card, and separators (x X / , -) must agree
// byte for byte.
#include "profile/catalog.h"

#include <cmath>
#include <cstdint>

namespace tiv::profile {
namespace {

constexpr double kExactTolerance = 1e-15;

constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
constexpr bool is_size_separator(char c) {
  return c == 'x' || c == 'X' || c == '/' || c == ',' || c == '-';
}
constexpr bool starts_number(char c) { return is_digit(c) || c == '.' || c == 'e' || c == 'E'; }

// A cursor over a text that reads '\0' past its end.
struct Cursor {
  std::string_view text;
  size_t at = 0;
  char peek() const { return at < text.size() ? text[at] : '\0'; }
  bool done() const { return at >= text.size(); }
};

// The size reader used on both sides, so that equal texts give equal values: digits, an
// optional fraction, an optional exponent; "e3" reads as 1000. Integer parts wrap at 32 bits.
double read_number(Cursor& c) {
  uint32_t integer = 0;
  bool seen = false;
  while (is_digit(c.peek())) {
    integer = integer * 10u + static_cast<uint32_t>(c.peek() - '0');
    seen = true;
    ++c.at;
  }
  double fraction = 0.0;
  if (c.peek() == '.') {
    ++c.at;
    seen = true;
    double place = 0.1;
    while (is_digit(c.peek())) {
      fraction += (c.peek() - '0') * place;
      place *= 0.1;
      ++c.at;
    }
  }
  double mantissa = seen ? static_cast<int32_t>(integer) + fraction : 1.0;
  if (c.peek() == 'e' || c.peek() == 'E') {
    ++c.at;
    bool negative = false;
    if (c.peek() == '-' || c.peek() == '+') {
      negative = c.peek() == '-';
      ++c.at;
    }
    uint32_t power = 0;
    while (is_digit(c.peek())) {
      power = power * 10u + static_cast<uint32_t>(c.peek() - '0');
      ++c.at;
    }
    const int32_t signed_power = static_cast<int32_t>(power);
    mantissa *= std::pow(10.0, negative ? -static_cast<double>(signed_power) : signed_power);
  }
  return mantissa;
}

// The walk of stage 2: query and size field with one cursor each.
class SizeMatch {
 public:
  SizeMatch(Cursor query, std::string_view size) : q_(query), s_{size} {}

  bool sizes() {
    if (q_.peek() == '(') return group() && tail();
    return number(false) && tail();
  }

 private:
  bool group() {
    ++q_.at;
    if (!list()) return false;
    if (q_.peek() != ')') return false;
    ++q_.at;
    return true;
  }

  bool list() {
    for (;;) {
      if (!number(true)) return false;
      if (!is_size_separator(q_.peek())) return q_.peek() == ')';
      if (!separator()) return false;
    }
  }

  bool tail() {
    if (is_size_separator(q_.peek())) return separator() && sizes();
    return q_.done() || q_.peek() == '(';
  }

  bool separator() {
    if (s_.peek() != q_.peek() || s_.done()) return false;
    ++s_.at;
    ++q_.at;
    return true;
  }

  bool number(bool exact) {
    if (!starts_number(s_.peek())) return false;
    if (!starts_number(q_.peek())) {
      read_number(s_);
      return true;
    }
    const double row = read_number(s_);
    const double wanted = read_number(q_);
    if (exact) return std::fabs(row - wanted) <= kExactTolerance;
    return !(row < wanted);
  }

  Cursor q_;
  Cursor s_;
};

}  // namespace

bool name_matches(std::string_view query, std::string_view kind, std::string_view size) {
  Cursor q{query};
  if (!q.done()) {
    size_t k = 0;
    while (!q.done()) {
      const char c = q.peek();
      if (!is_letter(c) || c == 'x' || c == 'X') break;
      if (k >= kind.size() || upper(c) != upper(kind[k])) break;
      ++q.at;
      ++k;
    }
    const char stop = q.peek();
    if (is_letter(stop) && stop != 'x' && stop != 'X') return false;
    if (q.at > 0 && k < kind.size()) return false;  // part of a kind is no kind
  }
  return SizeMatch(q, size).sizes();
}

}  // namespace tiv::profile
