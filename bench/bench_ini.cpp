// Settings files: a lookup near the end of a generated file of 1000 entries in 50 sections,
// read directly (ini_read_string) beside inih's ini_parse, and read from memory
// (mini_read_string on a loaded section) beside SimpleIni's GetValue; one ini_write_string
// beside a plain fwrite of the whole file. Sizes scale with TIV_BENCH_SCALE.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include <tivlib/ini.h>
#include <tivlib/mini.h>

#ifdef TIV_HAVE_INIH
#include <ini.h>
#endif
#ifdef TIV_HAVE_SIMPLEINI
#define SI_NO_CONVERSION  // plain char data; the UTF converter is not shipped with the header
#define SI_IMPLEMENTATION  // the template members, compiled here
#include <SimpleIni.h>
#endif

#include "bench_scale.h"

namespace {

using tiv::bench::scale_factor;

// The generated file: sections section00.. with 20 entries key00=value ... each.
struct Fixture {
  std::string dir;
  std::string path;
  std::string content;
  std::string section;  // the last section
  std::string entry;    // its entry next to the last
  Fixture() {
    char pattern[] = "/tmp/tivlib-bench-ini.XXXXXX";
    dir = ::mkdtemp(pattern);
    path = dir + "/bench.ini";
    int sections = static_cast<int>(50 * scale_factor());
    if (sections < 1) sections = 1;
    constexpr int kEntries = 20;
    char line[128];
    for (int s = 0; s < sections; ++s) {
      std::snprintf(line, sizeof line, "%s[section%02d]\n", s == 0 ? "" : "\n", s);
      content += line;
      for (int e = 0; e < kEntries; ++e) {
        std::snprintf(line, sizeof line, "key%02d=value %02d of section %02d\n", e, e, s);
        content += line;
      }
    }
    std::snprintf(line, sizeof line, "section%02d", sections - 1);
    section = line;
    entry = "key18";
    write();
  }
  void write() const {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(content.data(), 1, content.size(), f);
    std::fclose(f);
  }
  ~Fixture() {
    std::remove(path.c_str());
    ::rmdir(dir.c_str());
  }
};

Fixture& fixture() {
  static Fixture f;
  return f;
}

void BM_ini_read_string(benchmark::State& state) {
  Fixture& f = fixture();
  char buf[128];
  for (auto _ : state) {
    int32_t size = 127;
    const int32_t code = ini_read_string(f.path.c_str(), f.section.c_str(), f.entry.c_str(), buf, &size);
    if (code != INI_OK) state.SkipWithError("entry not found");
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_ini_read_string)->Name("settings/ini_read_string/near_end");

#ifdef TIV_HAVE_INIH
struct InihSearch {
  const char* section;
  const char* entry;
  char value[128];
  bool found;
};

int inih_handler(void* user, const char* section, const char* name, const char* value) {
  auto* s = static_cast<InihSearch*>(user);
  if (std::strcmp(section, s->section) == 0 && std::strcmp(name, s->entry) == 0) {
    std::snprintf(s->value, sizeof s->value, "%s", value);
    s->found = true;
    return 0;  // stop here
  }
  return 1;
}

void BM_inih_parse(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    InihSearch s{f.section.c_str(), f.entry.c_str(), {}, false};
    ini_parse(f.path.c_str(), inih_handler, &s);
    if (!s.found) state.SkipWithError("entry not found");
    benchmark::DoNotOptimize(s.value);
  }
}
BENCHMARK(BM_inih_parse)->Name("settings/inih_parse/near_end");
#endif

void BM_mini_read_string(benchmark::State& state) {
  Fixture& f = fixture();
  mini_file* h = mini_open(nullptr, f.path.c_str(), MINI_READ_ONLY);
  char buf[128];
  int32_t size = 127;
  mini_read_string(h, f.section.c_str(), f.entry.c_str(), buf, &size);  // loads the section
  for (auto _ : state) {
    size = 127;
    const int32_t code = mini_read_string(h, f.section.c_str(), f.entry.c_str(), buf, &size);
    if (code != INI_OK) state.SkipWithError("entry not found");
    benchmark::DoNotOptimize(buf);
  }
  mini_close(&h);
}
BENCHMARK(BM_mini_read_string)->Name("settings/mini_read_string/loaded");

#ifdef TIV_HAVE_SIMPLEINI
void BM_simpleini_get_value(benchmark::State& state) {
  Fixture& f = fixture();
  CSimpleIniA ini;
  ini.LoadFile(f.path.c_str());
  for (auto _ : state) {
    const char* v = ini.GetValue(f.section.c_str(), f.entry.c_str(), nullptr);
    if (v == nullptr) state.SkipWithError("entry not found");
    benchmark::DoNotOptimize(v);
  }
}
BENCHMARK(BM_simpleini_get_value)->Name("settings/simpleini_get_value/loaded");
#endif

void BM_ini_write_string(benchmark::State& state) {
  Fixture& f = fixture();
  int i = 0;
  for (auto _ : state) {
    const char* value = (++i & 1) != 0 ? "one" : "two";
    if (ini_write_string(f.path.c_str(), f.section.c_str(), f.entry.c_str(), value) != INI_OK)
      state.SkipWithError("write failed");
  }
  f.write();
}
BENCHMARK(BM_ini_write_string)->Name("settings/ini_write_string/one_entry");

void BM_fwrite_whole_file(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    std::FILE* out = std::fopen(f.path.c_str(), "wb");
    std::fwrite(f.content.data(), 1, f.content.size(), out);
    std::fclose(out);
  }
}
BENCHMARK(BM_fwrite_whole_file)->Name("settings/fwrite/whole_file");

}  // namespace

BENCHMARK_MAIN();
