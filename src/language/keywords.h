// Keyword tables: counted up to their nil entry, sorted once into an index array, searched
// by binary search with an exact byte comparison.
#pragma once

#include <cstdint>

namespace tiv::language {

// Entries of a nil-terminated table in front of the first nil (0 for a nil table).
int32_t count_keywords(const char* const* table) noexcept;

// Fills order with 0 .. count-1 arranged so that the keywords they name ascend, compared
// byte by byte as unsigned values.
void sort_keywords(const char* const* table, int32_t* order, int32_t count) noexcept;

// Position in the caller's table of the keyword equal to word, or -1 if there is none.
int32_t find_keyword(const char* const* table, const int32_t* order, int32_t count,
                     const char* word) noexcept;

}  // namespace tiv::language
