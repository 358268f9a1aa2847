// Whole-file byte-range locks on a descriptor.
//
// Locks are open-file-description locks (F_OFD_SETLK): they belong to the open file, as the
// locks of the file system the library came from belonged to the handle, so a second handle
// on the same file is refused even inside one process, and closing another descriptor of the
// file leaves the lock alone. A descriptor open for reading only takes a shared (read) lock,
// any other an exclusive one.
#pragma once

#include <sys/types.h>

namespace tiv::platform {

enum class LockResult { done, bad_descriptor, refused, failed };

// Locks `length` bytes from `start`, trying `tries` times with `pause_ms` between tries.
// A lock still held by another when the tries are over is `failed` (the deadlock outcome);
// `refused` is kept for a permission failure of the lock call itself.
LockResult lock_range(int fd, off_t start, off_t length, int tries, int pause_ms) noexcept;

// Releases `length` bytes from `start`, one try.
LockResult unlock_range(int fd, off_t start, off_t length) noexcept;

}  // namespace tiv::platform
