// Numbers in settings values: single numbers and comma lists, written and read in the C
// locale whatever locale the host has set.
//
// Forms: a long is "%ld"; a single double of the direct family is "%lf" (six decimals, no
// exponent); a double of the in-memory family and every double in a list is "%lg". A list is
// its items with "," between them, no blanks, no trailing comma. Reading cuts a value at each
// comma and converts each piece on its own (an empty piece is 0; one comma at the very end
// adds no item).
#pragma once

#include <cstddef>
#include <cstdint>

namespace tiv::settings {

// Characters of a single number on writing.
inline constexpr std::size_t kNumberMax = 79;
// Characters of a number list on writing, one comma counted per item.
inline constexpr std::size_t kListMax = 512;
// Text buffer of the number reads: the value and its terminator.
inline constexpr std::size_t kValueBufferMax = 512;

// Each gives false (and an empty out) when the text would pass kNumberMax characters;
// out holds kNumberMax + 1 characters.
bool format_long(int32_t value, char* out);
bool format_fixed(double value, char* out);    // "%lf"
bool format_general(double value, char* out);  // "%lg"

// Lists into out (kListMax + 1 characters). False when the items with their commas pass
// kListMax characters. A count of 0 or below gives the empty text.
bool format_longs(const int32_t* values, int32_t count, char* out);
bool format_doubles(const double* values, int32_t count, char* out);

// Cuts text (changed in place) into items. room is the size of values; on success *stored is
// the number of items and the result true. With more items than room, the first room items
// are stored and the result is false.
bool parse_longs(char* text, int32_t* values, int32_t room, int32_t* stored);
bool parse_doubles(char* text, double* values, int32_t room, int32_t* stored);

}  // namespace tiv::settings
