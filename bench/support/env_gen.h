// Generator of large environment files for the benchmarks, with the same tree in libconfig's
// syntax beside it.
//
// The tree: sections part0, part1, ... each with scalar entries (whole numbers, decimals,
// short texts), a list of numbers, an array of layer blocks (each with a nested material
// block), and every few sections a long text. Repeated names form arrays in the environment
// form; libconfig gets them as lists of groups. The sections become one libconfig list of
// groups, each carrying its name as a field: libconfig checks every new member of a group
// against all members before it, so thousands of named groups side by side would measure
// that quadratic check rather than parsing. Everything comes from a fixed seed, so every run
// measures the same bytes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace tiv::bench {

// A small deterministic generator (xorshift64*).
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed != 0 ? seed : 1) {}
  uint64_t next() {
    state_ ^= state_ >> 12;
    state_ ^= state_ << 25;
    state_ ^= state_ >> 27;
    return state_ * 2685821657736338717ULL;
  }
  int below(int n) { return static_cast<int>(next() % static_cast<uint64_t>(n)); }

 private:
  uint64_t state_;
};

struct GeneratedFiles {
  std::string env;       // the environment text form
  std::string libconfig; // the same tree for libconfig
  long sections = 0;
  long elements = 0;
};

// Generates at least target_bytes of environment text.
inline GeneratedFiles generate_env_files(std::size_t target_bytes, uint64_t seed = 20240611) {
  static const char* const kWords[] = {"outer", "inner", "brick", "concrete", "timber",
                                       "insulation", "plaster", "steel", "glass", "air"};
  Random rnd(seed);
  GeneratedFiles out;
  out.env.reserve(target_bytes + 4096);
  out.libconfig.reserve(target_bytes * 3 / 2 + 4096);
  char line[256];
  auto env_line = [&](int indent, const char* text) {
    out.env.append(static_cast<std::size_t>(indent), ' ');
    out.env += text;
    out.env += '\n';
  };
  auto cfg_line = [&](int indent, const char* text) {
    out.libconfig.append(static_cast<std::size_t>(indent), ' ');
    out.libconfig += text;
    out.libconfig += '\n';
  };
  for (long s = 0; out.env.size() < target_bytes; ++s) {
    ++out.sections;
    std::snprintf(line, sizeof line, "[part%ld]", s);
    env_line(0, line);
    cfg_line(0, s == 0 ? "parts = (\n{" : "{");
    std::snprintf(line, sizeof line, "section = \"part%ld\";", s);
    cfg_line(2, line);

    const int id = rnd.below(1000000);
    const double height = rnd.below(100000) / 1000.0;
    const char* word = kWords[rnd.below(10)];
    std::snprintf(line, sizeof line, "id =%d", id);
    env_line(2, line);
    std::snprintf(line, sizeof line, "id = %d;", id);
    cfg_line(2, line);
    std::snprintf(line, sizeof line, "height =%.3f", height);
    env_line(2, line);
    std::snprintf(line, sizeof line, "height = %.3f;", height);
    cfg_line(2, line);
    std::snprintf(line, sizeof line, "name =%s wall %ld of the north facade", word, s);
    env_line(2, line);
    std::snprintf(line, sizeof line, "name = \"%s wall %ld of the north facade\";", word, s);
    cfg_line(2, line);
    const double x = rnd.below(10000) / 100.0, y = rnd.below(10000) / 100.0, z = rnd.below(1000) / 100.0;
    std::snprintf(line, sizeof line, "coords =%.2f,%.2f,%.2f", x, y, z);
    env_line(2, line);
    std::snprintf(line, sizeof line, "coords = [%.2f, %.2f, %.2f];", x, y, z);
    cfg_line(2, line);
    out.elements += 5;

    const int layers = 1 + rnd.below(4);
    cfg_line(2, "layer = (");
    for (int l = 0; l < layers; ++l) {
      const char* material = kWords[rnd.below(10)];
      const double thickness = (1 + rnd.below(500)) / 1000.0;
      const int density = 100 + rnd.below(2400);
      env_line(2, "layer ={");
      std::snprintf(line, sizeof line, "name =%s", material);
      env_line(4, line);
      std::snprintf(line, sizeof line, "thickness =%.3f", thickness);
      env_line(4, line);
      env_line(4, "material ={");
      std::snprintf(line, sizeof line, "density =%d", density);
      env_line(6, line);
      std::snprintf(line, sizeof line, "lambda =%.4f", density / 20000.0);
      env_line(6, line);
      env_line(4, "}");
      env_line(2, "}");
      cfg_line(4, "{");
      std::snprintf(line, sizeof line, "name = \"%s\";", material);
      cfg_line(6, line);
      std::snprintf(line, sizeof line, "thickness = %.3f;", thickness);
      cfg_line(6, line);
      std::snprintf(line, sizeof line, "material = { density = %d; lambda = %.4f; };", density,
                    density / 20000.0);
      cfg_line(6, line);
      cfg_line(4, l + 1 < layers ? "}," : "}");
      out.elements += 6;
    }
    cfg_line(2, ");");

    if (s % 8 == 0) {
      std::string text;
      const int words = 40 + rnd.below(120);
      for (int w = 0; w < words; ++w) {
        if (w > 0) text += ' ';
        text += kWords[rnd.below(10)];
      }
      out.env += "  remark =" + text + "\n";
      out.libconfig += "  remark = \"" + text + "\";\n";
      ++out.elements;
    }
    cfg_line(0, out.env.size() < target_bytes ? "}," : "}\n);");
  }
  return out;
}

}  // namespace tiv::bench
