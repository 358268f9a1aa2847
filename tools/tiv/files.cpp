#include "files.h"

#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "context.h"
#include "scratch.h"

namespace tiv::cli {

namespace {

// What a path that is there but no regular file is, in words; empty for a regular file or a
// path that isn't there.
std::string not_a_file(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0 || S_ISREG(st.st_mode)) return {};
  if (S_ISDIR(st.st_mode)) return "a directory";
  if (S_ISFIFO(st.st_mode)) return "a FIFO";
  if (S_ISSOCK(st.st_mode)) return "a socket";
  if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) return "a device";
  return "not a regular file";
}

void require_regular(const std::string& path) {
  const std::string what = not_a_file(path);
  if (!what.empty()) fail(kIo, "cannot open: " + what + ", not a regular file", path);
}

std::string copy_standard_input() {
  static int copies = 0;
  const std::string copy = (scratch_directory() / ("stdin-" + std::to_string(++copies))).string();
  std::FILE* out = std::fopen(copy.c_str(), "wb");
  if (out == nullptr) fail(kIo, "cannot keep standard input", "-");
  char buffer[1 << 16];
  bool ok = true;
  for (std::size_t n; ok && (n = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
    ok = std::fwrite(buffer, 1, n, out) == n;
  ok = std::fclose(out) == 0 && ok && std::ferror(stdin) == 0;
  if (!ok) fail(kIo, "cannot read standard input", "-");
  return copy;
}

}  // namespace

CLI::Validator input_file() {
  return CLI::Validator(
      [](std::string& value) {
        if (value == "-") value = copy_standard_input();
        else require_regular(value);
        return std::string();
      },
      "", "input file");
}

CLI::Validator changed_file() {
  return CLI::Validator(
      [](std::string& value) {
        require_regular(value);
        return std::string();
      },
      "", "changed file");
}

}  // namespace tiv::cli
