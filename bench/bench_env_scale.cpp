// Environment store at scale: the cost per element of lookups by name, of reading every value
// of a section by name, and of walks (iteration with env_get_first/env_get_next, env_traverse,
// env_traverse_leafs), for sections of 10^2 to 10^6 siblings. Each figure is per element, so
// a cost that doesn't grow with the data reads the same in every row. Sizes are not scaled by
// TIV_BENCH_SCALE: the point is the sizes themselves.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include <tivlib/env.h>

namespace {

// A root with one section of n data elements named v0, v1, ...
struct Section {
  env_handle* env = env_open(0, nullptr);
  std::vector<std::string> names;
  explicit Section(int64_t n) {
    for (int64_t i = 0; i < n; ++i) {
      names.push_back("v" + std::to_string(i));
      env_put(env, "s", names.back().c_str(), "1.5");
    }
  }
  ~Section() { env_close(env, 0); }
};

// env_get_double of the last element, by name.
void lookup_last(benchmark::State& state) {
  Section s(state.range(0));
  const char* last = s.names.back().c_str();
  for (auto _ : state) {
    double d = 0;
    benchmark::DoNotOptimize(env_get_double(s.env, "s", last, 1, &d));
  }
}

// env_get_double of every element by name, once each; time per element.
void read_all_by_name(benchmark::State& state) {
  Section s(state.range(0));
  for (auto _ : state) {
    for (const auto& name : s.names) {
      double d = 0;
      benchmark::DoNotOptimize(env_get_double(s.env, "s", name.c_str(), 1, &d));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void iterate(benchmark::State& state) {
  Section s(state.range(0));
  char name[64], data[64];
  intptr_t word = 0;
  for (auto _ : state) {
    int32_t id = 0;
    int32_t r = env_get_first(s.env, "s", nullptr, 1, &id, sizeof name, name, sizeof data, data, &word);
    while (r == ENV_IS_DATA || r == ENV_IS_BLOCK || r == ENV_IS_EXTERNAL)
      r = env_get_next(sizeof name, name, sizeof data, data, &word);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

int32_t count_visit(env_handle*, const char*, char*, intptr_t user) {
  ++*reinterpret_cast<int64_t*>(user);
  return 0;
}

void traverse(benchmark::State& state) {
  Section s(state.range(0));
  for (auto _ : state) {
    int64_t visits = 0;
    env_traverse(s.env, "s", nullptr, 1, count_visit, reinterpret_cast<intptr_t>(&visits));
    benchmark::DoNotOptimize(visits);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void traverse_leafs(benchmark::State& state) {
  Section s(state.range(0));
  for (auto _ : state) {
    int64_t visits = 0;
    env_traverse_leafs(s.env, count_visit, reinterpret_cast<intptr_t>(&visits));
    benchmark::DoNotOptimize(visits);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(lookup_last)->Name("env/lookup_last")->Arg(100)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(read_all_by_name)->Name("env/read_all_by_name")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(iterate)->Name("env/iterate")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(traverse)->Name("env/traverse")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(traverse_leafs)->Name("env/traverse_leafs")->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
