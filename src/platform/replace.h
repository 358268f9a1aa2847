// Replacing a file's content without ever leaving it half-written.
//
// The new content goes to a private temporary file beside the target (mode 0600, created
// exclusively; symbolic links of the target are followed, so the link stays and the file it
// names changes), which is flushed to the disk, given the target's mode and renamed over it;
// the directory is then synced. Where the target has several hard links, or its directory
// can't take a new file, the target is written in place instead, as a plain open would.
#pragma once

#include <cstdio>
#include <string>

namespace tiv::platform {

class Replacement {
 public:
  Replacement() = default;
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  // An uncommitted temporary file is removed; the target keeps its old content.
  ~Replacement();

  // The stream for the new content of the library path `path` (written in binary, as the
  // library's text streams are on Linux). Nil if the file can't be written either way.
  std::FILE* open(const char* path) noexcept;

  // Flushes the new content and puts it in place. False on a write fault: with a temporary
  // file the target then keeps its old content.
  bool commit() noexcept;

 private:
  std::FILE* stream_ = nullptr;
  std::string target_;
  std::string temp_;  // empty when the target is written in place
};

}  // namespace tiv::platform
