// Path composition and name resolution on arbitrary bytes: the input is cut into host, dir and
// name at the first two zero bytes. Checks that results stay within their buffers, are lower
// case with back-slashes, and that resolution of the composed path never fails hard.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <tivlib/fio.h>

#include "platform/files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string parts[3];
  std::size_t k = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0 && k < 2) {
      ++k;
      continue;
    }
    parts[k] += static_cast<char>(data[i]);
  }
  char out[FIO_PATH_BUFFER];
  fio_makepath(out, parts[0].c_str(), parts[1].c_str(), parts[2].c_str());
  const std::size_t n = std::strlen(out);
  if (n > FIO_PATH_MAX) std::abort();
  for (std::size_t i = 0; i < n; ++i)
    if (out[i] == '/' || (out[i] >= 'A' && out[i] <= 'Z')) std::abort();

  char host[3], dir[FIO_PATH_BUFFER], name[FIO_PATH_BUFFER];
  fio_divide(parts[2].c_str(), host, dir, name);
  fio_test_filename(parts[2].c_str());
  fio_get_extention_pos(parts[2].c_str());
  // Resolution only reads the file system.
  (void)tiv::platform::real_path(out);
  (void)fio_exist(nullptr, out);
  return 0;
}
