// Opening and reading arbitrary files: the input is written to a file in a temporary directory
// and read back through every reading mode and every typed read until the end of the file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <tivlib/fio.h>

#include "support/run_dir.h"

namespace {

void drain(fio_handle* h, uint8_t selector) {
  char buffer[64];
  for (int guard = 0; guard < 100000; ++guard) {
    int32_t rc;
    switch ((selector + guard) % 7) {
      case 0: { double d; rc = fio_getdouble(h, &d); break; }
      case 1: { float f; rc = fio_getfloat(h, &f); break; }
      case 2: { int32_t l; rc = fio_getlong(h, &l); break; }
      case 3: { int16_t s; rc = fio_getshort(h, &s); break; }
      case 4: rc = fio_getstring(h, 1 + selector % 63, buffer); break;
      case 5: rc = fio_getstringdel(h, selector % 64, ";,=", buffer); break;
      default: rc = fio_getchar(h, nullptr); break;
    }
    if (rc == -1 && fio_tell(h) >= fio_length(h)) return;
    if (rc == -1 && fio_getchar(h, nullptr) == -1) return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static tiv::fuzz::RunDir dir("/tmp/tivlib-fuzz.XXXXXX", "input.bin");
  tiv::fuzz::put_input(dir.file, data, size);
  const uint8_t selector = size ? data[0] : 0;
  for (int32_t mode : {FIO_READ | FIO_HEADER, FIO_READ, FIO_READ | FIO_TEXT,
                       FIO_READ | FIO_UPDATE | FIO_HEADER}) {
    fio_handle* h = fio_open(dir.path.c_str(), "input.bin", mode);
    if (h == nullptr) std::abort();
    drain(h, selector);
    fio_close(h);
  }
  return 0;
}
