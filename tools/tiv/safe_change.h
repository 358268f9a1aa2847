// Changes that never lose data. A change of one file runs from reading to renaming under an
// exclusive advisory lock (flock) on the file's directory, so concurrent tiv processes on one
// file are serialised and none loses another's change. The new content goes to a private
// temporary file beside the target (created exclusively, mode 0600), is flushed to disk, gets
// the target's mode (and owner, where permitted), and is renamed over the target; the
// directory is then synced. A symbolic link is followed: the link stays, its target changes.
// A file with several hard links is written in place from the finished temporary file, which
// is kept (and named in the message) if that copy fails. Ctrl-C, SIGTERM and SIGHUP remove the
// temporary file; a refused or failed change leaves none.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tiv::cli {

class FileChange {
 public:
  // Locks the directory of `path` (waiting for other tiv changes) and resolves links.
  explicit FileChange(const std::string& path);
  ~FileChange();
  FileChange(const FileChange&) = delete;
  FileChange& operator=(const FileChange&) = delete;

  // The file that is changed: `path` with its symbolic links followed.
  const std::string& target() const { return target_; }
  bool target_exists() const { return exists_; }

  // The private temporary file beside the target, created at the first call; open for writing.
  std::FILE* temp();
  const std::string& temp_path();
  // Fills the temporary file with a copy of the target (for changes made by the library).
  void copy_target_to_temp();

  // Replaces what the temporary file holds by `content`.
  void rewrite_temp(std::string_view content);

  // Flushes the temporary file and puts it in the target's place. Throws Failure (kIo).
  void commit();

 private:
  void drop_temp() noexcept;

  std::string path_;
  std::string target_;
  bool exists_ = false;
  int dir_fd_ = -1;
  std::string temp_path_;
  std::FILE* temp_ = nullptr;
  bool committed_ = false;
};

// Replaces `path` with `content` as one FileChange.
void replace_file_safely(const std::string& path, std::string_view content);

}  // namespace tiv::cli
