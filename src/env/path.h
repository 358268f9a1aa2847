// The path language: the delimiter, and a path split into names and positions.
//
// Every character of the delimiter separates; runs of separators count as one, and none is
// produced at either end, so no token is empty. A path reads name, optional position, name,
// optional position...: a token of digits alone right behind a name is that name's position.
#pragma once

#include <cstdint>

namespace tiv::env {

inline constexpr int kPathMax = 511;          // characters of a path that can be split
inline constexpr int kPathDelimitersMax = 126; // delimiter characters in such a path
inline constexpr int kDelimiterMax = 254;     // characters of the delimiter
inline constexpr int32_t kPositionMax = 999999999; // larger positions are read as this

// The delimiter as it is now, and its first character.
const char* delimiter() noexcept;
char delimiter_first() noexcept;
// Sets the delimiter; see env_set_delimiter.
char* set_delimiter(const char* text) noexcept;

// A split path and the place of the walk in it. Lives on the stack of one operation.
struct SplitPath {
  char copy[kPathMax + 1];
  const char* tokens[kPathDelimitersMax + 2];
  int count = 0;
  int next_token = 0;
  const char* name = nullptr;  // the current name, none when all are used
  int32_t position = 0;        // the current name's position

  // Splits path; on failure reports and gives false (the status is then -6).
  bool split(const char* path, int line) noexcept;
  // Steps to the next name and its position.
  void step() noexcept;
  // True if a name follows the current one.
  bool more() const noexcept { return next_token < count; }
};

// True if text consists of the digits 0 to 9 only (and is not empty).
bool all_digits(const char* text) noexcept;

}  // namespace tiv::env
