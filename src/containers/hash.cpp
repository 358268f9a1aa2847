// String-keyed tables of fixed prime size with open addressing and chained scopes.
//
// Storing probes p, 2p, 3p, ... (mod size) from the primary slot p and stops at the first free
// slot or the name itself; removal leaves no marker. Lookups walk the whole chain of parents
// in sweeps (see hash_get), passing over free slots, so a hole left by a removal never hides
// the names behind it.
#include <tivlib/hash.h>
#include <tivlib/heap.h>
#include <tivlib/zv.h>

#include <cstdint>
#include <cstring>
#include <new>

#include "containers/hash_table.h"

namespace {

using tiv::containers::hash::default_function;
using tiv::containers::hash::kMaxSlots;
using tiv::containers::hash::NameIndex;
using tiv::containers::hash::probe_step;
using tiv::containers::hash::primary_slot;
using tiv::containers::hash::Slot;
using tiv::containers::hash::table_size;

static_assert(sizeof(intptr_t) == sizeof(void *), "values and ids hold pointers");

// True when the slot holds `name`, whose hash in this table is `h`.
bool holds(const Slot &slot, const char *name, int32_t h) noexcept {
    return slot.name != nullptr && slot.hash == h && std::strcmp(slot.name, name) == 0;
}

// The storing probe: the first slot on p, 2p, 3p, ... that is free or holds `name` (hash h),
// or -1 when the sequence comes back to p (the table is full).
int32_t probe_for_storing(const hash_table *t, const char *name, int32_t h) noexcept {
    const int32_t p = primary_slot(h, t->size);
    int32_t at = p;
    do {
        const Slot &slot = t->slots[at];
        if (slot.name == nullptr || holds(slot, name, h)) return at;
        at += p;
        if (at >= t->size) at -= t->size;
    } while (at != p);
    return -1;
}

char *copy_name(const char *name) noexcept {
    const size_t length = std::strlen(name);
    if (length >= UINT32_MAX) return nullptr;
    auto *copy = static_cast<char *>(heap_malloc(static_cast<uint32_t>(length + 1)));
    if (copy != nullptr) std::memcpy(copy, name, length + 1);
    return copy;
}

void free_names(hash_table *t) noexcept {
    t->index->clear();
    for (int32_t i = 0; i < t->size; ++i) {
        heap_free(t->slots[i].name);
        t->slots[i].name = nullptr;
    }
}

bool valid_index(const hash_table *t, int32_t index) noexcept {
    return t != nullptr && index >= 0 && index < t->size;
}

}  // namespace

namespace tiv::containers::hash {

int32_t default_function(const char *key) noexcept {
    if (key == nullptr) {
        zv_error(" NIL  parameter", nullptr, nullptr, "Hash", __LINE__);
        return 0;
    }
    uint32_t sum = 0;  // unsigned so that long keys wrap instead of overflowing
    for (const char *c = key; *c != '\0'; ++c)
        sum += static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*c)));
    return static_cast<int32_t>(sum);
}

}  // namespace tiv::containers::hash

