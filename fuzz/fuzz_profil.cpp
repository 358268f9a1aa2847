// Fuzz target for the catalogue reader: the input is a name query (up to the first zero byte)
// and a catalogue file (the rest). The file is opened and walked with every kind of lookup:
// the name query, a search with conditions, a filter, forward and backward steps.
#include <tivlib/profil.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace {

// The temporary directory of this process; the catalogue file is rewritten for each input.
const std::string& work_dir() {
  static const std::string dir = [] {
    char pattern[] = "/tmp/tivlib-fuzz-profil.XXXXXX";
    if (::mkdtemp(pattern) == nullptr) std::abort();
    if (::chdir(pattern) != 0) std::abort();
    profil_path(pattern);
    return std::string(pattern);
  }();
  return dir;
}

int32_t accept_some(double* values) { return values[0] > 1.0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string dir = work_dir();
  const auto* zero = static_cast<const uint8_t*>(std::memchr(data, 0, size));
  const std::string query(reinterpret_cast<const char*>(data), zero ? static_cast<size_t>(zero - data) : 0);
  const uint8_t* file = zero ? zero + 1 : data;
  const size_t file_size = size - static_cast<size_t>(file - data);

  std::FILE* f = std::fopen((dir + "/fz.pro").c_str(), "wb");
  if (f == nullptr) return 0;
  std::fwrite(file, 1, file_size, f);
  std::fclose(f);

  const char* items[] = {"A", "Iy", "h", "Kind", "A", nullptr};
  double factors[5];
  profil_get_factors(items, factors);
  char name[] = "fz";
  profil_handle* h = profil_open(name, items, factors);
  if (h == nullptr) return 0;
  double values[5];
  char result[PROFIL_RESULT_SIZE];
  char kind[PROFIL_PART_SIZE], part[PROFIL_PART_SIZE];
  if (profil_get(h, query.c_str(), values, result) == 0) profil_convert_result(result, kind, part);

  char gt[] = " > ", ne[] = "<>";
  profil_term terms[] = {{"A", gt, 0.001}, {"h", ne, 0.2}, {"nope", gt, 1.0}};
  int rounds = 0;
  for (int code = profil_search(h, terms, 3, query.c_str(), values, result); code == 0 && rounds < 5000;
       code = profil_search_next(h, nullptr, 0, query.c_str(), values, result))
    ++rounds;
  profil_reset(h, nullptr, nullptr);
  profil_search_f(h, accept_some, "", values, result);
  for (rounds = 0; profil_next(h, values, result) == 0 && rounds < 5000; ++rounds) {
    if (rounds % 7 == 3) profil_prev(h, values, result);
  }
  for (rounds = 0; profil_prev(h, values, result) == 0 && rounds < 100; ++rounds) {
  }
  profil_close(h);
  return 0;
}
