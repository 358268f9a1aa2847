// The run's private directory (mode 0700, under TMPDIR or /tmp): the library's log and the
// copies of standard input live there, and it goes when the run ends.
#pragma once

#include <filesystem>

namespace tiv::cli {

// Made at the first call; throws Failure (kIo) if it can't be made.
const std::filesystem::path& scratch_directory();

// Removes the directory and everything in it, if it was made. Also run at normal exit.
void remove_scratch_directory() noexcept;

}  // namespace tiv::cli
