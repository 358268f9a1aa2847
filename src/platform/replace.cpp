#include "platform/replace.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "platform/files.h"

namespace tiv::platform {

namespace {

std::string directory_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

Replacement::~Replacement() {
  if (stream_ != nullptr) std::fclose(stream_);
  if (!temp_.empty()) ::unlink(temp_.c_str());
}

std::FILE* Replacement::open(const char* path) noexcept {
  try {
    target_ = real_path(path != nullptr ? path : "", Intent::create);
    if (target_.empty()) return nullptr;
    struct stat st {};
    const bool exists = ::stat(target_.c_str(), &st) == 0;
    if (exists && S_ISDIR(st.st_mode)) return nullptr;
    // A link is followed: the file it names is replaced, the link stays.
    char resolved[PATH_MAX];
    if (exists && ::realpath(target_.c_str(), resolved) != nullptr) target_ = resolved;
    if (!exists || (S_ISREG(st.st_mode) && st.st_nlink == 1)) {
      std::string pattern = target_ + ".tiv-XXXXXX";
      const int fd = ::mkostemp(pattern.data(), O_CLOEXEC);
      if (fd >= 0) {
        temp_ = pattern;
        if (exists) (void)::fchmod(fd, st.st_mode & 07777);
        else {
          const mode_t mask = ::umask(0);
          ::umask(mask);
          (void)::fchmod(fd, 0666 & ~mask);
        }
        if (exists) (void)::fchown(fd, st.st_uid, st.st_gid);
        stream_ = ::fdopen(fd, "wb");
        if (stream_ == nullptr) ::close(fd);
        return stream_;
      }
    }
    // Several hard links, no regular file, or a directory that takes no new file: in place.
    stream_ = std::fopen(target_.c_str(), "wb");
    return stream_;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

bool Replacement::commit() noexcept {
  if (stream_ == nullptr) return false;
  // A device written in place can't be synced (EINVAL): that is no fault.
  const bool flushed = std::fflush(stream_) == 0 && (::fsync(::fileno(stream_)) == 0 || errno == EINVAL);
  const bool closed = std::fclose(stream_) == 0;
  stream_ = nullptr;
  if (!flushed || !closed) return false;
  if (temp_.empty()) return true;
  if (::rename(temp_.c_str(), target_.c_str()) != 0) return false;
  temp_.clear();
  try {
    const int dir = ::open(directory_of(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
      (void)::fsync(dir);
      ::close(dir);
    }
  } catch (const std::bad_alloc&) {
  }
  return true;
}

}  // namespace tiv::platform
