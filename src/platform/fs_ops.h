// Operations on whole files and directories, by library path.
#pragma once

#include <string>
#include <string_view>

namespace tiv::platform {

bool path_exists(std::string_view library_path) noexcept;      // files and directories
bool path_is_writable(std::string_view library_path) noexcept;  // owner may write
bool remove_file(std::string_view library_path) noexcept;
bool rename_file(std::string_view from, std::string_view to) noexcept;
bool make_directory(std::string_view library_path) noexcept;
bool remove_directory(std::string_view library_path) noexcept;
bool is_directory(std::string_view library_path) noexcept;

// A fresh name for a temporary file, in drive form ("C:\tmp\tiv1a2b3c4d"): lower case, no
// file of that name exists. The directory is $TMPDIR, else /tmp, else the current directory
// when no drive reaches the temporary directory. "" on failure.
std::string temporary_name() noexcept;

// The process working directory in drive form, through the current drive.
std::string working_directory_drive_form(int drive) noexcept;

}  // namespace tiv::platform
