// Drives on Linux: letters that map to directories, a current drive, and a working directory
// per drive.
//
// Drive n (1 = A: ... 26 = Z:) maps to the directory named by the environment variable
// TIVLIB_DRIVE_<letter> (for example TIVLIB_DRIVE_D=/srv/data), read at each use; without it
// the drive maps to "/". The current drive starts as C:. Its working directory is the
// process working directory; every other drive remembers its own (its root until changed).
// Making a drive current enters its working directory.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tiv::platform {

inline constexpr int kDriveCount = 26;
inline constexpr int kDefaultDrive = 3;  // C:

// The directory drive n maps to, without a trailing '/' ("" for the file system root).
std::string drive_root(int drive);

// The current drive, 1 to 26.
int current_drive() noexcept;

// Makes drive n current by entering its working directory. False (nothing changed) for a
// number outside 1..26 or a working directory that cannot be entered.
bool set_current_drive(int drive) noexcept;

// The real (Linux) working directory of drive n; nullopt on failure.
std::optional<std::string> drive_directory(int drive);

// A real absolute Linux path in drive form ("C:\home\user"), through the drive whose root
// holds it: drive `preferred` if it does, otherwise the drive with the longest such root.
// nullopt when no drive's root holds the path.
std::optional<std::string> to_drive_form(std::string_view real_absolute, int preferred);

// Enters a directory given as a library path. A path on another drive than the current one
// only changes that drive's remembered directory, as the file system the library came from
// did. False when the directory does not exist.
bool change_directory(std::string_view library_path) noexcept;

// The drive number of "x:..." (1..26), or 0 when the path names no drive.
int drive_of(std::string_view path) noexcept;

}  // namespace tiv::platform
