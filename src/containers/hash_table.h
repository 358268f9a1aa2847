// The record behind a hash_table handle and the pure rules that shape it: table size, the
// default hash function and the primary slot of a name.
#pragma once

#include <tivlib/hash.h>

#include <cstdint>
#include <limits>

#include "containers/hash_index.h"

namespace tiv::containers::hash {

// One slot. A nil name marks a free slot; the value of a freed slot stays, unseen. `hash` is
// the table function's value for the name, kept so that probes compare names only when the
// hashes agree (a hash function gives the same value for the same key every time).
struct Slot {
    char *name;
    intptr_t value;
    int32_t hash;
};

// The smallest table, and the largest one whose slot array can be asked of the allocator in
// one block (its byte count must fit the allocator's 32-bit size).
constexpr int32_t kMinSize = 3;
constexpr int64_t kMaxSlots = std::numeric_limits<uint32_t>::max() / sizeof(Slot);

// Odd and at least 3, and below 9 that is enough; 2 does not count.
constexpr bool is_table_prime(int64_t n) noexcept {
    if (n < 3 || n % 2 == 0) return false;
    for (int64_t d = 3; d * d <= n; d += 2)
        if (n % d == 0) return false;
    return true;
}

// The smallest odd prime not below `wanted`: any wanted size of 3 or less gives 3.
constexpr int64_t table_size(int32_t wanted) noexcept {
    int64_t n = wanted;
    if (is_table_prime(n)) return n;
    if (n < kMinSize) return kMinSize;
    if (n % 2 == 0) ++n;
    while (!is_table_prime(n)) n += 2;
    return n;
}

// Sum of the key's bytes taken as signed 8-bit numbers, in 32-bit arithmetic (wrapping). A nil
// key is reported with the source "Hash" and gives 0.
int32_t default_function(const char *key) noexcept;

// Primary slot of a hash value in a table of `size` slots: |h| modulo (size - 1), plus 1, so
// it lies in 1 .. size-1 and is also the stride of the probe. The most negative h, which a
// hash function must not give, is taken by its magnitude instead of overflowing.
constexpr int32_t primary_slot(int32_t h, int32_t size) noexcept {
    const int64_t magnitude = h < 0 ? -static_cast<int64_t>(h) : h;
    return static_cast<int32_t>(magnitude % (size - 1)) + 1;
}

}  // namespace tiv::containers::hash

// The table handle. `size` is a prime fixed at opening; `slots` holds `size` entries. `children`
// counts the open tables whose parent this one is. `probe_pos` and `probe_start` are the
// working state of the last hash_get (-1 after opening and after hash_reset), and `probe_hash`
// the hash of the name it looks for in this table. `index` knows which slots hold which name.
struct hash_table {
    intptr_t id;
    int32_t size;
    tiv::containers::hash::Slot *slots;
    hash_function_fn hash_function;
    hash_table *parent;
    int32_t children;
    int32_t probe_pos;
    int32_t probe_start;
    int32_t probe_hash;
    tiv::containers::hash::NameIndex *index;
};
