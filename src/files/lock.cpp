// fio_lock / fio_unlock: the whole file, locked through its stream.
#include "files/handle.h"
#include "platform/locks.h"

namespace tiv::files {
namespace {

constexpr int kLockTries = 10;        // tries of fio_lock
constexpr int kLockPauseMs = 1000;    // pause between two tries

}  // namespace
}  // namespace tiv::files

// 0, -4 nil handle or bad descriptor, -1 access refused, -5 anything else, also a lock that
// another holder keeps through all ten tries (about nine seconds).
extern "C" int32_t fio_lock(fio_handle* handle) noexcept {
  if (handle == nullptr) return -4;
  switch (tiv::platform::lock_whole_file(handle->stream, tiv::files::kLockTries,
                                         tiv::files::kLockPauseMs)) {
    case tiv::platform::LockResult::done: return 0;
    case tiv::platform::LockResult::bad_descriptor: return -4;
    case tiv::platform::LockResult::refused: return -1;
    case tiv::platform::LockResult::failed:
    case tiv::platform::LockResult::unusable: break;
  }
  return -5;
}

// 0, -1 nil handle, no position or length, or a bad descriptor; -2 any other failure. The
// release covers the whole file from its start, so a file that grew since its lock is
// released entirely.
extern "C" int32_t fio_unlock(fio_handle* handle) noexcept {
  if (handle == nullptr) return -1;
  switch (tiv::platform::unlock_whole_file(handle->stream)) {
    case tiv::platform::LockResult::done: return 0;
    case tiv::platform::LockResult::bad_descriptor:
    case tiv::platform::LockResult::unusable: return -1;
    default: return -2;
  }
}
