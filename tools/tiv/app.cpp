// The command line driver: builds the subcommand tree, parses, runs, and turns every way a
// command can end into an exit code and a message.
#include <CLI/CLI.hpp>

#include <new>
#include <ostream>
#include <tivlib/version.h>

#include "commands.h"
#include "encoding.h"

namespace tiv::cli {

namespace {

constexpr const char* kOverview =
    "tiv - read, check and change Tivlib data files from the command line.";

constexpr const char* kFooter =
    "Exit codes: 0 done, 1 not found, 2 usage, 3 bad format, 4 I/O error.\n"
    "Messages go to standard error as \"tiv: FILE:LINE: message\". What the library reports\n"
    "goes to a private log of the run, shown on standard error when a command fails; a zv.err\n"
    "in the working directory is never touched.\n"
    "Files may hold CR LF line ends and Windows-1252 bytes (see --encoding); - is standard input.\n"
    "Run 'tiv COMMAND --help' for the options and an example of each command.";

std::string version_text() {
  return std::string("tiv ") + tivlib_version();
}

// The chain of selected subcommands, outermost first, without the root.
std::vector<CLI::App*> selected_chain(CLI::App& app) {
  std::vector<CLI::App*> chain;
  CLI::App* at = &app;
  for (;;) {
    auto subs = at->get_subcommands();
    if (subs.empty()) break;
    at = subs.front();
    chain.push_back(at);
  }
  return chain;
}

std::string command_path(CLI::App& app) {
  std::string path = "tiv";
  for (CLI::App* sub : selected_chain(app)) path += " " + sub->get_name();
  return path;
}

void build(CLI::App& app, Session& session) {
  app.description(kOverview);
  app.footer(kFooter);
  app.set_help_flag("-h,--help", "Show this help and exit");
  app.get_formatter()->column_width(30);
  app.add_flag_callback(
      "--version", [] { throw CLI::CallForVersion(version_text(), 0); },
      "Show the version and exit");
  app.add_option_function<std::string>(
         "--encoding",
         [](const std::string& name) { set_file_encoding(*parse_encoding(name)); },
         "Code page of the files: cp1252 (default), cp437, latin1 or utf-8. JSON output is\n"
         "UTF-8; values given for a change are written in this code page")
      ->check(CLI::IsMember(std::vector<std::string>(std::begin(kEncodingNames), std::end(kEncodingNames))))
      ->option_text("NAME");
  add_env_commands(app, session);
  add_ini_commands(app, session);
  add_calc_command(app, session);
  add_scan_command(app, session);
  add_fio_commands(app, session);
  add_profil_commands(app, session);
  add_demo_command(app, session);
}

}  // namespace

int run_command_line(const std::vector<std::string>& args, Session& session) {
  Context& ctx = session.ctx;
  ctx.exit_code = kDone;
  set_file_encoding(Encoding::cp1252);
  CLI::App app{kOverview, "tiv"};
  try {
    build(app, session);
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    app.parse(reversed);
    // A family named without a subcommand, or nothing at all: show what there is.
    std::vector<CLI::App*> chain = selected_chain(app);
    CLI::App* last = chain.empty() ? &app : chain.back();
    if (!last->get_subcommands({}).empty()) {
      std::string prefix = "tiv";
      for (std::size_t i = 0; i + 1 < chain.size(); ++i) prefix += " " + chain[i]->get_name();
      ctx.err << (chain.empty() ? app.help() : last->help(prefix));
      return kUsage;
    }
    return ctx.exit_code;
  } catch (const CLI::CallForHelp&) {
    ctx.out << app.help();
    return kDone;
  } catch (const CLI::CallForAllHelp&) {
    ctx.out << app.help("", CLI::AppFormatMode::All);
    return kDone;
  } catch (const CLI::CallForVersion& e) {
    ctx.out << e.what() << '\n';
    return kDone;
  } catch (const CLI::ParseError& e) {
    std::string path = command_path(app);
    ctx.err << "tiv: " << e.what() << "\nRun '" << path << " --help' for usage.\n";
    return kUsage;
  } catch (const Failure& f) {
    ctx.report(f);
    return std::max(ctx.exit_code, f.code);
  } catch (const std::bad_alloc&) {
    ctx.report(Failure{kIo, "out of memory"});
    return kIo;
  } catch (const std::exception& e) {
    ctx.report(Failure{kIo, e.what()});
    return kIo;
  }
}

}  // namespace tiv::cli