extern "C" {

// Sizes whose slot array would not fit one allocation give nil, as if memory had run out.
hash_table *hash_open(intptr_t id, int32_t size, hash_function_fn function,
                      hash_table *parent) noexcept {
    const int64_t slots = table_size(size);
    if (slots > kMaxSlots) return nullptr;
    auto *t = static_cast<hash_table *>(heap_calloc(1, sizeof(hash_table)));
    if (t == nullptr) return nullptr;
    t->slots = static_cast<Slot *>(heap_calloc(static_cast<uint32_t>(slots), sizeof(Slot)));
    t->index = new (std::nothrow) NameIndex();
    if (t->slots == nullptr || t->index == nullptr) {
        delete t->index;
        heap_free(t->slots);
        heap_free(t);
        return nullptr;
    }
    t->id = id;
    t->size = static_cast<int32_t>(slots);
    if (function != nullptr)
        t->hash_function = function;
    else if (parent != nullptr)
        t->hash_function = parent->hash_function;
    else
        t->hash_function = default_function;
    t->parent = parent;
    t->children = 0;
    t->probe_pos = -1;
    t->probe_start = -1;
    if (parent != nullptr) ++parent->children;
    return t;
}

void hash_close(hash_table *table) noexcept {
    if (table == nullptr || table->children > 0) return;
    free_names(table);
    delete table->index;
    heap_free(table->slots);
    if (table->parent != nullptr) --table->parent->children;
    heap_free(table);
}

void hash_reset(hash_table *table) noexcept {
    if (table == nullptr) return;
    free_names(table);
    table->probe_pos = -1;
    table->probe_start = -1;
}

int32_t hash_put(hash_table *table, const char *name, intptr_t value) noexcept {
    if (table == nullptr || name == nullptr) return -1;
    const int32_t h = table->hash_function(name);
    const int32_t at = probe_for_storing(table, name, h);
    if (at < 0) return -1;
    Slot &slot = table->slots[at];
    if (slot.name == nullptr) {
        char *copy = copy_name(name);
        if (copy == nullptr || !table->index->add(copy, at)) {
            heap_free(copy);
            return -1;
        }
        slot.name = copy;
        slot.hash = h;
    }
    slot.value = value;
    return at;
}

// Searches the chain from `table` outwards. The first pass looks at the primary slot of every
// table; then each sweep advances every table's probe by its stride and looks there, until a
// sweep in which every table's cycle closes at once. So a name in a primary slot anywhere in
// the chain beats a probed one, fewer steps beat more, and at equal steps the inner table wins.
int32_t hash_get(hash_table *table, const char *name, intptr_t *value, intptr_t *id) noexcept {
    if (table == nullptr || name == nullptr) return -1;
    // Tables of a chain usually share one function: hash once per distinct function.
    hash_function_fn hashed_by = nullptr;
    int32_t h = 0;
    auto hash_in = [&](const hash_table *t) {
        if (t->hash_function != hashed_by) {
            hashed_by = t->hash_function;
            h = hashed_by(name);
        }
        return h;
    };
    hash_table *found = nullptr;
    int32_t at = -1;
    for (hash_table *t = table; t != nullptr; t = t->parent) {
        t->probe_hash = hash_in(t);
        const int32_t p = primary_slot(t->probe_hash, t->size);
        t->probe_pos = p;
        t->probe_start = p;
        if (holds(t->slots[p], name, t->probe_hash)) {
            found = t;
            at = p;
            break;
        }
    }
    if (found == nullptr) {
        // The sweeps reach slot s of a table at the step k with k * p = s (mod size): the
        // index gives the slots that hold the name, and the fewest steps win, the inner table
        // at equal steps, as the sweeps themselves would decide.
        int64_t best = INT64_MAX;
        for (hash_table *t = table; t != nullptr; t = t->parent) {
            const int32_t h = t->probe_hash;
            const int32_t p = t->probe_start;
            t->index->for_each(name, [&](int32_t s) {
                if (!holds(t->slots[s], name, h)) return;
                const int64_t step = probe_step(s, p, t->size);
                if (step < best) {  // tables are met inner first: equal steps stay inner
                    best = step;
                    found = t;
                    at = s;
                }
            });
        }
        if (found == nullptr) return -1;
    }
    if (value != nullptr) *value = found->slots[at].value;
    if (id != nullptr) *id = found->id;
    return at;
}

int32_t hash_get_index(hash_table *table, int32_t index, char **name, intptr_t *value) noexcept {
    if (!valid_index(table, index) || table->slots[index].name == nullptr) {
        if (name != nullptr) *name = nullptr;
        return -1;
    }
    const Slot &slot = table->slots[index];
    if (name != nullptr) *name = copy_name(slot.name);
    if (value != nullptr) *value = slot.value;
    return index;
}

int32_t hash_remove_name(hash_table *table, const char *name) noexcept {
    if (table == nullptr || name == nullptr) return -1;
    const int32_t at = probe_for_storing(table, name, table->hash_function(name));
    if (at < 0 || table->slots[at].name == nullptr) return -1;
    table->index->remove(table->slots[at].name, at);
    heap_free(table->slots[at].name);
    table->slots[at].name = nullptr;
    return at;
}

int32_t hash_remove_index(hash_table *table, int32_t index) noexcept {
    if (!valid_index(table, index) || table->slots[index].name == nullptr) return -1;
    table->index->remove(table->slots[index].name, index);
    heap_free(table->slots[index].name);
    table->slots[index].name = nullptr;
    return index;
}

}  // extern "C"
