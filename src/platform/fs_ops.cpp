// Whole-file and directory operations on resolved names.
#include "platform/fs_ops.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "platform/drives.h"
#include "platform/files.h"

namespace tiv::platform {
namespace {

// Resolves and runs `op` on the real name; false on an empty path or no memory.
template <typename Op>
bool on_real(std::string_view path, Intent intent, Op op) noexcept {
  if (path.empty()) return false;
  try {
    const std::string real = real_path(path, intent);
    return !real.empty() && op(real.c_str());
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool stat_of(std::string_view path, struct stat& st) noexcept {
  return on_real(path, Intent::existing, [&](const char* p) { return ::stat(p, &st) == 0; });
}

}  // namespace

bool path_exists(std::string_view path) noexcept {
  struct stat st {};
  return stat_of(path, st);
}

bool path_is_writable(std::string_view path) noexcept {
  struct stat st {};
  return stat_of(path, st) && (st.st_mode & S_IWUSR) != 0;
}

bool is_directory(std::string_view path) noexcept {
  struct stat st {};
  return stat_of(path, st) && S_ISDIR(st.st_mode);
}

bool remove_file(std::string_view path) noexcept {
  return on_real(path, Intent::existing, [](const char* p) { return ::unlink(p) == 0; });
}

bool rename_file(std::string_view from, std::string_view to) noexcept {
  if (from.empty() || to.empty()) return false;
  try {
    const std::string a = real_path(from, Intent::existing);
    const std::string b = real_path(to, Intent::create);
    return std::rename(a.c_str(), b.c_str()) == 0;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool make_directory(std::string_view path) noexcept {
  return on_real(path, Intent::create, [](const char* p) { return ::mkdir(p, 0777) == 0; });
}

bool remove_directory(std::string_view path) noexcept {
  return on_real(path, Intent::existing, [](const char* p) { return ::rmdir(p) == 0; });
}

std::string temporary_name() noexcept {
  static std::atomic<unsigned> counter{0};
  try {
    const char* env = std::getenv("TMPDIR");
    std::string directory = env && *env == '/' ? env : "/tmp";
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    std::optional<std::string> form = to_drive_form(directory, current_drive());
    if (!form || form->size() > 200) {
      form = to_drive_form("/tmp", current_drive());
      if (!form) form = working_directory_drive_form(current_drive());
    }
    if (form->empty()) return {};
    if (form->back() != '\\') *form += '\\';
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    for (int attempt = 0; attempt < 1000; ++attempt) {
      // A mix of process, time and a counter; lower-case hex, so that the name survives
      // the lower-casing of path composition.
      std::uint32_t h = static_cast<std::uint32_t>(::getpid()) * 2654435761u;
      h ^= static_cast<std::uint32_t>(now.tv_nsec) + 0x9e3779b9u + (h << 6) + (h >> 2);
      h ^= (counter.fetch_add(1) + 1u) * 0x85ebca6bu;
      char name[16];
      std::snprintf(name, sizeof name, "tiv%08x", h);
      std::string candidate = *form + name;
      if (!path_exists(candidate)) return candidate;
    }
    return {};
  } catch (const std::bad_alloc&) {
    return {};
  }
}

std::string working_directory_drive_form(int drive) noexcept {
  try {
    const std::optional<std::string> real = drive_directory(drive);
    if (!real) return {};
    return to_drive_form(*real, drive).value_or(std::string());
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace tiv::platform
