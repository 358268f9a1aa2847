// tiv: the Tivlib command line.
#include <tivlib/zv.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "commands.h"
#include "scratch.h"

namespace {

using namespace tiv::cli;

// Runs the command line with the library's log in the run's private directory: a user's
// zv.err is never created, emptied or overwritten. A failed command shows the log.
int run(int argc, char** argv, Context& ctx) {
  const std::filesystem::path log_path = scratch_directory() / "zv.err";
  zv_set_log_file(log_path.c_str());
  ErrLog log(log_path);
  Session session{ctx, log};
  std::vector<std::string> args(argv + 1, argv + argc);
  const int code = run_command_line(args, session);
  zv_set_log_file(nullptr);
  log.finish(ctx, code);
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away (tiv ... | head) makes writes fail instead of ending the process,
  // so that the demo still removes its scratch directory; the exit code then tells of it.
  std::signal(SIGPIPE, SIG_IGN);
  Context ctx{std::cout, std::cerr};
  int code = kIo;
  try {
    code = run(argc, argv, ctx);
  } catch (const Failure& f) {
    ctx.report(f);
    code = f.code;
  } catch (const std::bad_alloc&) {
    std::cerr << "tiv: out of memory\n";
  } catch (const std::exception& e) {
    std::cerr << "tiv: " << e.what() << '\n';
  } catch (...) {
    std::cerr << "tiv: unexpected failure\n";
  }
  remove_scratch_directory();
  std::cout.flush();
  if (!std::cout && code == kDone) return kIo;  // standard output could not be written
  return code;
}
