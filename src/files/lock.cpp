// fio_lock / fio_unlock: the whole file, locked through its descriptor.
#include <sys/stat.h>
#include <unistd.h>

#include "files/handle.h"
#include "platform/locks.h"

namespace tiv::files {
namespace {

constexpr int kLockTries = 10;        // tries of fio_lock
constexpr int kLockPauseMs = 1000;    // pause between two tries

// The descriptor's position and the file's length, flushing buffered writes first so that
// the length counts them.
bool note(fio_handle* h, int& fd, off_t& position, off_t& length) {
  std::fflush(h->stream);
  fd = ::fileno(h->stream);
  if (fd < 0) return false;
  position = ::lseek(fd, 0, SEEK_CUR);
  struct stat st {};
  if (position < 0 || ::fstat(fd, &st) != 0) return false;
  length = st.st_size;
  return true;
}

}  // namespace
}  // namespace tiv::files

// 0, -4 nil handle or bad descriptor, -1 access refused, -5 anything else, also a lock that
// another holder keeps through all ten tries (about nine seconds).
extern "C" int32_t fio_lock(fio_handle* handle) noexcept {
  if (handle == nullptr) return -4;
  int fd;
  off_t position, length;
  if (!tiv::files::note(handle, fd, position, length)) return -5;
  ::lseek(fd, 0, SEEK_SET);
  const auto result = tiv::platform::lock_range(fd, 0, length, tiv::files::kLockTries,
                                                tiv::files::kLockPauseMs);
  ::lseek(fd, position, SEEK_SET);
  switch (result) {
    case tiv::platform::LockResult::done: return 0;
    case tiv::platform::LockResult::bad_descriptor: return -4;
    case tiv::platform::LockResult::refused: return -1;
    case tiv::platform::LockResult::failed: break;
  }
  return -5;
}

// 0, -1 nil handle, no position or length, or a bad descriptor; -2 any other failure. The
// release covers the whole file from its start, so a file that grew since its lock is
// released entirely.
extern "C" int32_t fio_unlock(fio_handle* handle) noexcept {
  if (handle == nullptr) return -1;
  int fd;
  off_t position, length;
  if (!tiv::files::note(handle, fd, position, length)) return -1;
  ::lseek(fd, 0, SEEK_SET);
  const auto result = tiv::platform::unlock_range(fd, 0, 0);
  ::lseek(fd, position, SEEK_SET);
  switch (result) {
    case tiv::platform::LockResult::done: return 0;
    case tiv::platform::LockResult::bad_descriptor: return -1;
    default: return -2;
  }
}
