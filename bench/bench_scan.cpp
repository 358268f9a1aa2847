// The scanner over a 10 MB source text: tokens per second with a reader that takes characters
// from a stream by getc, and with one that takes them from memory, against a plain getc loop
// over the same stream (the limit: the reader is the only outside call per character).
#include <tivlib/scan.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "bench_scale.h"

namespace {

int64_t scaled(int64_t full) { return tiv::bench::scaled(full, int64_t{1}); }

constexpr const char* const kKeywords[] = {"if",    "else",  "while", "for",    "return",
                                           "int",   "long",  "double", "char",  "void",
                                           "struct", "const", "static", "break", "continue",
                                           "switch", "case", "default", "sizeof", "do",
                                           nullptr};
constexpr int32_t kFlags = SCAN_F_BLOCK_COMMENT | SCAN_F_LINE_COMMENT | SCAN_F_RELATIONS;

// A C-like text of the given size from a fixed seed: keywords, identifiers, integers and
// floating numbers, strings, character constants, operators, comments and line ends.
const std::string& source_text() {
  static const std::string text = [] {
    const auto size = static_cast<size_t>(scaled(10 * 1024 * 1024));
    std::mt19937 rng(7);
    const char* pieces[] = {"while", "if", "x", "count_1", "total", "i", "value", "=", "==",
                            "<=", "+", "-", "*", "/", "(", ")", "{", "}", ";", ",", "42",
                            "3.14159", "1e-3", "\"text of a string\"", "'c'", "'\\n'",
                            "/* a block comment */", "// a line comment\n", "\n", "return",
                            "buffer", "[", "]", "0", "->", "&&"};
    constexpr size_t kPieces = sizeof pieces / sizeof pieces[0];
    std::string t;
    t.reserve(size + 64);
    while (t.size() < size) {
      t += pieces[rng() % kPieces];
      t += ' ';
    }
    t.resize(size);
    return t;
  }();
  return text;
}

// The stream that the getc reader and the plain loop read: a temporary file holding the text.
std::FILE* source_stream() {
  static std::FILE* stream = [] {
    std::FILE* f = std::tmpfile();
    if (f != nullptr) {
      const std::string& t = source_text();
      std::fwrite(t.data(), 1, t.size(), f);
    }
    return f;
  }();
  return stream;
}

std::FILE* reading = nullptr;
int32_t read_stream() { return std::getc(reading); }

const char* memory_position = nullptr;
const char* memory_end = nullptr;
int32_t read_memory() {
  return memory_position < memory_end ? static_cast<unsigned char>(*memory_position++) : -1;
}

int64_t count_tokens(scanner* s) {
  int64_t tokens = 0;
  int32_t kind = 0;
  scan_record record;
  do {
    scan_token(s, &kind, &record);
    ++tokens;
  } while (kind != SCAN_T_EOF);
  return tokens;
}

void ScanFromStream(benchmark::State& state) {
  std::FILE* f = source_stream();
  if (f == nullptr) {
    state.SkipWithError("no temporary file");
    return;
  }
  int64_t tokens = 0;
  for (auto _ : state) {
    std::rewind(f);
    reading = f;
    scanner* s = scan_open(&read_stream, kFlags, kKeywords);
    tokens = count_tokens(s);
    scan_close(s);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source_text().size()));
  state.SetItemsProcessed(state.iterations() * tokens);
  state.counters["tokens"] = static_cast<double>(tokens);
}
BENCHMARK(ScanFromStream)->Name("scan/token/getc_reader")->Unit(benchmark::kMillisecond);

void ScanFromMemory(benchmark::State& state) {
  const std::string& t = source_text();
  int64_t tokens = 0;
  for (auto _ : state) {
    memory_position = t.data();
    memory_end = t.data() + t.size();
    scanner* s = scan_open(&read_memory, kFlags, kKeywords);
    tokens = count_tokens(s);
    scan_close(s);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(t.size()));
  state.SetItemsProcessed(state.iterations() * tokens);
}
BENCHMARK(ScanFromMemory)->Name("scan/token/memory_reader")->Unit(benchmark::kMillisecond);

// The limit: every character of the same stream through getc, and nothing else.
void GetcLoop(benchmark::State& state) {
  std::FILE* f = source_stream();
  if (f == nullptr) {
    state.SkipWithError("no temporary file");
    return;
  }
  for (auto _ : state) {
    std::rewind(f);
    int64_t n = 0;
    while (std::getc(f) != EOF) ++n;
    benchmark::DoNotOptimize(n);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source_text().size()));
}
BENCHMARK(GetcLoop)->Name("scan/token/limit_getc_loop")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
