// Fuzz target: the JSON output of the command line. The input is a file that every reading
// subcommand with --json is run on, in process; whatever the bytes, each output must parse as
// JSON and be valid UTF-8, and no exception may leave the command.
#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "support/scratch_dir.h"

namespace {

// True for well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool valid_utf8(std::string_view s) {
  static constexpr uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  for (std::size_t i = 0; i < s.size();) {
    const auto c = static_cast<unsigned char>(s[i]);
    std::size_t n = 0;
    uint32_t cp = c;
    if (c >= 0x80) {
      if ((c & 0xe0) == 0xc0) n = 1, cp = c & 0x1f;
      else if ((c & 0xf0) == 0xe0) n = 2, cp = c & 0x0f;
      else if ((c & 0xf8) == 0xf0) n = 3, cp = c & 0x07;
      else return false;
    }
    if (s.size() - i <= n) return false;
    for (std::size_t k = 1; k <= n; ++k) {
      const auto d = static_cast<unsigned char>(s[i + k]);
      if ((d & 0xc0) != 0x80) return false;
      cp = (cp << 6) | (d & 0x3f);
    }
    if (cp < kLeast[n] || cp > 0x10ffff || (cp >= 0xd800 && cp <= 0xdfff)) return false;
    i += n + 1;
  }
  return true;
}

// Runs one command line; its standard output, when the command succeeded, must be JSON.
void check_json_output(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  tiv::cli::Context ctx{out, err};
  tiv::cli::ErrLog log("zv.err");
  tiv::cli::Session session{ctx, log};
  const int code = tiv::cli::run_command_line(args, session);
  const std::string text = out.str();
  if (text.empty()) return;
  if (!valid_utf8(text)) std::abort();
  // Each output is one JSON document, or one document a line for commands that go on.
  if (!nlohmann::json::accept(text)) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
      if (!line.empty() && !nlohmann::json::accept(line)) std::abort();
  }
  (void)code;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  tiv::fuzz::enter_scratch_directory("/tmp/tivlib-fuzz-tiv.XXXXXX");
  std::FILE* f = std::fopen("input", "wb");
  if (f == nullptr) std::abort();
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  // A section and an entry name taken from the input, so that gets find something.
  std::string word(reinterpret_cast<const char*>(data), size < 12 ? size : 12);
  word = word.c_str();
  check_json_output({"env", "dump", "--json", "input"});
  check_json_output({"env", "check", "--json", "input"});
  check_json_output({"env", "get", "--json", "input", word.empty() ? "x" : word});
  check_json_output({"ini", "list", "--json", "input"});
  check_json_output({"ini", "get", "--json", "input", word.empty() ? "x" : word, "a"});
  check_json_output({"scan", "--json", "input"});
  check_json_output({"calc", "--json", std::string(reinterpret_cast<const char*>(data), size).c_str()});
  return 0;
}
