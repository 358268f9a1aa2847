// The catalogue reader on a generated file of 10^6 rows (about 100 MB; times TIV_BENCH_SCALE).
//
// Rows: profil/search/two_conditions (a search that only the last row passes, so the whole
// file is tokenised), profil/get/last_row (a name lookup that only the last row matches: every
// other row is a skip to its line end), profil/limit/fread_memchr (one sequential pass with
// fread and memchr for line ends: the limit the first two are measured against),
// profil/limit/fio_getchar (the same pass byte by byte through fio_getchar), and
// profil/prev/within_page and profil/prev/across_page (one step back and the row read again).
#include <benchmark/benchmark.h>
#include <tivlib/fio.h>
#include <tivlib/profil.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "bench_dir.h"
#include "bench_scale.h"

namespace {

size_t scaled(size_t full) { return tiv::bench::scaled(full, size_t{64}); }

// The generated catalogue, written once per process into a temporary directory.
class Catalogue {
 public:
  Catalogue() {
    path_ = (dir_.path() / "big.pro").string();
    write(scaled(1000000));
    profil_path(dir_.path().string().c_str());
  }
  const std::string& path() const { return path_; }
  int64_t bytes() const { return bytes_; }
  size_t rows() const { return rows_; }

 private:
  void write(size_t rows) {
    std::FILE* f = std::fopen(path_.c_str(), "wb");
    if (f == nullptr) std::abort();
    std::fputs("Kind Size h b s t r A Iy Wy iy Iz Wz iz It\n", f);
    std::mt19937 rng(20240601);
    std::uniform_real_distribution<double> u(1.0, 9.0);
    const char* kinds[] = {"IPE", "HEA", "HEB", "HEM", "UPN", "IPN"};
    char line[256];
    for (size_t i = 0; i + 1 < rows; ++i) {
      const int size = 80 + static_cast<int>(i % 1000) * 2;
      const int n = std::snprintf(line, sizeof line,
                                  "%-4s %5d %5d %4d %5.1f %5.1f %3d %7.2f %9.1f %7.1f %6.2f "
                                  "%8.1f %6.1f %5.2f %6.2f\n",
                                  kinds[i % 6], size, size, size / 2, u(rng), u(rng), 12,
                                  u(rng) * 10, u(rng) * 1000, u(rng) * 100, u(rng), u(rng) * 100,
                                  u(rng) * 10, u(rng), u(rng));
      std::fwrite(line, 1, static_cast<size_t>(n), f);
    }
    std::fputs("ZZZ 9999 9999 999 99.0 99.0 99 99999.00 99999999.0 99999.0 99.00 999999.0 "
               "9999.0 99.00 999.00\n", f);
    bytes_ = std::ftell(f);
    rows_ = rows;
    std::fclose(f);
  }

  tiv::bench::BenchDir dir_{"/tmp/tivlib-bench-profil.XXXXXX"};
  std::string path_;
  int64_t bytes_ = 0;
  size_t rows_ = 0;
};

const Catalogue& catalogue() {
  static const Catalogue c;
  return c;
}

profil_handle* open_catalogue(const char* const* items) {
  std::string name = catalogue().path();
  return profil_open(name.data(), items, nullptr);
}

void search_two_conditions(benchmark::State& state) {
  const char* items[] = {"h", "A", "Iy", nullptr};
  profil_handle* h = open_catalogue(items);
  if (h == nullptr) return state.SkipWithError("open failed");
  char gt[] = ">", ge[] = ">=";
  profil_term terms[] = {{"A", gt, 1000.0}, {"Iy", ge, 1e7}};
  double values[3];
  char result[PROFIL_RESULT_SIZE];
  for (auto _ : state) {
    if (profil_search(h, terms, 2, "", values, result) != 0 || std::strcmp(result, "ZZZ 9999") != 0)
      return state.SkipWithError("wrong row");
  }
  state.SetBytesProcessed(state.iterations() * catalogue().bytes());
  profil_close(h);
}
BENCHMARK(search_two_conditions)->Name("profil/search/two_conditions")->Unit(benchmark::kMillisecond);

void get_last_row(benchmark::State& state) {
  const char* items[] = {"h", "A", "Iy", nullptr};
  profil_handle* h = open_catalogue(items);
  if (h == nullptr) return state.SkipWithError("open failed");
  double values[3];
  char result[PROFIL_RESULT_SIZE];
  for (auto _ : state) {
    if (profil_get(h, "ZZZ", values, result) != 0) return state.SkipWithError("not found");
  }
  state.SetBytesProcessed(state.iterations() * catalogue().bytes());
  profil_close(h);
}
BENCHMARK(get_last_row)->Name("profil/get/last_row")->Unit(benchmark::kMillisecond);

void limit_fread_memchr(benchmark::State& state) {
  std::vector<char> buffer(64 * 1024);
  for (auto _ : state) {
    std::FILE* f = std::fopen(catalogue().path().c_str(), "rb");
    size_t lines = 0, got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), f)) > 0) {
      const char* p = buffer.data();
      const char* end = p + got;
      while ((p = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p))))) {
        ++lines;
        ++p;
      }
    }
    std::fclose(f);
    benchmark::DoNotOptimize(lines);
  }
  state.SetBytesProcessed(state.iterations() * catalogue().bytes());
}
BENCHMARK(limit_fread_memchr)->Name("profil/limit/fread_memchr")->Unit(benchmark::kMillisecond);

void limit_fio_getchar(benchmark::State& state) {
  for (auto _ : state) {
    fio_handle* f = fio_open(nullptr, catalogue().path().c_str(), FIO_READ | FIO_TEXT);
    if (f == nullptr) return state.SkipWithError("open failed");
    size_t lines = 0;
    int32_t c;
    while ((c = fio_getchar(f, nullptr)) != -1) lines += c == '\n';
    fio_close(f);
    benchmark::DoNotOptimize(lines);
  }
  state.SetBytesProcessed(state.iterations() * catalogue().bytes());
}
BENCHMARK(limit_fio_getchar)->Name("profil/limit/fio_getchar")->Unit(benchmark::kMillisecond);

// Steps back once and forward once at a place where the step back stays inside the page.
void prev_within_page(benchmark::State& state) {
  const char* items[] = {"A", nullptr};
  profil_handle* h = open_catalogue(items);
  if (h == nullptr) return state.SkipWithError("open failed");
  double v;
  char result[PROFIL_RESULT_SIZE];
  for (int i = 0; i < 16 * 100 + 8; ++i) profil_next(h, &v, result);
  for (auto _ : state) {
    profil_prev(h, &v, result);
    profil_next(h, &v, result);
  }
  profil_close(h);
}
BENCHMARK(prev_within_page)->Name("profil/prev/within_page")->Unit(benchmark::kNanosecond);

// The step back across a page boundary rescans from the start of the data; here from row
// 16 * 1000, so the cost grows with the place in the file.
void prev_across_page(benchmark::State& state) {
  const char* items[] = {"A", nullptr};
  profil_handle* h = open_catalogue(items);
  if (h == nullptr) return state.SkipWithError("open failed");
  double v;
  char result[PROFIL_RESULT_SIZE];
  const size_t target = std::min<size_t>(16 * 1000, catalogue().rows() / 16 * 16);
  for (size_t i = 0; i < target; ++i) profil_next(h, &v, result);
  for (auto _ : state) {
    profil_prev(h, &v, result);
    profil_next(h, &v, result);
  }
  profil_close(h);
}
BENCHMARK(prev_across_page)->Name("profil/prev/across_page_row16000")->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
