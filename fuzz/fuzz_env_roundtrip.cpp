// Fuzz target: the environment text form read, written and read again. Whatever the input,
// the text written from a tree reads back into a tree that writes the same text; and the bulk
// file reader builds the same tree as the character reader over the same bytes.
#include <tivlib/env.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "support/scratch_dir.h"

namespace {

struct Source {
  std::string_view text;
  std::size_t at = 0;
};

// Bytes arrive as the host's signed characters, as on the system the files come from.
int32_t next_char(intptr_t user) {
  auto* s = reinterpret_cast<Source*>(user);
  if (s->at >= s->text.size()) return -1;
  return static_cast<signed char>(s->text[s->at++]);
}

int32_t append_char(int32_t c, intptr_t user) {
  reinterpret_cast<std::string*>(user)->push_back(static_cast<char>(c));
  return 0;
}

// The text of a tree read from `text` by the character reader.
std::string reread(std::string_view text) {
  env_handle* env = env_open(0, nullptr);
  if (env == nullptr) std::abort();
  Source source{text};
  env_read(next_char, reinterpret_cast<intptr_t>(&source), env);
  std::string out;
  env_write(append_char, reinterpret_cast<intptr_t>(&out), env);
  env_close(env, 0);
  return out;
}

// The text of a tree read from a file holding `bytes` by the bulk reader.
std::string reread_file(std::string_view bytes) {
  std::FILE* f = std::fopen("input.env", "wb");
  if (f == nullptr) std::abort();
  std::fwrite(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
  env_handle* env = env_open(0, nullptr);
  if (env == nullptr) std::abort();
  env_read_file("input.env", env);
  std::string out;
  env_write(append_char, reinterpret_cast<intptr_t>(&out), env);
  env_close(env, 0);
  return out;
}

// The writer's text reads back into the same tree only for names and texts inside the
// bounds of the text form: a ';' that a line break puts first on a line starts a comment, a
// backslash before a break or a line end joins lines, a nul byte is dropped (leaving the
// blanks behind it at the front of a name), byte 0xFF is the end of the input. The round trip
// is checked on the input without those bytes.
bool outside_bounds(char c) { return c == ';' || c == '\\' || c == '\0' || c == '\xff'; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  tiv::fuzz::enter_scratch_directory("/tmp/tivlib-fuzz-envrt.XXXXXX");
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  // The file reader turns CR LF into LF; the character reader takes bytes as they come: the
  // two build the same tree from any input without CR and 0xFF.
  if (input.find_first_of("\r\xff") == std::string_view::npos &&
      reread_file(input) != reread(input))
    std::abort();
  std::string inside(input);
  std::erase_if(inside, outside_bounds);
  const std::string first = reread(inside);
  if (reread(first) != first) std::abort();
  return 0;
}
