// The value parser of the typed reads.
//
// A hand-written parser over an element's own text, with ordered choice and back-off at
// every sequence, for five grammars: one double, one long, and comma lists of doubles,
// longs or words. It neither copies nor allocates: a matched token is terminated in place
// for the length of its conversion and then mended. Values go to a ValueSink as they match,
// so a number is stored even if the text turns out bad behind it.
#pragma once

#include <cstdint>

namespace tiv::env {

enum class Grammar { single_double, single_long, double_list, long_list, word_list };

// Where matched values go: the caller's array of capacity items. A value that finds no room
// (or, for words, no slot, or a slot too small) is not stored and sets refused.
struct ValueSink {
  double* doubles = nullptr;
  int32_t* longs = nullptr;
  char** slots = nullptr;    // word lists: the caller's buffers
  int32_t item_limit = 0;    // word lists: bytes of each buffer, terminator included
  int32_t capacity = 0;
  int32_t stored = 0;
  bool refused = false;
};

// Runs grammar over text; true if the whole grammar matched.
bool parse_value(char* text, Grammar grammar, ValueSink& sink) noexcept;

}  // namespace tiv::env
