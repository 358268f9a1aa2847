// The tokenizer: reading and folding characters, the token rules, and the exported scan_
// operations.
#include <array>
#include <cstddef>
#include <cstring>
#include <new>

#include <tivlib/heap.h>
#include <tivlib/scan.h>

#include "language/keywords.h"
#include "language/number.h"
#include "language/scanner.h"
#include "language/trace.h"

namespace {

constexpr int32_t kEnd = 0;        // end of the input, sticky once read
constexpr int32_t kLineEnd = 10;
constexpr int32_t kBlank = 32;
constexpr int32_t kNoKeyword = -1;

// The seven German letters of code page 437 and their case partners (225 has none).
constexpr int32_t kUpperAe = 142, kUpperOe = 153, kUpperUe = 154;
constexpr int32_t kLowerAe = 132, kLowerOe = 148, kLowerUe = 129, kSharpS = 225;

constexpr bool is_umlaut(int32_t c) noexcept {
  return c == kUpperAe || c == kUpperOe || c == kUpperUe || c == kLowerAe || c == kLowerOe ||
         c == kLowerUe || c == kSharpS;
}
constexpr bool is_ascii_letter(int32_t c) noexcept {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool is_digit(int32_t c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool is_hex_digit(int32_t c) noexcept {
  return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
constexpr int32_t hex_value(int32_t c) noexcept {
  return is_digit(c) ? c - '0' : (c >= 'a' ? c - 'a' + 10 : c - 'A' + 10);
}

// The symbol kind of each character below 128 that the symbol rule knows, VOID otherwise.
// The double quote is a symbol only for script scanners and is patched in there.
constexpr std::array<int8_t, 128> kSymbols = [] {
  std::array<int8_t, 128> t{};
  for (auto& k : t) k = SCAN_T_VOID;
  t['='] = SCAN_T_EQUAL;      t['#'] = SCAN_T_NOTEQUAL;  t[','] = SCAN_T_COMMA;
  t[';'] = SCAN_T_SEMICOLON;  t['.'] = SCAN_T_DOT;       t[':'] = SCAN_T_COLON;
  t['+'] = SCAN_T_PLUS;       t['-'] = SCAN_T_MINUS;     t['*'] = SCAN_T_STAR;
  t['/'] = SCAN_T_SLASH;      t['^'] = SCAN_T_POWER;     t['<'] = SCAN_T_LESS;
  t['>'] = SCAN_T_GREATER;    t['('] = SCAN_T_LPAREN;    t[')'] = SCAN_T_RPAREN;
  t['{'] = SCAN_T_LBRACE;     t['}'] = SCAN_T_RBRACE;    t['['] = SCAN_T_LBRACKET;
  t[']'] = SCAN_T_RBRACKET;   t['$'] = SCAN_T_DOLLAR;    t['@'] = SCAN_T_AT;
  t['%'] = SCAN_T_PERCENT;    t['&'] = SCAN_T_AMPERSAND; t['?'] = SCAN_T_QUESTION;
  t['!'] = SCAN_T_EXCLAMATION; t['|'] = SCAN_T_BAR;      t['\\'] = SCAN_T_BACKSLASH;
  t['~'] = SCAN_T_TILDE;
  return t;
}();

// Kind of a two-character relation whose first character was a, second b (both of < > =).
constexpr int32_t relation_kind(int32_t a, int32_t b) noexcept {
  if (a == '<') return b == '>' ? SCAN_T_NOTEQUAL : b == '=' ? SCAN_T_LESSEQUAL : SCAN_T_LESS;
  if (a == '>') return b == '<' ? SCAN_T_NOTEQUAL : b == '=' ? SCAN_T_GREATEREQUAL : SCAN_T_GREATER;
  return b == '<' ? SCAN_T_LESSEQUAL : b == '>' ? SCAN_T_GREATEREQUAL : SCAN_T_EQUAL;
}
constexpr bool is_relation_char(int32_t c) noexcept { return c == '<' || c == '>' || c == '='; }

// Case folding of one character read; with both fold flags, lower case wins.
constexpr int32_t fold(int32_t c, int32_t flags) noexcept {
  if (flags & SCAN_F_LOWER) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (flags & SCAN_F_UMLAUTS) {
      if (c == kUpperAe) return kLowerAe;
      if (c == kUpperOe) return kLowerOe;
      if (c == kUpperUe) return kLowerUe;
    }
  } else if (flags & SCAN_F_UPPER) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (flags & SCAN_F_UMLAUTS) {
      if (c == kLowerAe) return kUpperAe;
      if (c == kLowerOe) return kUpperOe;
      if (c == kLowerUe) return kUpperUe;
    }
  }
  return c;
}

constexpr char byte_of(int32_t c) noexcept {
  return static_cast<char>(static_cast<unsigned char>(c & 0xFF));
}

// One scan_token or scan_character call: the scanner, its current character (taken from the
// look-ahead at the start and put back at the end), and for tokens the record being built.
class Tokenizer {
 public:
  Tokenizer(scanner& s, scan_record& r) noexcept
      : s_(s), r_(r), reader_(s.reader), flags_(s.flags), line_(s.line), column_(s.column),
        c_(s.lookahead) {}

  // Reads one character: counts the position of the one before, maps the end of the input
  // to 0 and control characters to blanks, and folds case. The end of the input is sticky.
  void advance() noexcept {
    const int32_t previous = c_;
    if (previous == kEnd) return;
    int32_t next = reader_();
    if (previous == kLineEnd) {
      column_ = 0;
      line_ = wrap_add(line_, 1);
    } else {
      column_ = wrap_add(column_, 1);
    }
    if (next == -1)
      next = kEnd;
    else if (next >= 1 && next <= 31 && next != kLineEnd)
      next = kBlank;
    if (flags_ & (SCAN_F_LOWER | SCAN_F_UPPER)) next = fold(next, flags_);
    c_ = next;
  }

  // Puts the current character back as the look-ahead, with its position.
  void store() noexcept {
    s_.lookahead = c_;
    s_.line = line_;
    s_.column = column_;
  }

  int32_t token(int32_t& kind) noexcept;

 private:
  static int32_t wrap_add(int32_t a, int32_t b) noexcept {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
  }
  bool flag(int32_t f) const noexcept { return (flags_ & f) != 0; }
  bool word_char(int32_t c) const noexcept {
    return is_ascii_letter(c) || c == '_' || ((flags_ & SCAN_F_UMLAUTS) && is_umlaut(c));
  }

  // Appends to the record's text; false (nothing stored) once 255 characters are there.
  bool put(int32_t c) noexcept {
    if (len_ >= SCAN_TEXT_MAX) return false;
    r_.text[len_++] = byte_of(c);
    return true;
  }
  void set_text(const char* t) noexcept {
    len_ = 0;
    while (*t) r_.text[len_++] = *t++;
  }
  void finish_text() noexcept { r_.text[len_] = '\0'; }

  int32_t word();
  int32_t number(bool negative, bool began_with_dot);
  int32_t sign();
  int32_t character_constant();
  int32_t string(int32_t closer, int32_t kind);
  int32_t symbol();
  void skip_line_comment() noexcept;
  void skip_block_comment() noexcept;

  // The scanner's reader, flags and position are held here during the call (the reader is
  // an outside call, so fields of the object would be reloaded after every character).
  scanner& s_;
  scan_record& r_;
  scan_reader reader_;
  int32_t flags_;
  int32_t line_;
  int32_t column_;
  int32_t c_;
  int len_ = 0;
  int32_t status_ = SCAN_OK;
};

// Skips blanks (and line ends unless they are tokens), notes the token's position and runs
// the first rule that fits the current character. Comments and continuations produce no
// token and start over.
int32_t Tokenizer::token(int32_t& kind) noexcept {
  for (;;) {
    while (c_ == kBlank || (c_ == kLineEnd && !flag(SCAN_F_EOL))) advance();
    r_.line = line_;
    r_.column = column_;
    const int32_t c = c_;
    if (word_char(c)) {
      kind = word();
    } else if (is_digit(c)) {
      kind = number(false, false);
    } else if (c == '.') {
      advance();
      if (is_digit(c_)) {
        kind = number(false, true);
      } else {
        set_text(".");
        kind = SCAN_T_DOT;
      }
    } else if (c == '+' || c == '-') {
      kind = sign();
    } else if (c == '\'') {
      kind = character_constant();
    } else if (c == '#' && flag(SCAN_F_SCRIPT)) {
      skip_line_comment();
      continue;
    } else if (c == '`' && flag(SCAN_F_SCRIPT)) {
      kind = string('\'', SCAN_T_QUOTED);
    } else if (c == '"' && !flag(SCAN_F_SCRIPT)) {
      kind = string('"', SCAN_T_STRING);
    } else if (c == '/') {
      advance();
      if (c_ == '*' && flag(SCAN_F_BLOCK_COMMENT)) {
        skip_block_comment();
        continue;
      }
      if (c_ == '/' && flag(SCAN_F_LINE_COMMENT)) {
        skip_line_comment();
        continue;
      }
      set_text("/");
      kind = SCAN_T_SLASH;
    } else if (c == '*') {
      advance();
      if (c_ == '*' && flag(SCAN_F_POWER)) {
        advance();
        set_text("^");
        kind = SCAN_T_POWER;
      } else {
        set_text("*");
        kind = SCAN_T_STAR;
      }
    } else if (c == '!' && flag(SCAN_F_BANG_COMMENT)) {
      skip_line_comment();
      continue;
    } else if (c == '\\') {
      advance();
      while (c_ == kBlank) advance();
      if (c_ == kLineEnd && flag(SCAN_F_CONTINUE)) {
        advance();
        continue;
      }
      set_text("\\");
      kind = SCAN_T_BACKSLASH;
    } else {
      kind = symbol();
    }
    finish_text();
    return status_;
  }
}

// Letters, '_' (and umlauts with the flag) then digits too; at most 255 kept, the rest read
// and dropped. The (cut) word is then looked up in the keyword table.
int32_t Tokenizer::word() {
  while (word_char(c_) || is_digit(c_)) {
    if (!put(c_)) status_ = SCAN_E_IDENTIFIER;
    advance();
  }
  r_.lvalue = len_;
  finish_text();
  const int32_t hit =
      tiv::language::find_keyword(s_.keywords, s_.keyword_order, s_.keyword_count, r_.text);
  if (hit == kNoKeyword) return SCAN_T_IDENTIFIER;
  r_.lvalue = hit;
  return SCAN_T_KEYWORD;
}

// A number: optional '-', a dot already consumed, digits, a fraction, an exponent. Only the
// first 255 characters are kept and the value is that of the kept text; the rest of an
// overlong number is read and dropped without a status (no code exists for it).
int32_t Tokenizer::number(bool negative, bool began_with_dot) {
  bool floating = began_with_dot;
  if (negative) put('-');
  if (began_with_dot) put('.');
  auto digits = [this] {
    while (is_digit(c_)) {
      put(c_);
      advance();
    }
  };
  digits();
  if (!began_with_dot && c_ == '.') {
    put('.');
    floating = true;
    advance();
    digits();
  }
  if (c_ == 'e' || c_ == 'E') {
    put('e');
    floating = true;
    advance();
    if (c_ == '+' || c_ == '-') {
      put(c_);
      advance();
    }
    if (is_digit(c_))
      digits();
    else
      status_ = SCAN_E_EXPONENT;
  }
  finish_text();
  if (floating) {
    r_.dvalue = tiv::language::decimal_prefix_value(r_.text, static_cast<size_t>(len_));
    return SCAN_T_DOUBLE;
  }
  uint32_t value = 0;
  for (int i = negative ? 1 : 0; i < len_; ++i)
    value = value * 10u + static_cast<uint32_t>(r_.text[i] - '0');
  if (negative) value = 0u - value;
  r_.lvalue = static_cast<int32_t>(value);
  return SCAN_T_LONG;
}

// '+' or '-': with SCAN_F_SIGNED a digit, or a dot and a digit, behind it makes a signed
// number. A sign and a dot with no digit owe the dot to the next call.
int32_t Tokenizer::sign() {
  const int32_t c = c_;
  const bool negative = c == '-';
  const int32_t kind = negative ? SCAN_T_MINUS : SCAN_T_PLUS;
  advance();
  if (flag(SCAN_F_SIGNED)) {
    if (is_digit(c_)) return number(negative, false);
    if (c_ == '.') {
      advance();
      if (is_digit(c_)) return number(negative, true);
      s_.pending_dot = 1;
    }
  }
  set_text(negative ? "-" : "+");
  return kind;
}

// 'x', '\ooo' (up to three digits, 8 and 9 included), '\xhhh', '\a' and the other letter
// escapes. text keeps the source form between the apostrophes.
int32_t Tokenizer::character_constant() {
  advance();
  const int32_t first = c_;
  put(first);
  r_.lvalue = static_cast<unsigned char>(byte_of(first));
  if (first != '\\') {
    advance();
  } else {
    advance();
    const int32_t e = c_;
    if (is_digit(e)) {
      int32_t value = 0;
      for (int n = 0; n < 3 && is_digit(c_); ++n) {
        put(c_);
        value = value * 8 + (c_ - '0');
        advance();
      }
      r_.lvalue = value;
    } else if (e == 'x' || e == 'X') {
      put(e);
      advance();
      int32_t value = 0;
      for (int n = 0; n < 3 && is_hex_digit(c_); ++n) {
        put(c_);
        value = value * 16 + hex_value(c_);
        advance();
      }
      r_.lvalue = value;
    } else {
      put(e);
      switch (e) {
        case 'a': r_.lvalue = 7; break;
        case 'b': r_.lvalue = 8; break;
        case 'f': r_.lvalue = 12; break;
        case 'n': r_.lvalue = 10; break;
        case 'r': r_.lvalue = 13; break;
        case 't': r_.lvalue = 9; break;
        case 'v': r_.lvalue = 11; break;
        case '\'': r_.lvalue = 39; break;
        case '"': r_.lvalue = 34; break;
        case '\\': r_.lvalue = 92; break;
        default:
          r_.lvalue = kBlank;
          status_ = SCAN_E_ESCAPE;
          break;
      }
      advance();
    }
  }
  if (c_ == '\'')
    advance();
  else
    status_ = SCAN_E_CHAR;
  return SCAN_T_CHAR;
}

// Contents up to the closer, which an active backslash escapes. A line end or the end of the
// input stops the string unclosed and stays unconsumed. Nothing is translated.
int32_t Tokenizer::string(int32_t closer, int32_t kind) {
  advance();
  bool escaped = false;
  for (;;) {
    if (c_ == kLineEnd || c_ == kEnd) {
      status_ = SCAN_E_UNCLOSED;
      break;
    }
    if (c_ == closer && !escaped) {
      advance();
      break;
    }
    if (!put(c_)) status_ = SCAN_E_STRING;
    escaped = c_ == '\\' && !escaped;
    advance();
  }
  r_.lvalue = len_;
  return kind;
}

// Everything else by character value; the end of the input and a line end have a blank for
// text. With SCAN_F_RELATIONS a second < > or = joins a first one.
int32_t Tokenizer::symbol() {
  const int32_t c = c_;
  advance();
  if (c == kEnd) {
    set_text(" ");
    return SCAN_T_EOF;
  }
  if (c == kLineEnd) {
    set_text(" ");
    return SCAN_T_EOL;
  }
  if (c < 0) {
    set_text(" ");
    return SCAN_T_VOID;
  }
  put(c);
  int32_t kind = SCAN_T_VOID;
  if (c < 128) kind = kSymbols[static_cast<size_t>(c)];
  if (c == '"' && flag(SCAN_F_SCRIPT)) kind = SCAN_T_DQUOTE;
  if (flag(SCAN_F_RELATIONS) && is_relation_char(c) && is_relation_char(c_)) {
    kind = relation_kind(c, c_);
    put(c_);
    advance();
  }
  return kind;
}

// Up to the line end or the end of the input, neither consumed.
void Tokenizer::skip_line_comment() noexcept {
  do advance();
  while (c_ != kLineEnd && c_ != kEnd);
}

// Called on the star of "/*". Ends behind a slash that follows a star (the opener's star
// counts, so "/*/" is whole) or silently at the end of the input.
void Tokenizer::skip_block_comment() noexcept {
  bool star = true;
  for (;;) {
    advance();
    if (c_ == kEnd) return;
    if (c_ == '/' && star) {
      advance();
      return;
    }
    star = c_ == '*';
  }
}

void clear_record(scan_record& r) noexcept {
  r.text[0] = '\0';
  r.dvalue = 0.0;
  r.lvalue = 0;
}

}  // namespace

namespace tiv::language {

scanner* open_scanner(scan_reader reader, int32_t flags, const char* const* keywords,
                      int32_t count, const int32_t* order) noexcept {
  if (reader == nullptr) return nullptr;
  auto* s = static_cast<scanner*>(heap_malloc(sizeof(scanner)));
  if (s == nullptr) return nullptr;
  *s = scanner{reader, kBlank, 0, flags, count > 0 ? keywords : nullptr, 0, -1, 0,
               count > 0 ? count : 0, count > 0 ? order : nullptr};
  if (flags & SCAN_F_TRACE) s->trace_id = trace_attach();
  return s;
}

}  // namespace tiv::language

// The object and its keyword order share one heap block; a nil reader gives nil, since the
// scanner could never read.
extern "C" scanner* scan_open(scan_reader reader, int32_t flags,
                              const char* const* keywords) noexcept {
  if (reader == nullptr) return nullptr;
  const int32_t count = tiv::language::count_keywords(keywords);
  if (count == 0) return tiv::language::open_scanner(reader, flags, nullptr, 0, nullptr);
  const size_t bytes = sizeof(scanner) + sizeof(int32_t) * static_cast<size_t>(count);
  if (bytes > UINT32_MAX) return nullptr;
  auto* s = static_cast<scanner*>(heap_malloc(static_cast<uint32_t>(bytes)));
  if (s == nullptr) return nullptr;
  auto* order = reinterpret_cast<int32_t*>(s + 1);
  tiv::language::sort_keywords(keywords, order, count);
  *s = scanner{reader, kBlank, 0, flags, keywords, 0, -1, 0, count, order};
  if (flags & SCAN_F_TRACE) s->trace_id = tiv::language::trace_attach();
  return s;
}

extern "C" void scan_close(scanner* scan) noexcept {
  if (scan == nullptr) return;
  if (scan->flags & SCAN_F_TRACE) tiv::language::trace_detach();
  heap_free(scan);
}

// Back to the start state; the reader (which the caller rewinds), flags, keywords and the
// trace id stay.
extern "C" void scan_reset(scanner* scan) noexcept {
  if (scan == nullptr) return;
  scan->lookahead = kBlank;
  scan->pending_dot = 0;
  scan->line = 0;
  scan->column = -1;
}

// A nil scanner delivers the end of the input; nil outputs are tolerated.
extern "C" int32_t scan_token(scanner* scan, int32_t* kind, scan_record* record) noexcept {
  int32_t kind_local = SCAN_T_EOF;
  scan_record record_local;
  int32_t& k = kind != nullptr ? *kind : kind_local;
  scan_record& r = record != nullptr ? *record : record_local;
  clear_record(r);
  if (scan == nullptr) {
    std::memcpy(r.text, " ", 2);
    k = SCAN_T_EOF;
    return SCAN_OK;
  }
  if (scan->pending_dot) {
    scan->pending_dot = 0;
    std::memcpy(r.text, ".", 2);
    k = SCAN_T_DOT;
    return SCAN_OK;
  }
  Tokenizer t(*scan, r);
  const int32_t status = t.token(k);
  t.store();
  if (scan->flags & SCAN_F_TRACE) tiv::language::trace_write(scan->trace_id, k, r);
  return status;
}

// The look-ahead character and its class, then one character read; nothing skipped.
extern "C" void scan_character(scanner* scan, int32_t* klass, char* character) noexcept {
  if (scan == nullptr) {
    if (klass != nullptr) *klass = SCAN_T_EOF;
    if (character != nullptr) *character = '\0';
    return;
  }
  const int32_t c = scan->lookahead;
  int32_t k;
  if (is_ascii_letter(c) || ((scan->flags & SCAN_F_UMLAUTS) && is_umlaut(c)))
    k = SCAN_T_LETTER;
  else if (is_digit(c))
    k = SCAN_T_DIGIT;
  else if (c == kBlank)
    k = SCAN_T_BLANK;
  else if (c == kLineEnd)
    k = SCAN_T_EOL;
  else if (c == kEnd)
    k = SCAN_T_EOF;
  else if (c >= kBlank)
    k = SCAN_T_OTHER;
  else
    k = SCAN_T_VOID;
  if (klass != nullptr) *klass = k;
  if (character != nullptr) *character = byte_of(c);
  scan_record unused;
  Tokenizer t(*scan, unused);
  t.advance();
  t.store();
}

// The caller sees the token record: its layout is fixed.
static_assert(offsetof(scan_record, text) == 0);
static_assert(offsetof(scan_record, dvalue) == 256);
static_assert(offsetof(scan_record, lvalue) == 264);
static_assert(offsetof(scan_record, line) == 268);
static_assert(offsetof(scan_record, column) == 272);
static_assert(sizeof(scan_record) == 280);
