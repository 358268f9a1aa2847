// The file arguments of the subcommands. A file argument names a regular file (links
// followed): a directory, device, FIFO or socket is refused with kIo before anything is read or
// written. A file that doesn't exist is left to the command (some create it).
#pragma once

#include <CLI/CLI.hpp>

namespace tiv::cli {

// For a file a command reads: "-" is standard input, copied whole into the run's private
// directory, whose copy then stands for the argument.
CLI::Validator input_file();

// For a file a command changes (or creates).
CLI::Validator changed_file();

}  // namespace tiv::cli
