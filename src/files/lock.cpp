// fio_lock / fio_unlock: the whole file, locked through its descriptor.
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

#include "files/handle.h"
#include "platform/locks.h"

namespace tiv::files {
namespace {

constexpr int kLockTries = 10;        // tries of fio_lock
constexpr int kLockPauseMs = 1000;    // pause between two tries

// Runs op(descriptor, length of the file) with the descriptor at the file's start, and puts
// the descriptor back where it stood. Buffered writes are flushed first so that the length
// counts them. Nothing (op not run) when the descriptor, its position or the length can't be
// had.
template <class Op>
std::optional<platform::LockResult> from_file_start(fio_handle* h, Op op) {
  std::fflush(h->stream);
  const int fd = ::fileno(h->stream);
  if (fd < 0) return std::nullopt;
  const off_t position = ::lseek(fd, 0, SEEK_CUR);
  struct stat st {};
  if (position < 0 || ::fstat(fd, &st) != 0) return std::nullopt;
  ::lseek(fd, 0, SEEK_SET);
  const platform::LockResult result = op(fd, st.st_size);
  ::lseek(fd, position, SEEK_SET);
  return result;
}

}  // namespace
}  // namespace tiv::files

// 0, -4 nil handle or bad descriptor, -1 access refused, -5 anything else, also a lock that
// another holder keeps through all ten tries (about nine seconds).
extern "C" int32_t fio_lock(fio_handle* handle) noexcept {
  if (handle == nullptr) return -4;
  const auto result = tiv::files::from_file_start(handle, [](int fd, off_t length) {
    return tiv::platform::lock_range(fd, 0, length, tiv::files::kLockTries,
                                     tiv::files::kLockPauseMs);
  });
  if (!result) return -5;
  switch (*result) {
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
  const auto result = tiv::files::from_file_start(
      handle, [](int fd, off_t) { return tiv::platform::unlock_range(fd, 0, 0); });
  if (!result) return -1;
  switch (*result) {
    case tiv::platform::LockResult::done: return 0;
    case tiv::platform::LockResult::bad_descriptor: return -1;
    default: return -2;
  }
}
