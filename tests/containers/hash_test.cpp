#include <gtest/gtest.h>
#include <tivlib/hash.h>
#include <tivlib/heap.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "containers/hash_table.h"
#include "fault_sweep.h"
#include "frame/fault.h"
#include "test_dir.h"

namespace {

// Keys of the form "name:h" hash to h, so tests choose primary slots (h mod (size-1) + 1).
int32_t chosen_hash(const char *key) {
    const char *colon = std::strchr(key, ':');
    return colon == nullptr ? 0 : static_cast<int32_t>(std::strtol(colon + 1, nullptr, 10));
}

struct Table {
    hash_table *t;
    explicit Table(int32_t size, hash_function_fn f = chosen_hash, hash_table *parent = nullptr,
                   intptr_t id = 0)
        : t(hash_open(id, size, f, parent)) {}
    ~Table() { hash_close(t); }
    operator hash_table *() const { return t; }
};

// Puts distinct names until hash_put fails; gives how many went in.
int fill(hash_table *t) {
    int n = 0;
    while (hash_put(t, ("k" + std::to_string(n)).c_str(), n) >= 0) ++n;
    return n;
}

// Slot, value and table id that hash_get finds for a name (value and id preset to -99).
using Found = std::array<intptr_t, 3>;
Found lookup(hash_table *t, const char *name) {
    intptr_t v = -99, id = -99;
    const int32_t slot = hash_get(t, name, &v, &id);
    return {slot, v, id};
}

TEST(Hash, FullTableRefusesNewNamesButReplacesValues) {
    Table t(3);
    EXPECT_EQ(fill(t), 3);
    EXPECT_EQ(hash_put(t, "new", 9), -1);
    const intptr_t at = lookup(t, "k1")[0];
    EXPECT_EQ(lookup(t, "k1"), (Found{at, 1, 0}));
    EXPECT_EQ(hash_put(t, "k1", 42), at);
    EXPECT_EQ(lookup(t, "k1"), (Found{at, 42, 0}));
}

TEST(Hash, DefaultFunctionCollisionAndAbsentNames) {
    Table t(11, nullptr);
    // 'a' + 'b' = 195: primary slot 195 % 10 + 1 = 6; the second lands in 12 % 11 = 1.
    EXPECT_EQ(hash_put(t, "ab", 1), 6);
    EXPECT_EQ(hash_put(t, "ba", 2), 1);
    EXPECT_EQ(lookup(t, "ba"), (Found{1, 2, 0}));
    // Misses leave the value alone: "abc" (294) finds its primary slot 5 free, "`c" (195 too)
    // finds its slots taken.
    const Found miss{-1, -99, -99};
    EXPECT_EQ(lookup(t, "abc"), miss);
    EXPECT_EQ(lookup(t, "`c"), miss);
    EXPECT_EQ(lookup(nullptr, "ab"), miss);
    EXPECT_EQ(lookup(t, nullptr), miss);
    EXPECT_EQ(hash_put(nullptr, "x", 1), -1);
    EXPECT_EQ(hash_put(t, nullptr, 1), -1);
    EXPECT_EQ(hash_remove_name(t, nullptr), -1);
}

TEST(HashChain, ChildSeesParentAndHidesItWithItsOwnEntry) {
    Table parent(11, chosen_hash, nullptr, 100);
    Table child(5, nullptr, parent, 200);
    EXPECT_EQ(hash_put(parent, "x:3", 1), 4);
    EXPECT_EQ(lookup(child, "x:3"), (Found{4, 1, 100}));
    // The child took the parent's function: "x:3" goes to 3 % 4 + 1 = 4 of its 5 slots.
    EXPECT_EQ(hash_put(child, "x:3", 2), 4);
    EXPECT_EQ(lookup(child, "x:3"), (Found{4, 2, 200}));
    EXPECT_EQ(hash_remove_name(child, "x:3"), 4);
    EXPECT_EQ(lookup(child, "x:3"), (Found{4, 1, 100}));
}

TEST(HashChain, PrimarySlotAnywhereBeatsProbingAndFewerStepsWin) {
    Table parent(11, chosen_hash, nullptr, 1);
    Table child(11, nullptr, parent, 2);
    // Probed for in the child (slot 2 holds "m"), in its primary slot in the parent.
    hash_put(child, "m:1", 0);
    EXPECT_EQ(hash_put(child, "n:1", 10), 4);
    EXPECT_EQ(hash_put(parent, "n:1", 20), 2);
    EXPECT_EQ(lookup(child, "n:1"), (Found{2, 20, 1}));
    // Probed for in both at the same step: the inner table wins.
    hash_remove_name(parent, "n:1");
    hash_put(parent, "m:1", 0);
    EXPECT_EQ(hash_put(parent, "n:1", 20), 4);
    EXPECT_EQ(lookup(child, "n:1"), (Found{4, 10, 2}));
    // Fewer steps in the parent beat more in the child.
    hash_remove_name(child, "n:1");
    hash_put(child, "o:1", 0);
    EXPECT_EQ(hash_put(child, "n:1", 10), 6);
    EXPECT_EQ(lookup(child, "n:1"), (Found{4, 20, 1}));
}

// Lookups against a sweep done by hand over the slots: random puts and removals on a chain of
// two small tables whose function gives few values, so names collide, holes open and the
// same name stands in both tables and twice in one table.
TEST(HashChain, LookupsAgreeWithTheSweepOverTheSlots) {
    auto few = [](const char *key) -> int32_t { return static_cast<int32_t>(std::strlen(key) % 4); };
    hash_table *outer = hash_open(1, 11, few, nullptr);
    hash_table *inner = hash_open(2, 7, few, outer);
    hash_table *chain[] = {inner, outer};
    std::srand(7);
    const char *names[] = {"a", "bb", "ccc", "dddd", "e", "ff", "ggg", "x", "yy", "zzzz"};
    for (int round = 0; round < 400; ++round) {
        hash_table *t = chain[std::rand() % 2];
        const char *name = names[std::rand() % 10];
        if (std::rand() % 3 == 0) {
            hash_remove_index(t, std::rand() % t->size);
        } else {
            hash_put(t, name, round);
        }
        for (const char *look : names) {
            intptr_t want_value = -1, want_id = -1;
            int32_t want_at = -1;
            for (int32_t k = 1; want_at < 0 && k <= 11; ++k) {
                for (hash_table *c : chain) {
                    const int32_t p = static_cast<int32_t>(std::abs(few(look)) % (c->size - 1)) + 1;
                    if (k > c->size) continue;  // p, 2p, ..., size * p = slot 0
                    const int32_t slot = static_cast<int32_t>(static_cast<int64_t>(k) * p % c->size);
                    char *held = nullptr;
                    intptr_t value = 0;
                    if (hash_get_index(c, slot, &held, &value) >= 0 && std::strcmp(held, look) == 0) {
                        want_at = slot, want_value = value, want_id = c->id;
                    }
                    heap_free(held);
                    if (want_at >= 0) break;
                }
            }
            intptr_t value = -1, id = -1;
            EXPECT_EQ(hash_get(inner, look, &value, &id), want_at) << look << " in round " << round;
            if (want_at >= 0) {
                EXPECT_EQ(std::make_pair(value, id), std::make_pair(want_value, want_id)) << look;
            }
        }
    }
    hash_close(inner);
    hash_close(outer);
}

TEST(HashChain, ParentWithOpenChildIsNotClosed) {
    hash_table *parent = hash_open(1, 5, nullptr, nullptr);
    hash_table *child = hash_open(2, 5, nullptr, parent);
    hash_put(parent, "p", 7);
    hash_close(parent);  // refused: it still has a child
    EXPECT_EQ(lookup(parent, "p")[1], 7);
    hash_close(child);
    EXPECT_EQ(parent->children, 0);
    hash_close(parent);  // the leak checker sees a refused close here
    hash_close(nullptr);
}

TEST(HashRemoval, HoleOnTheProbePath) {
    Table t(11);
    EXPECT_EQ(hash_put(t, "A:2", 1), 3);
    EXPECT_EQ(hash_put(t, "B:2", 2), 6);
    EXPECT_EQ(hash_remove_name(t, "A:2"), 3);
    EXPECT_EQ(lookup(t, "B:2"), (Found{6, 2, 0}));  // the hole does not hide B
    EXPECT_EQ(hash_remove_name(t, "B:2"), -1);     // the storing probe stops at the hole
    EXPECT_EQ(hash_put(t, "B:2", 3), 3);           // a second B, in the hole
    EXPECT_EQ(lookup(t, "B:2"), (Found{3, 3, 0}));
    EXPECT_EQ(hash_remove_index(t, 6), 6);
    for (int32_t index : {6, 11, -1}) EXPECT_EQ(hash_remove_index(t, index), -1);
    EXPECT_EQ(hash_remove_index(nullptr, 3), -1);
}

TEST(HashIndex, ReadsCopiesAndRefusesFreeSlots) {
    Table t(11);
    hash_put(t, "name:4", 44);
    char *name = reinterpret_cast<char *>(1);
    intptr_t v = 5;
    EXPECT_EQ(hash_get_index(t, 4, &name, &v), -1);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(v, 5);
    EXPECT_EQ(hash_get_index(t, 11, &name, &v), -1);
    EXPECT_EQ(hash_get_index(t, 5, &name, &v), 5);
    ASSERT_NE(name, nullptr);
    EXPECT_STREQ(name, "name:4");
    EXPECT_EQ(v, 44);
    heap_free(name);
}

TEST(HashReset, ForgetsNamesAndStaysUsable) {
    Table parent(3);
    Table t(11, nullptr, parent, 9);
    hash_put(t, "a:1", 1);
    hash_get(t, "a:1", nullptr, nullptr);
    hash_reset(t);
    EXPECT_EQ(hash_get(t, "a:1", nullptr, nullptr), -1);
    EXPECT_EQ(hash_put(t, "b:1", 2), 2);
    EXPECT_EQ(parent.t->children, 1);
}

#ifdef TIVLIB_FAULT_INJECTION
TEST(HashFaults, EveryAllocationFailureIsCleanlyRefused) {
    for (long n = 1;; ++n) {
        hash_table *t = nullptr;
        const bool hit = tiv::test::fails_at(n, [&] { t = hash_open(1, 7, nullptr, nullptr); });
        if (!hit) {
            ASSERT_NE(t, nullptr);
            hash_close(t);
            break;
        }
        EXPECT_EQ(t, nullptr);
    }
    Table t(7);
    hash_put(t, "old", 1);
    tiv::fault::fail_allocation_at(1);
    EXPECT_EQ(hash_put(t, "new", 2), -1);
    EXPECT_EQ(hash_get(t, "new", nullptr, nullptr), -1);
    tiv::fault::fail_allocation_at(1);  // replacing a value needs no memory
    EXPECT_GE(hash_put(t, "old", 3), 0);
    EXPECT_FALSE(tiv::fault::allocation_failure_hit());
    const int32_t at = hash_get(t, "old", nullptr, nullptr);
    tiv::fault::fail_allocation_at(1);  // the copy of get_index
    char *name = reinterpret_cast<char *>(1);
    intptr_t v = 0;
    EXPECT_EQ(hash_get_index(t, at, &name, &v), at);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(v, 3);
    tiv::fault::fail_allocation_at(0);
}
#endif

}  // namespace
