// The families of subcommands. Each add_* function registers its subcommands on the root
// application; their callbacks print results to ctx.out and throw Failure on errors.
#pragma once

#include <string>
#include <vector>

#include "context.h"
#include "errlog.h"

namespace CLI {
class App;
}

namespace tiv::cli {

// What a subcommand may use while it runs.
struct Session {
  Context& ctx;
  ErrLog& log;  // zv.err of the working directory
};

void add_env_commands(CLI::App& app, Session& session);
void add_ini_commands(CLI::App& app, Session& session);
void add_calc_command(CLI::App& app, Session& session);
void add_scan_command(CLI::App& app, Session& session);
void add_fio_commands(CLI::App& app, Session& session);
void add_profil_commands(CLI::App& app, Session& session);
void add_demo_command(CLI::App& app, Session& session);

// Runs one command line (without the program name) and gives its exit code. Failures and
// usage errors are printed to ctx.err.
int run_command_line(const std::vector<std::string>& args, Session& session);

// Help text of the --json flag, the same on every subcommand that has one.
inline constexpr const char* kJsonHelp = "Print the result as JSON";

}  // namespace tiv::cli
