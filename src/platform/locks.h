// Whole-file byte-range locks on a descriptor.
//
// Locks are open-file-description locks (F_OFD_SETLK): they belong to the open file, as the
// locks of the file system the library came from belonged to the handle, so a second handle
// on the same file is refused even inside one process, and closing another descriptor of the
// file leaves the lock alone. A descriptor open for reading only takes a shared (read) lock,
// any other an exclusive one.
#pragma once

#include <cstdint>
#include <cstdio>

namespace tiv::platform {

// `unusable`: the stream's descriptor, position or length could not be had.
enum class LockResult { done, bad_descriptor, refused, failed, unusable };

// Locks `length` bytes from `start` of the file open as `descriptor` (length 0: to the end of
// the file, whatever it grows to), trying `tries` times with `pause_ms` between tries. A lock
// still held by another when the tries are over is `failed` (the deadlock outcome); `refused`
// is kept for a permission failure of the lock call itself.
LockResult lock_range(int32_t descriptor, int64_t start, int64_t length, int32_t tries,
                      int32_t pause_ms) noexcept;

// Releases `length` bytes from `start`, one try.
LockResult unlock_range(int32_t descriptor, int64_t start, int64_t length) noexcept;

// Locks the whole file of `stream`, from its start to its present length (buffered writes are
// flushed first, so the length counts them); the stream keeps its position.
LockResult lock_whole_file(std::FILE* stream, int32_t tries, int32_t pause_ms) noexcept;

// Releases the file of `stream` from its start to wherever it ends.
LockResult unlock_whole_file(std::FILE* stream) noexcept;

}  // namespace tiv::platform
