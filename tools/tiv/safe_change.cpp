#include "safe_change.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "context.h"

namespace tiv::cli {

namespace {

// The temporary file of the change in progress, for the signal handler (one at a time).
char g_temp_for_signal[PATH_MAX + 1];

extern "C" void remove_temp_and_die(int sig) {
  if (g_temp_for_signal[0] != '\0') ::unlink(g_temp_for_signal);
  std::signal(sig, SIG_DFL);
  std::raise(sig);
}

void watch_signals() {
  static bool installed = false;
  if (installed) return;
  installed = true;
  for (int sig : {SIGINT, SIGTERM, SIGHUP}) std::signal(sig, remove_temp_and_die);
}

std::string system_error() { return std::strerror(errno); }

std::string directory_of(const std::string& path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  return parent.empty() ? "." : parent.string();
}

bool write_all(int fd, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

// Copies the file `from` into the open descriptor `to` (from its start).
bool copy_into(const std::string& from, int to) {
  const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return false;
  char buffer[1 << 16];
  bool ok = true;
  for (;;) {
    const ssize_t n = ::read(in, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) ok = false;
    if (n <= 0) break;
    if (!write_all(to, buffer, static_cast<std::size_t>(n))) {
      ok = false;
      break;
    }
  }
  const int saved = errno;
  ::close(in);
  errno = saved;
  return ok;
}

}  // namespace

FileChange::FileChange(const std::string& path) : path_(path), target_(path) {
  watch_signals();
  // A symbolic link is followed, so the link stays and its target changes.
  char resolved[PATH_MAX];
  struct stat st {};
  if (::stat(path.c_str(), &st) == 0) {
    exists_ = true;
    struct stat link {};
    if (::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode) &&
        ::realpath(path.c_str(), resolved) != nullptr)
      target_ = resolved;
  }
  const std::string dir = directory_of(target_);
  dir_fd_ = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir_fd_ < 0) fail(kIo, "cannot open the directory: " + system_error(), path_);
  while (::flock(dir_fd_, LOCK_EX) != 0) {
    if (errno != EINTR) fail(kIo, "cannot lock the directory: " + system_error(), path_);
  }
}

FileChange::~FileChange() {
  if (!committed_) drop_temp();
  if (temp_ != nullptr) std::fclose(temp_);
  if (dir_fd_ >= 0) ::close(dir_fd_);  // releases the lock
}

void FileChange::drop_temp() noexcept {
  if (!temp_path_.empty()) ::unlink(temp_path_.c_str());
  g_temp_for_signal[0] = '\0';
}

std::FILE* FileChange::temp() {
  if (temp_ != nullptr) return temp_;
  std::string pattern = target_ + ".tiv-XXXXXX";
  if (pattern.size() > PATH_MAX) fail(kIo, "the file name is too long for a temporary file", path_);
  const int fd = ::mkostemp(pattern.data(), O_CLOEXEC);  // exclusive, mode 0600
  if (fd < 0) fail(kIo, "cannot create a temporary file beside it: " + system_error(), path_);
  temp_path_ = pattern;
  std::memcpy(g_temp_for_signal, pattern.c_str(), pattern.size() + 1);
  temp_ = ::fdopen(fd, "wb");
  if (temp_ == nullptr) {
    ::close(fd);
    fail(kIo, "cannot write the temporary file: " + system_error(), path_);
  }
  return temp_;
}

const std::string& FileChange::temp_path() {
  temp();
  return temp_path_;
}

void FileChange::copy_target_to_temp() {
  std::FILE* f = temp();
  if (!exists_) return;
  std::fflush(f);
  if (!copy_into(target_, ::fileno(f))) fail(kIo, "cannot copy the file: " + system_error(), path_);
}

void FileChange::rewrite_temp(std::string_view content) {
  std::FILE* f = temp();
  std::fflush(f);
  const int fd = ::open(temp_path_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOFOLLOW);
  const bool ok = fd >= 0 && write_all(fd, content.data(), content.size());
  const std::string why = system_error();
  if (fd >= 0) ::close(fd);
  if (!ok) fail(kIo, "cannot write the temporary file: " + why + "; the file is unchanged", path_);
}

void FileChange::commit() {
  std::FILE* f = temp();
  const bool written = std::fflush(f) == 0 && std::ferror(f) == 0;
  std::fclose(f);
  temp_ = nullptr;
  // The library may have rewritten the temporary file through its own name: flush it by name.
  const int fd = ::open(temp_path_.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
  if (!written || fd < 0 || ::fsync(fd) != 0) {
    const std::string why = system_error();
    if (fd >= 0) ::close(fd);
    fail(kIo, "cannot write: " + why + "; the file is unchanged", path_);
  }
  struct FdCloser {
    int fd;
    ~FdCloser() { ::close(fd); }
  } closer{fd};
  struct stat st {};
  const bool had = ::stat(target_.c_str(), &st) == 0;
  mode_t mode;
  if (had) {
    mode = st.st_mode & 07777;
    if (::fchown(fd, st.st_uid, st.st_gid) != 0) {
      // Another owner can't be given without privilege; the group may still be kept.
      (void)::fchown(fd, static_cast<uid_t>(-1), st.st_gid);
    }
  } else {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    mode = 0666 & ~mask;
  }
  if (::fchmod(fd, mode) != 0) fail(kIo, "cannot set the mode: " + system_error(), path_);
  if (had && st.st_nlink > 1) {
    // Several hard links: the file is written in place, so every name keeps seeing it. The
    // finished temporary file stays if that copy fails.
    const int out = ::open(target_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (out < 0 || !copy_into(temp_path_, out) || ::fsync(out) != 0) {
      const std::string why = system_error();
      if (out >= 0) ::close(out);
      committed_ = true;  // keep the temporary file: it holds the whole new content
      g_temp_for_signal[0] = '\0';
      fail(kIo, "cannot write in place: " + why + "; the file is damaged, its whole new content is in " +
                    temp_path_, path_);
    }
    ::close(out);
    drop_temp();
    committed_ = true;
    return;
  }
  if (::rename(temp_path_.c_str(), target_.c_str()) != 0)
    fail(kIo, "cannot replace the file: " + system_error() + "; the file is unchanged", path_);
  committed_ = true;
  g_temp_for_signal[0] = '\0';
  ::fsync(dir_fd_);
}

void replace_file_safely(const std::string& path, std::string_view content) {
  FileChange change(path);
  std::FILE* f = change.temp();
  if (std::fwrite(content.data(), 1, content.size(), f) != content.size())
    fail(kIo, "cannot write: " + system_error() + "; the file is unchanged", path);
  change.commit();
}

}  // namespace tiv::cli
