// Drive letters mapped onto directories, with a working directory per drive.
#include "platform/drives.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files.h"

namespace tiv::platform {
namespace {

// Process-wide: the current drive and the remembered working directories of the others
// (real absolute paths; empty means the drive's root). The current drive's entry is stale:
// the process working directory is the truth for it.
struct DriveState {
  int current = kDefaultDrive;
  std::array<std::string, kDriveCount + 1> remembered;
};

DriveState& state() {
  static DriveState s;
  return s;
}

bool valid(int drive) { return drive >= 1 && drive <= kDriveCount; }

std::optional<std::string> process_directory() {
  std::string buffer(256, '\0');
  for (;;) {
    if (::getcwd(buffer.data(), buffer.size()) != nullptr) {
      buffer.resize(std::char_traits<char>::length(buffer.c_str()));
      return buffer;
    }
    if (errno != ERANGE || buffer.size() > (1u << 20)) return std::nullopt;
    buffer.resize(buffer.size() * 2);
  }
}

bool is_directory(const std::string& path) {
  struct stat st {};
  return ::stat(path.empty() ? "/" : path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The length of `root` as a prefix of `path` when the root holds the path, else npos.
std::size_t held_by(std::string_view path, std::string_view root) {
  if (path.substr(0, root.size()) != root) return std::string_view::npos;
  if (path.size() > root.size() && path[root.size()] != '/') return std::string_view::npos;
  return root.size();
}

}  // namespace

std::string drive_root(int drive) {
  if (!valid(drive)) return {};
  char variable[] = "TIVLIB_DRIVE_?";
  variable[sizeof variable - 2] = static_cast<char>('A' + drive - 1);
  const char* value = std::getenv(variable);
  std::string root = value ? value : "";
  while (!root.empty() && root.back() == '/') root.pop_back();
  return root;
}

int current_drive() noexcept { return state().current; }

bool set_current_drive(int drive) noexcept {
  if (!valid(drive)) return false;
  DriveState& s = state();
  if (drive == s.current) return true;
  try {
    std::string target = s.remembered[drive].empty() ? drive_root(drive) : s.remembered[drive];
    if (target.empty()) target.push_back('/');
    std::optional<std::string> here = process_directory();
    if (::chdir(target.c_str()) != 0) return false;
    if (here) s.remembered[s.current].swap(*here);
    s.current = drive;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::optional<std::string> drive_directory(int drive) {
  if (!valid(drive)) return std::nullopt;
  const DriveState& s = state();
  if (drive == s.current) return process_directory();
  if (!s.remembered[drive].empty()) return s.remembered[drive];
  std::string root = drive_root(drive);
  return root.empty() ? std::string("/") : root;
}

std::optional<std::string> to_drive_form(std::string_view real_absolute, int preferred) {
  int chosen = 0;
  std::size_t chosen_length = 0;
  if (valid(preferred) && held_by(real_absolute, drive_root(preferred)) != std::string_view::npos) {
    chosen = preferred;
    chosen_length = drive_root(preferred).size();
  } else {
    // C: first, so that with unmapped drives the result reads as usual; A: and B: last.
    for (int i = 0; i < kDriveCount; ++i) {
      const int d = (i + kDefaultDrive - 1) % kDriveCount + 1;
      const std::string root = drive_root(d);
      const std::size_t n = held_by(real_absolute, root);
      if (n != std::string_view::npos && (chosen == 0 || n > chosen_length)) {
        chosen = d;
        chosen_length = n;
      }
    }
  }
  if (chosen == 0) return std::nullopt;
  std::string out;
  out += static_cast<char>('A' + chosen - 1);
  out += ':';
  std::string_view rest = real_absolute.substr(chosen_length);
  if (rest.empty()) rest = "/";
  for (char c : rest) out += c == '/' ? '\\' : c;
  return out;
}

int drive_of(std::string_view path) noexcept {
  if (path.size() < 2 || path[1] != ':') return 0;
  const unsigned char c = static_cast<unsigned char>(path[0]);
  if (!std::isalpha(c) || c > 127) return 0;
  return std::toupper(c) - 'A' + 1;
}

bool change_directory(std::string_view library_path) noexcept {
  try {
    const int drive = drive_of(library_path);
    std::string real = real_path(library_path, Intent::existing);
    if (real.empty()) return false;
    if (drive == 0 || drive == current_drive()) return ::chdir(real.c_str()) == 0;
    // Another drive: remember the directory there, in absolute form.
    char* absolute = ::realpath(real.c_str(), nullptr);
    if (absolute == nullptr) return false;
    std::string resolved = absolute;
    std::free(absolute);
    if (!is_directory(resolved)) return false;
    state().remembered[drive] = resolved;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace tiv::platform
