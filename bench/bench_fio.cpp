// Typed I/O against the same loop over plain stdio on the same kind of stream.
//
// fio/putdouble and fio/getdouble move 10^7 doubles (times TIV_BENCH_SCALE) through a handle
// with the binary header; fio/getchar reads a 100 MB file (times TIV_BENCH_SCALE) byte by
// byte. The peer rows (".../stdio") run fwrite, fread and getc on a stream opened the same way,
// so the ratio lib/stdio of one run is the cost of the handle. Files live in a temporary
// directory that is removed at the end.
#include <benchmark/benchmark.h>
#include <tivlib/fio.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

#include "bench_dir.h"
#include "bench_scale.h"

namespace {

std::size_t scaled(std::size_t full) { return tiv::bench::scaled(full, std::size_t{1024}); }

const std::size_t kDoubles = scaled(10'000'000);
const std::size_t kBytes = scaled(100u * 1024u * 1024u);

// A temporary directory for the run; the benchmark enters it.
tiv::bench::BenchDir& bench_dir() {
  static tiv::bench::BenchDir dir("/tmp/tivlib-bench.XXXXXX", true);
  return dir;
}

// The file of doubles both read benchmarks use, written once.
void ensure_doubles() {
  static bool done = false;
  if (done) return;
  fio_handle* h = fio_open(nullptr, "doubles.bin", FIO_WRITE | FIO_HEADER);
  for (std::size_t i = 0; i < kDoubles; ++i) fio_putdouble(h, static_cast<double>(i) * 0.5);
  fio_close(h);
  done = true;
}

void ensure_bytes() {
  static bool done = false;
  if (done) return;
  std::FILE* f = std::fopen("bytes.bin", "wb");
  std::uint32_t x = 12345;  // deterministic content
  for (std::size_t i = 0; i < kBytes; ++i) {
    x = x * 1103515245u + 12345u;
    std::putc(static_cast<int>(x >> 24), f);
  }
  std::fclose(f);
  done = true;
}

void BM_PutDoubleLib(benchmark::State& state) {
  bench_dir();
  for (auto _ : state) {
    fio_handle* h = fio_open(nullptr, "put.bin", FIO_WRITE | FIO_HEADER);
    for (std::size_t i = 0; i < kDoubles; ++i) fio_putdouble(h, static_cast<double>(i));
    fio_close(h);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kDoubles));
}

void BM_PutDoubleStdio(benchmark::State& state) {
  bench_dir();
  for (auto _ : state) {
    std::FILE* f = std::fopen("put.bin", "wb");
    std::fwrite("1.1  @zvINTEL   ", 1, 16, f);
    for (std::size_t i = 0; i < kDoubles; ++i) {
      const double v = static_cast<double>(i);
      std::fwrite(&v, sizeof v, 1, f);
    }
    std::fclose(f);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kDoubles));
}

void BM_GetDoubleLib(benchmark::State& state) {
  bench_dir();
  ensure_doubles();
  for (auto _ : state) {
    fio_handle* h = fio_open(nullptr, "doubles.bin", FIO_READ | FIO_HEADER);
    double v, sum = 0;
    while (fio_getdouble(h, &v) == 0) sum += v;
    benchmark::DoNotOptimize(sum);
    fio_close(h);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kDoubles));
}

void BM_GetDoubleStdio(benchmark::State& state) {
  bench_dir();
  ensure_doubles();
  for (auto _ : state) {
    std::FILE* f = std::fopen("doubles.bin", "rb");
    std::fseek(f, 16, SEEK_SET);
    double v, sum = 0;
    while (std::fread(&v, sizeof v, 1, f) == 1) sum += v;
    benchmark::DoNotOptimize(sum);
    std::fclose(f);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kDoubles));
}

void BM_GetCharLib(benchmark::State& state) {
  bench_dir();
  ensure_bytes();
  for (auto _ : state) {
    fio_handle* h = fio_open(nullptr, "bytes.bin", FIO_READ);
    std::uint32_t sum = 0;
    for (int32_t c; (c = fio_getchar(h, nullptr)) != -1;) sum += static_cast<std::uint32_t>(c);
    benchmark::DoNotOptimize(sum);
    fio_close(h);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}

void BM_GetCharStdio(benchmark::State& state) {
  bench_dir();
  ensure_bytes();
  for (auto _ : state) {
    std::FILE* f = std::fopen("bytes.bin", "rb");
    std::uint32_t sum = 0;
    for (int c; (c = std::getc(f)) != EOF;) sum += static_cast<std::uint32_t>(c);
    benchmark::DoNotOptimize(sum);
    std::fclose(f);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}

}  // namespace

BENCHMARK(BM_PutDoubleLib)->Name("fio/putdouble/lib")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_PutDoubleStdio)->Name("fio/putdouble/stdio")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_GetDoubleLib)->Name("fio/getdouble/lib")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_GetDoubleStdio)->Name("fio/getdouble/stdio")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_GetCharLib)->Name("fio/getchar/lib")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_GetCharStdio)->Name("fio/getchar/stdio")->Unit(benchmark::kMillisecond)->MinTime(1.0);

BENCHMARK_MAIN();
