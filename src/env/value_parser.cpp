// The rules of the value parser; see value_parser.h.
//
// Each rule takes the position where it starts and gives the position behind what it
// matched, or none if it did not match; a caller that gets none backs off to its own start.
// Optional and repeated rules never fail.
//
//   exponent tail   E|e|D|d, [ [sign] digit ], digit*
//   exponent A      [sign] digit digit* [point] digit* exponent-tail
//   exponent B      [sign] digit* [point] digit digit* exponent-tail
//   point A         [sign] digit digit* point digit*
//   point B         [sign] digit* point digit digit*
//   whole           [sign] digit digit*
//   number          exponent A | exponent B | point A | point B | whole
//   word            (A-Z a-z 0-9)+
//   single          blank* item blank* line-close
//   list            blank* item blank* (comma blank* item blank*)* line-close
//   line close      end of text | "\n" | "\r"   (nothing behind a line end is looked at)
#include "env/value_parser.h"

#include <tivlib/convert.h>

#include <cstring>
#include <initializer_list>

namespace tiv::env {

namespace {

using Pos = char*;

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_word_char(char c) {
  return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

Pos sign_opt(Pos p) { return *p == '+' || *p == '-' ? p + 1 : p; }
Pos digits(Pos p) {
  while (is_digit(*p)) ++p;
  return p;
}
Pos point_opt(Pos p) { return *p == '.' ? p + 1 : p; }
Pos blanks(Pos p) {
  while (*p == ' ' || *p == '\t') ++p;
  return p;
}

Pos exponent_tail(Pos p) {
  if (*p != 'E' && *p != 'e' && *p != 'D' && *p != 'd') return nullptr;
  ++p;
  if (Pos q = sign_opt(p); is_digit(*q)) p = q + 1;
  return digits(p);
}

Pos exponent_a(Pos p) {
  p = sign_opt(p);
  if (!is_digit(*p)) return nullptr;
  return exponent_tail(digits(point_opt(digits(p))));
}

Pos exponent_b(Pos p) {
  p = point_opt(digits(sign_opt(p)));
  if (!is_digit(*p)) return nullptr;
  return exponent_tail(digits(p));
}

Pos point_a(Pos p) {
  p = sign_opt(p);
  if (!is_digit(*p)) return nullptr;
  p = digits(p);
  if (*p != '.') return nullptr;
  return digits(p + 1);
}

Pos point_b(Pos p) {
  p = digits(sign_opt(p));
  if (*p != '.') return nullptr;
  ++p;
  if (!is_digit(*p)) return nullptr;
  return digits(p);
}

Pos whole(Pos p) {
  p = sign_opt(p);
  if (!is_digit(*p)) return nullptr;
  return digits(p);
}

Pos number(Pos p) {
  for (Pos (*alternative)(Pos) : {exponent_a, exponent_b, point_a, point_b})
    if (Pos q = alternative(p)) return q;
  return whole(p);
}

Pos word(Pos p) {
  if (!is_word_char(*p)) return nullptr;
  while (is_word_char(*p)) ++p;
  return p;
}

// Terminates the token [begin, end) in place for the length of its conversion.
class Token {
 public:
  Token(Pos begin, Pos end) : begin_(begin), end_(end), saved_(*end) { *end_ = '\0'; }
  ~Token() { *end_ = saved_; }
  Token(const Token&) = delete;
  Token& operator=(const Token&) = delete;
  const char* text() const { return begin_; }
  std::size_t length() const { return static_cast<std::size_t>(end_ - begin_); }

 private:
  Pos begin_;
  Pos end_;
  char saved_;
};

void collect(Grammar g, Pos begin, Pos end, ValueSink& sink) {
  Token token(begin, end);
  if (sink.refused || sink.stored >= sink.capacity) {
    sink.refused = true;
    return;
  }
  switch (g) {
    case Grammar::single_double:
    case Grammar::double_list:
      sink.doubles[sink.stored++] = convert_stod(token.text());
      return;
    case Grammar::single_long:
    case Grammar::long_list:
      sink.longs[sink.stored++] = convert_stol(token.text());
      return;
    case Grammar::word_list: {
      char* slot = sink.slots != nullptr ? sink.slots[sink.stored] : nullptr;
      if (slot == nullptr || token.length() >= static_cast<std::size_t>(sink.item_limit < 0 ? 0 : sink.item_limit)) {
        sink.refused = true;
        return;
      }
      std::memcpy(slot, token.text(), token.length() + 1);
      ++sink.stored;
      return;
    }
  }
}

// One item of the grammar, collected; none if it did not match.
Pos item(Grammar g, Pos p, ValueSink& sink) {
  Pos q = g == Grammar::word_list ? word(p)
          : (g == Grammar::single_long || g == Grammar::long_list) ? whole(p)
                                                                    : number(p);
  if (q != nullptr) collect(g, p, q, sink);
  return q;
}

bool line_close(Pos p) { return *p == '\0' || *p == '\n' || *p == '\r'; }

}  // namespace

bool parse_value(char* text, Grammar grammar, ValueSink& sink) noexcept {
  Pos p = item(grammar, blanks(text), sink);
  if (p == nullptr) return false;
  p = blanks(p);
  if (grammar != Grammar::single_double && grammar != Grammar::single_long) {
    while (*p == ',') {
      Pos q = item(grammar, blanks(p + 1), sink);
      if (q == nullptr) break;
      p = blanks(q);
    }
  }
  return line_close(p);
}

}  // namespace tiv::env
