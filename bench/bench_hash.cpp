// hash_get against std::unordered_map<std::string, intptr_t>::find on the same keys.
//
// A table of 2^16 keys (times TIV_BENCH_SCALE) is opened at load 0.5 with FNV-1a as the
// caller's hash function. Hits look up stored keys in a shuffled order; misses look up keys
// that were never stored. A miss is answered by the index of the names each table holds, so
// its cost doesn't grow with the table size, like the map's.
#include <benchmark/benchmark.h>
#include <tivlib/hash.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench_scale.h"

namespace {

size_t scaled(size_t full) { return tiv::bench::scaled(full, size_t{64}); }

// 32-bit FNV-1a, kept non-negative (a hash function must not give the most negative number).
int32_t fnv1a(const char *key) {
    uint32_t h = 2166136261u;
    for (const char *c = key; *c != '\0'; ++c) {
        h ^= static_cast<unsigned char>(*c);
        h *= 16777619u;
    }
    return static_cast<int32_t>(h & 0x7fffffffu);
}

struct Keys {
    std::vector<std::string> stored;
    std::vector<std::string> absent;
    std::vector<std::string> hits;  // stored keys, shuffled
};

const Keys &keys() {
    static const Keys k = [] {
        Keys out;
        const size_t n = scaled(1u << 16);
        std::mt19937_64 rng(42);
        for (size_t i = 0; i < n; ++i) {
            out.stored.push_back("entry." + std::to_string(rng() % 1000000000) + "." + std::to_string(i));
            out.absent.push_back("missing." + std::to_string(i));
        }
        out.hits = out.stored;
        std::shuffle(out.hits.begin(), out.hits.end(), rng);
        return out;
    }();
    return k;
}

struct Table {
    hash_table *t;
    Table() : t(hash_open(1, static_cast<int32_t>(2 * keys().stored.size()), fnv1a, nullptr)) {
        intptr_t v = 0;
        for (const auto &k : keys().stored) hash_put(t, k.c_str(), v++);
    }
    ~Table() { hash_close(t); }
};

void hash_get_hit(benchmark::State &state) {
    Table table;
    const auto &hits = keys().hits;
    size_t i = 0;
    for (auto _ : state) {
        intptr_t v = 0;
        benchmark::DoNotOptimize(hash_get(table.t, hits[i].c_str(), &v, nullptr));
        benchmark::DoNotOptimize(v);
        if (++i == hits.size()) i = 0;
    }
}

void hash_get_miss(benchmark::State &state) {
    Table table;
    const auto &absent = keys().absent;
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(hash_get(table.t, absent[i].c_str(), nullptr, nullptr));
        if (++i == absent.size()) i = 0;
    }
}

struct Map {
    std::unordered_map<std::string, intptr_t> m;
    Map() {
        m.reserve(keys().stored.size());
        intptr_t v = 0;
        for (const auto &k : keys().stored) m.emplace(k, v++);
    }
};

void map_find_hit(benchmark::State &state) {
    Map map;
    const auto &hits = keys().hits;
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.m.find(hits[i]));
        if (++i == hits.size()) i = 0;
    }
}

void map_find_miss(benchmark::State &state) {
    Map map;
    const auto &absent = keys().absent;
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.m.find(absent[i]));
        if (++i == absent.size()) i = 0;
    }
}

void hash_put_fill(benchmark::State &state) {
    const auto &stored = keys().stored;
    for (auto _ : state) {
        hash_table *t = hash_open(1, static_cast<int32_t>(2 * stored.size()), fnv1a, nullptr);
        for (const auto &k : stored) hash_put(t, k.c_str(), 1);
        hash_close(t);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * stored.size()));
}

}  // namespace

BENCHMARK(hash_get_hit)->Name("hash/get/hit_fnv1a_load50");
BENCHMARK(map_find_hit)->Name("hash/unordered_map_find/hit");
BENCHMARK(hash_get_miss)->Name("hash/get/miss_fnv1a_load50");
BENCHMARK(map_find_miss)->Name("hash/unordered_map_find/miss");
BENCHMARK(hash_put_fill)->Name("hash/put/fill_load50")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
