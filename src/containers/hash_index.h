// The names a hash table holds, with their slots, so that a lookup that misses, or finds its
// name behind collisions, needs no sweep over the slots.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace tiv::containers::hash {

class NameIndex {
 public:
    // Notes that `slot` holds `name` (a stored copy that lives as long as the slot holds it).
    // False when memory is out; the index is then as it was.
    bool add(const char *name, int32_t slot) noexcept {
        try {
            slots_.emplace(std::string_view(name), slot);
            return true;
        } catch (...) {
            return false;
        }
    }
    // Forgets that `slot` holds `name`.
    void remove(const char *name, int32_t slot) noexcept {
        auto [first, last] = slots_.equal_range(std::string_view(name));
        for (auto it = first; it != last; ++it) {
            if (it->second == slot) {
                slots_.erase(it);
                return;
            }
        }
    }
    void clear() noexcept { slots_.clear(); }
    // Calls visit(slot) for every slot that holds `name`.
    template <class Visit>
    void for_each(const char *name, Visit visit) const noexcept {
        auto [first, last] = slots_.equal_range(std::string_view(name));
        for (auto it = first; it != last; ++it) visit(it->second);
    }

 private:
    std::unordered_multimap<std::string_view, int32_t> slots_;
};

// The step at which the probe p, 2p, 3p, ... (mod size, a prime) reaches `slot`: k with
// k * p = slot (mod size), from 1 to size; the primary slot p is step 1, slot 0 the last.
constexpr int64_t probe_step(int32_t slot, int32_t p, int32_t size) noexcept {
    if (slot == 0) return size;
    // p^(size-2) is p's inverse modulo the prime size.
    int64_t inverse = 1, base = p % size;
    for (int64_t e = size - 2; e > 0; e >>= 1) {
        if (e & 1) inverse = inverse * base % size;
        base = base * base % size;
    }
    return static_cast<int64_t>(slot) * inverse % size;
}
static_assert(probe_step(3, 3, 7) == 1 && probe_step(6, 3, 7) == 2 && probe_step(2, 3, 7) == 3 &&
              probe_step(0, 3, 7) == 7);

}  // namespace tiv::containers::hash
