// Byte-range locks with fcntl's open-file-description locks.
#include "platform/locks.h"

#include <cerrno>
#include <fcntl.h>
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

}  // namespace

LockResult lock_range(int fd, off_t start, off_t length, int tries, int pause_ms) noexcept {
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

LockResult unlock_range(int fd, off_t start, off_t length) noexcept {
  struct flock f = range(F_UNLCK, start, length);
  if (::fcntl(fd, F_OFD_SETLK, &f) == 0) return LockResult::done;
  return errno == EBADF ? LockResult::bad_descriptor : LockResult::failed;
}

}  // namespace tiv::platform
