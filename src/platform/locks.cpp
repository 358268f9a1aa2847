// Byte-range locks with fcntl's open-file-description locks.
#include "platform/locks.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace tiv::platform {
namespace {

struct flock range(short type, off_t start, off_t length) {
  struct flock f {};
  f.l_type = type;
  f.l_whence = SEEK_SET;
  f.l_start = start;
  f.l_len = length;
  f.l_pid = 0;  // required for open-file-description locks
  return f;
}

void pause_for(int ms) {
  timespec t{ms / 1000, static_cast<long>(ms % 1000) * 1000000L};
  while (::nanosleep(&t, &t) != 0 && errno == EINTR) {
  }
}

// Runs op(descriptor, length of the file) with the descriptor at the file's start, and puts
// the descriptor back where it stood. Buffered writes are flushed first so that the length
// counts them. `unusable` when the descriptor, its position or the length can't be had.
template <class Op>
LockResult from_file_start(std::FILE* stream, Op op) {
  if (stream == nullptr) return LockResult::unusable;
  std::fflush(stream);
  const int fd = ::fileno(stream);
  if (fd < 0) return LockResult::unusable;
  const off_t position = ::lseek(fd, 0, SEEK_CUR);
  struct stat st {};
  if (position < 0 || ::fstat(fd, &st) != 0) return LockResult::unusable;
  ::lseek(fd, 0, SEEK_SET);
  const LockResult result = op(fd, static_cast<int64_t>(st.st_size));
  ::lseek(fd, position, SEEK_SET);
  return result;
}

}  // namespace

LockResult lock_whole_file(std::FILE* stream, int32_t tries, int32_t pause_ms) noexcept {
  return from_file_start(stream, [&](int fd, int64_t length) {
    return lock_range(fd, 0, length, tries, pause_ms);
  });
}

LockResult unlock_whole_file(std::FILE* stream) noexcept {
  return from_file_start(stream, [](int fd, int64_t) { return unlock_range(fd, 0, 0); });
}

LockResult lock_range(int32_t fd, int64_t start, int64_t length, int32_t tries,
                      int32_t pause_ms) noexcept {
  const int flags = ::fcntl(fd, F_GETFL);
  if (flags < 0) return errno == EBADF ? LockResult::bad_descriptor : LockResult::failed;
  const short type = (flags & O_ACCMODE) == O_RDONLY ? F_RDLCK : F_WRLCK;
  for (int attempt = 1;; ++attempt) {
    struct flock f = range(type, start, length);
    if (::fcntl(fd, F_OFD_SETLK, &f) == 0) return LockResult::done;
    const int error = errno;
    if (error == EBADF) return LockResult::bad_descriptor;
    if (error != EAGAIN && error != EACCES) return error == EPERM ? LockResult::refused : LockResult::failed;
    if (attempt >= tries) return LockResult::failed;
    pause_for(pause_ms);
  }
}

LockResult unlock_range(int32_t fd, int64_t start, int64_t length) noexcept {
  struct flock f = range(F_UNLCK, start, length);
  if (::fcntl(fd, F_OFD_SETLK, &f) == 0) return LockResult::done;
  return errno == EBADF ? LockResult::bad_descriptor : LockResult::failed;
}

}  // namespace tiv::platform
