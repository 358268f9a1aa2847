// Test support for the scanner: a reader over a string held in process-wide state (the reader
// has no context argument) and a helper that collects a whole token stream.
#pragma once

#include <tivlib/scan.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tiv::test {

// What the reader delivers: the bytes of text, then -1.
struct SourceText {
  static inline std::string text;
  static inline size_t position = 0;

  static void set(std::string t) {
    text = std::move(t);
    position = 0;
  }
  static int32_t read() {
    if (position >= text.size()) return -1;
    return static_cast<unsigned char>(text[position++]);
  }
};

struct Token {
  int32_t kind;
  std::string text;
  int32_t lvalue;
  int32_t status;
  int32_t line;
  int32_t column;
  double dvalue;
};

// Scans text with flags (and keywords) up to and including the first end-of-input token.
inline std::vector<Token> scan_all(const std::string& text, int32_t flags,
                                   const char* const* keywords = nullptr) {
  SourceText::set(text);
  scanner* s = scan_open(&SourceText::read, flags, keywords);
  std::vector<Token> out;
  if (s == nullptr) return out;
  for (int guard = 0; guard < 100000; ++guard) {
    int32_t kind = -1;
    scan_record r{};
    const int32_t status = scan_token(s, &kind, &r);
    out.push_back({kind, r.text, r.lvalue, status, r.line, r.column, r.dvalue});
    if (kind == SCAN_T_EOF) break;
  }
  scan_close(s);
  return out;
}

// Kinds and texts only, for comparing whole streams.
using KindTexts = std::vector<std::pair<int32_t, std::string>>;
inline KindTexts kinds_texts(const std::vector<Token>& tokens) {
  KindTexts out;
  for (const Token& t : tokens) out.emplace_back(t.kind, t.text);
  return out;
}

// One field of every token (or of the first count tokens), for comparing whole columns.
template <class T>
std::vector<T> each(const std::vector<Token>& tokens, T Token::*field, size_t count = SIZE_MAX) {
  std::vector<T> out;
  for (size_t i = 0; i < tokens.size() && i < count; ++i) out.push_back(tokens[i].*field);
  return out;
}
using Longs = std::vector<int32_t>;

}  // namespace tiv::test
