// Runtime frame and conversions: the arena against plain allocation, the trace calls,
// tokenizing, and number conversions against the C library's own.
#include <tivlib/convert.h>
#include <tivlib/heap.h>
#include <tivlib/str.h>
#include <tivlib/zv.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench_scale.h"

namespace {

int64_t scaled(int64_t full) { return tiv::bench::scaled(full, int64_t{1}); }

// Pieces of 1 to 64 bytes, from a fixed seed.
std::vector<int32_t> piece_sizes(int64_t count) {
  std::mt19937 rng(42);
  std::vector<int32_t> sizes(static_cast<size_t>(count));
  for (auto& s : sizes) s = static_cast<int32_t>(rng() % 64 + 1);
  return sizes;
}

// Many small pieces and one release, as the environment store uses its scratch arena. The
// walk starts at the first block on every request, so the cost per piece grows with the
// chain: the long variant (about 800 blocks) shows that.
void ArenaPieces(benchmark::State& state) {
  const int64_t kPieces = scaled(state.range(0));
  const auto sizes = piece_sizes(kPieces);
  for (auto _ : state) {
    heap_id* id = heap_open(4096, 0);
    for (int32_t s : sizes) benchmark::DoNotOptimize(heap_allocate(id, s));
    heap_close(id);
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}
BENCHMARK(ArenaPieces)->Name("frame/heap_allocate/arena_4096")->Arg(1000)->Arg(100000);

// The same pieces from the general allocator, each freed on its own.
void MallocPieces(benchmark::State& state) {
  const int64_t kPieces = scaled(state.range(0));
  const auto sizes = piece_sizes(kPieces);
  std::vector<void*> blocks(sizes.size());
  for (auto _ : state) {
    for (size_t i = 0; i < sizes.size(); ++i) blocks[i] = heap_malloc(static_cast<uint32_t>(sizes[i]));
    for (void* b : blocks) heap_free(b);
  }
  state.SetItemsProcessed(state.iterations() * kPieces);
}
BENCHMARK(MallocPieces)->Name("frame/heap_allocate/peer_malloc_free")->Arg(1000)->Arg(100000);

void TraceBeginEnd(benchmark::State& state) {
  for (auto _ : state) {
    zv_begin("outer");
    zv_begin("inner");
    zv_begin("inner");
    zv_end();
    zv_end();
    zv_end();
  }
  state.SetItemsProcessed(state.iterations() * 6);
}
BENCHMARK(TraceBeginEnd)->Name("frame/zv_begin_end/recursion");

std::string token_text() {
  std::string text;
  for (int64_t i = 0; i < scaled(10000); ++i) text += "item" + std::to_string(i) + ", ";
  return text;
}

void Tokens(benchmark::State& state) {
  std::string text = token_text();
  int64_t n = 0;
  for (auto _ : state)
    for (char* t = str_tok(text.data(), ", "); t != nullptr; t = str_tok(nullptr, ", ")) ++n;
  state.SetItemsProcessed(n);
}
BENCHMARK(Tokens)->Name("frame/str_tok/comma_blank");

std::vector<std::string> number_texts() {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> dist(-1e6, 1e6);
  std::vector<std::string> texts;
  char buf[64];
  for (int64_t i = 0; i < scaled(10000); ++i) {
    std::snprintf(buf, sizeof buf, "%.9e", dist(rng));
    texts.emplace_back(buf);
  }
  return texts;
}

void StodOwn(benchmark::State& state) {
  const auto texts = number_texts();
  for (auto _ : state)
    for (const auto& t : texts) benchmark::DoNotOptimize(convert_stod(t.c_str()));
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(StodOwn)->Name("text/convert_stod/decimal");

void StodPeer(benchmark::State& state) {
  const auto texts = number_texts();
  for (auto _ : state)
    for (const auto& t : texts) benchmark::DoNotOptimize(std::strtod(t.c_str(), nullptr));
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(texts.size()));
}
BENCHMARK(StodPeer)->Name("text/convert_stod/peer_strtod");

void DtosOwn(benchmark::State& state) {
  char out[CONVERT_OUTPUT_MAX + 1];
  double v = 0.5;
  for (auto _ : state) {
    benchmark::DoNotOptimize(convert_dtos(v, 12, 4, out));
    v += 1.25;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(DtosOwn)->Name("text/convert_dtos/12_4");

void DtosPeer(benchmark::State& state) {
  char out[64];
  double v = 0.5;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::snprintf(out, sizeof out, "%12.4f", v));
    v += 1.25;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(DtosPeer)->Name("text/convert_dtos/peer_snprintf");

}  // namespace
BENCHMARK_MAIN();
