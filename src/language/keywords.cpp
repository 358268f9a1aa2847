#include "language/keywords.h"

#include <algorithm>
#include <cstring>

namespace tiv::language {

int32_t count_keywords(const char* const* table) noexcept {
  if (table == nullptr) return 0;
  int32_t n = 0;
  while (table[n] != nullptr && n < INT32_MAX) ++n;
  return n;
}

// Equal keywords keep their table order, so the arrangement is deterministic; which of two
// equal keywords a search delivers is not promised.
void sort_keywords(const char* const* table, int32_t* order, int32_t count) noexcept {
  for (int32_t i = 0; i < count; ++i) order[i] = i;
  std::sort(order, order + count, [table](int32_t a, int32_t b) {
    const int c = std::strcmp(table[a], table[b]);
    return c < 0 || (c == 0 && a < b);
  });
}

// Compares the ends of the sorted order first, then halves the inside: with low and high
// on places already compared, the middle is low + (high - low) / 2, and the search ends
// once no place is left between them.
int32_t find_keyword(const char* const* table, const int32_t* order, int32_t count,
                     const char* word) noexcept {
  if (count <= 0 || table == nullptr || order == nullptr) return -1;
  if (std::strcmp(word, table[order[0]]) == 0) return order[0];
  if (std::strcmp(word, table[order[count - 1]]) == 0) return order[count - 1];
  if (count < 3) return -1;
  int32_t low = 0;
  int32_t high = count - 1;
  while (high - 1 > low) {
    const int32_t middle = low + (high - low) / 2;
    const int c = std::strcmp(word, table[order[middle]]);
    if (c == 0) return order[middle];
    if (c < 0)
      high = middle;
    else
      low = middle;
  }
  return -1;
}

}  // namespace tiv::language
