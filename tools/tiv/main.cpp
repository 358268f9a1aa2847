// tiv: the Tivlib command line.
#include <csignal>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "commands.h"

int main(int argc, char** argv) {
  using namespace tiv::cli;
  // A reader that goes away (tiv ... | head) makes writes fail instead of ending the process,
  // so that the demo still removes its scratch directory; the exit code then tells of it.
  std::signal(SIGPIPE, SIG_IGN);
  Context ctx{std::cout, std::cerr};
  std::error_code ec;
  std::filesystem::path cwd = std::filesystem::current_path(ec);
  ErrLog log(ec ? std::filesystem::path("zv.err") : cwd / "zv.err");
  Session session{ctx, log};
  std::vector<std::string> args(argv + 1, argv + argc);
  int code = run_command_line(args, session);
  std::cout.flush();
  log.finish(ctx);
  if (!std::cout) return kIo;  // standard output could not be written (a full disk, a closed pipe)
  return code;
}
