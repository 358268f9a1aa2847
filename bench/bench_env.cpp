// Environment store: env_read_file of a generated file (50 MB at full scale) beside libconfig
// parsing the same tree from its own syntax, with the memory each keeps per input byte;
// env_write_file of that tree beside one fwrite of the same bytes; env_get_double by path in
// a section of 10, 1000 and 100000 elements. Sizes scale with TIV_BENCH_SCALE.
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include <tivlib/env.h>

#include "env_gen.h"

#ifdef TIV_HAVE_LIBCONFIG
#include <libconfig.h>
#endif

namespace {

double scale() {
  const char* s = std::getenv("TIV_BENCH_SCALE");
  const double v = s != nullptr ? std::atof(s) : 1.0;
  return v > 0 ? v : 1.0;
}

void write_all(const std::string& path, const std::string& content) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  std::fwrite(content.data(), 1, content.size(), f);
  std::fclose(f);
}

std::size_t heap_in_use() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

// The generated files, written once into a temporary directory.
struct Fixture {
  std::string dir;
  std::string env_path;
  std::string cfg_path;
  std::string out_path;
  std::size_t env_bytes = 0;
  std::size_t cfg_bytes = 0;
  std::string written;  // what env_write_file makes of the tree
  Fixture() {
    char pattern[] = "/tmp/tivlib-bench-env.XXXXXX";
    dir = ::mkdtemp(pattern);
    env_path = dir + "/big.env";
    cfg_path = dir + "/big.cfg";
    out_path = dir + "/out.env";
    const auto target = static_cast<std::size_t>(50.0 * 1024 * 1024 * scale());
    tiv::bench::GeneratedFiles files = tiv::bench::generate_env_files(target);
    env_bytes = files.env.size();
    cfg_bytes = files.libconfig.size();
    write_all(env_path, files.env);
    write_all(cfg_path, files.libconfig);
  }
  ~Fixture() {
    std::remove(env_path.c_str());
    std::remove(cfg_path.c_str());
    std::remove(out_path.c_str());
    ::rmdir(dir.c_str());
  }
};

Fixture& fixture() {
  static Fixture f;
  return f;
}

void BM_read_file(benchmark::State& state) {
  Fixture& f = fixture();
  std::size_t kept = 0;
  for (auto _ : state) {
    const std::size_t before = heap_in_use();
    env_handle* env = env_open(0, nullptr);
    if (env_read_file(f.env_path.c_str(), env) != ENV_OK) state.SkipWithError("read failed");
    kept = heap_in_use() - before;
    env_close(env, 0);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.env_bytes));
  state.counters["mem_per_byte"] = static_cast<double>(kept) / static_cast<double>(f.env_bytes);
}
BENCHMARK(BM_read_file)->Name("env/read_file/tivlib")->Unit(benchmark::kMillisecond);

#ifdef TIV_HAVE_LIBCONFIG
void BM_read_file_libconfig(benchmark::State& state) {
  Fixture& f = fixture();
  std::size_t kept = 0;
  for (auto _ : state) {
    const std::size_t before = heap_in_use();
    config_t cfg;
    config_init(&cfg);
    if (config_read_file(&cfg, f.cfg_path.c_str()) != CONFIG_TRUE)
      state.SkipWithError(config_error_text(&cfg));
    kept = heap_in_use() - before;
    config_destroy(&cfg);
  }
  // Throughput in bytes of the environment file, so that both rows measure the same tree.
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.env_bytes));
  state.counters["mem_per_byte"] = static_cast<double>(kept) / static_cast<double>(f.env_bytes);
  state.counters["cfg_bytes"] = static_cast<double>(f.cfg_bytes);
}
BENCHMARK(BM_read_file_libconfig)->Name("env/read_file/libconfig")->Unit(benchmark::kMillisecond);
#endif

void BM_write_file(benchmark::State& state) {
  Fixture& f = fixture();
  env_handle* env = env_open(0, nullptr);
  env_read_file(f.env_path.c_str(), env);
  std::size_t bytes = 0;
  for (auto _ : state) {
    env_write_file(f.out_path.c_str(), env);
    state.PauseTiming();
    std::FILE* out = std::fopen(f.out_path.c_str(), "rb");
    std::fseek(out, 0, SEEK_END);
    bytes = static_cast<std::size_t>(std::ftell(out));
    std::fclose(out);
    state.ResumeTiming();
  }
  env_close(env, 0);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_write_file)->Name("env/write_file/tivlib")->Unit(benchmark::kMillisecond);

// The limit: the same number of bytes written with one fwrite.
void BM_write_file_fwrite(benchmark::State& state) {
  Fixture& f = fixture();
  if (f.written.empty()) {
    env_handle* env = env_open(0, nullptr);
    env_read_file(f.env_path.c_str(), env);
    env_write_file(f.out_path.c_str(), env);
    env_close(env, 0);
    std::FILE* in = std::fopen(f.out_path.c_str(), "rb");
    char chunk[65536];
    for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;) f.written.append(chunk, n);
    std::fclose(in);
  }
  for (auto _ : state) {
    std::FILE* out = std::fopen(f.out_path.c_str(), "wb");
    std::fwrite(f.written.data(), 1, f.written.size(), out);
    std::fclose(out);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.written.size()));
}
BENCHMARK(BM_write_file_fwrite)->Name("env/write_file/fwrite")->Unit(benchmark::kMillisecond);

// env_get_double of the last element of a section of n elements.
void BM_get_double(benchmark::State& state) {
  auto n = static_cast<long>(state.range(0));
  if (n > 1000) n = static_cast<long>(static_cast<double>(n) * scale());
  if (n < 10) n = 10;
  // Built through the text form: n puts by name would each walk the whole section first.
  std::string text = "[s]\n";
  char name[64];
  for (long i = 0; i < n; ++i) {
    std::snprintf(name, sizeof name, "e%ld =%ld.5\n", i, i);
    text += name;
  }
  struct Source {
    const std::string& text;
    std::size_t at;
  } source{text, 0};
  auto next = [](intptr_t user) -> int32_t {
    auto* s = reinterpret_cast<Source*>(user);
    return s->at < s->text.size() ? static_cast<signed char>(s->text[s->at++]) : -1;
  };
  env_handle* env = env_open(0, nullptr);
  env_read(next, reinterpret_cast<intptr_t>(&source), env);
  std::snprintf(name, sizeof name, "e%ld", n - 1);
  double value = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(env_get_double(env, "s", name, 1, &value));
  }
  if (value != static_cast<double>(n - 1) + 0.5) state.SkipWithError("wrong value");
  env_close(env, 0);
  state.counters["elements"] = static_cast<double>(n);
}
// Named env/get_double/<elements>: the argument supplies the last part.
BENCHMARK(BM_get_double)->Name("env/get_double")->Arg(10)->Arg(1000);
BENCHMARK(BM_get_double)->Name("env/get_double")->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
