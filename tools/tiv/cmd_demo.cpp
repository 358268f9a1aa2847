// tiv demo: a short tour of every family on the sample files. The samples are copied to a
// temporary directory and the tour runs there, so neither the samples nor the user's
// directory change; each step prints the command line it runs and its real output.
#include <CLI/CLI.hpp>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <tivlib/fio.h>
#include <tivlib/zv.h>

#include "commands.h"
#include "safe_change.h"
#include "text.h"

namespace tiv::cli {

namespace fs = std::filesystem;

namespace {

// Where the samples may lie, in this order: --examples, $TIV_EXAMPLES, beside an installed
// tool (<prefix>/share/tivlib/examples), the source tree the tool was built from.
fs::path find_examples(const std::string& given) {
  auto usable = [](const fs::path& dir) {
    std::error_code ec;
    return !dir.empty() && fs::exists(dir / "data" / "wall.env", ec);
  };
  if (!given.empty()) {
    if (!usable(given)) fail(kNotFound, "no samples (data/wall.env) in this directory", given);
    return given;
  }
  std::vector<fs::path> places;
  if (const char* env = std::getenv("TIV_EXAMPLES")) places.emplace_back(env);
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  if (!ec) places.push_back(exe.parent_path() / TIV_EXAMPLES_RELATIVE);
  places.emplace_back(TIV_EXAMPLES_SOURCE);
  for (const auto& p : places)
    if (usable(p)) return fs::weakly_canonical(p, ec);
  fail(kNotFound, "the sample files were not found; give --examples DIR");
}

// A scratch directory that is entered for the tour and removed afterwards.
class Scratch {
 public:
  Scratch() {
    char pattern[] = "/tmp/tiv-demo.XXXXXX";
    if (::mkdtemp(pattern) == nullptr) fail(kIo, "cannot make a temporary directory");
    path_ = pattern;
    old_ = fs::current_path();
    fs::current_path(path_);
  }
  ~Scratch() {
    std::error_code ec;
    fs::current_path(old_, ec);
    fs::remove_all(path_, ec);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_, old_;
};

std::string quoted(const std::string& arg) {
  if (!arg.empty() && arg.find_first_of(" \t\"'*?<>|&;()$\\") == std::string::npos) return arg;
  std::string q = "\"";
  for (char c : arg) {
    if (c == '"' || c == '\\' || c == '$') q.push_back('\\');
    q.push_back(c);
  }
  return q + '"';
}

// Runs the steps of the tour and counts those that did not end as expected.
class Tour {
 public:
  Tour(Session& nested) : s_(nested) {}

  void heading(const std::string& title) { s_.ctx.out << "\n== " << title << "\n"; }

  void run(const std::vector<std::string>& args, int expected = kDone) {
    std::string line = "$ tiv";
    for (const auto& a : args) line += " " + quoted(a);
    s_.ctx.out << line << '\n';
    s_.ctx.out.flush();
    int code = run_command_line(args, s_);
    s_.ctx.out.flush();
    if (code != kDone) s_.ctx.out << "(exit code " << code << ")\n";
    if (code != expected) ++unexpected_;
  }

  void show_file(const std::string& name) {
    std::string error;
    auto text = read_file(name, error);
    s_.ctx.out << "$ cat " << name << '\n' << (text ? *text : "(cannot read: " + error + ")\n");
    if (text && !text->empty() && text->back() != '\n') s_.ctx.out << '\n';
  }

  int unexpected() const { return unexpected_; }

 private:
  Session& s_;
  int unexpected_ = 0;
};

// A small binary file written through the library: header, then three doubles.
void write_results(const std::string& name) {
  fio_handle* h = fio_open(nullptr, name.c_str(), FIO_WRITE | FIO_HEADER);
  if (h == nullptr) fail(kIo, "cannot write", name);
  for (double v : {2.75, 12.4, 0.24}) fio_putdouble(h, v);
  fio_close(h);
}

void run_demo(Session& s, const std::string& given) {
  fs::path examples = find_examples(given);
  Scratch scratch;
  for (const auto& entry : fs::directory_iterator(examples / "data")) fs::copy(entry.path(), scratch.path());
  bool catalog = fs::exists(examples / "catalog");
  if (catalog) {
    fs::copy(examples / "catalog", scratch.path() / "catalog");
    replace_file_safely("zv2.ini", "[System]\nProfile=catalog\n");
  }

  // The tour has its own log watch: the library's reports land in the scratch directory, and
  // go back to the run's own place when the tour ends.
  ErrLog log(scratch.path() / "zv.err");
  struct LogPlace {
    explicit LogPlace(const fs::path& tour, const fs::path& run) : run_(run) { zv_set_log_file(tour.c_str()); }
    ~LogPlace() { zv_set_log_file(run_.c_str()); }
    fs::path run_;
  } place(log.path(), s.log.path());
  // Messages of the steps go to standard output too, so the tour reads as one transcript.
  Context ctx{s.ctx.out, s.ctx.out};
  Session nested{ctx, log};
  Tour tour(nested);
  s.ctx.out << "Tivlib tour: each family of the library at work on a copy of the sample files\n"
            << "(examples/data and examples/catalog) in a scratch directory.\n";

  tour.heading("Environment files: a tree of sections, blocks and values (tiv env)");
  tour.run({"env", "get", "wall.env", "Wall", "height", "--double"});
  tour.run({"env", "get", "wall.env", "Wall", "layer@2@name"});
  tour.run({"env", "get", "wall.env", "Wall", "openings", "--list", "--long"});
  tour.run({"env", "get", "wall.env", "Wall", "--names"});
  tour.run({"env", "dump", "wall.env"});
  tour.run({"env", "set", "wall.env", "Wall", "layer@2@thickness", "0.3"});
  tour.run({"env", "merge", "wall.env", "defaults.env", "--mode", "add"});
  tour.show_file("wall.env");
  tour.run({"env", "check", "wall.env", "broken.env"}, kBadFormat);

  tour.heading("Settings files: [section] and entry=value (tiv ini)");
  tour.run({"ini", "list", "project.ini"});
  tour.run({"ini", "get", "project.ini", "Grid", "spacing", "--list"});
  tour.run({"ini", "set", "project.ini", "Project", "storeys", "5", "--long"});
  tour.run({"ini", "rename", "project.ini", "Units", "force", "load"});
  tour.show_file("project.ini");

  tour.heading("Calculator: expressions with angles in degrees (tiv calc)");
  tour.run({"calc", "1+2*3", "2^3^2", "sin(30) + cos(60)", "MAX(3, 7.5, 2) > 5 ? 1 : 0"});
  tour.run({"calc", "--decimals", "3", "PI * 0.3^2 / 4"});
  tour.run({"calc", "SQRT(2) * (4 / (1 - 1))"}, kBadFormat);

  tour.heading("Scanner: the token stream of a file (tiv scan)");
  tour.run({"scan", "loads.txt", "--flags", "line-comment,relations", "--keywords", "IF,THEN"});

  tour.heading("Binary files: header and byte order (tiv fio)");
  write_results("results.bin");
  s.ctx.out << "(results.bin was just written through fio_open with FIO_WRITE | FIO_HEADER)\n";
  tour.run({"fio", "header", "results.bin"});
  tour.run({"fio", "header", "motorola.bin"});

  if (catalog) {
    tour.heading("Section catalogue: tables of steel sections (tiv profil)");
    s.ctx.out << "(zv2.ini here says [System] Profile=catalog)\n";
    tour.run({"profil", "list"});
    tour.run({"profil", "get", "HEB 150", "--items", "h,b,A,Iy"});
    tour.run({"profil", "search", "", "--where", "Iy>=800", "--where", "Iy<=1000", "--items", "h,b,Iy"});
    tour.run({"profil", "next", "IPE", "IPE 200", "--limit", "3", "--items", "h,b,Iy"});
    tour.run({"profil", "prev", "IPE", "--limit", "2", "--items", "h,Iy"});
  }

  tour.heading("The library's log");
  if (log.written()) {
    s.ctx.out << "The library wrote its reports of this tour to zv.err:\n";
    tour.show_file("zv.err");
  } else {
    s.ctx.out << "The library reported nothing, so there is no zv.err.\n";
  }
  if (tour.unexpected() > 0)
    fail(kBadFormat, std::to_string(tour.unexpected()) + " step(s) of the tour did not end as expected");
  s.ctx.out << "\nThe tour is over; the sample files are unchanged.\n";
}

}  // namespace

void add_demo_command(CLI::App& app, Session& s) {
  auto examples = std::make_shared<std::string>();
  CLI::App* demo = app.add_subcommand("demo", "A short tour of every family on the sample files");
  demo->add_option("--examples", *examples, "Directory of the samples (default: the installed ones)")->option_text("DIR");
  demo->footer("Example:\n  tiv demo");
  demo->callback([&s, examples] { run_demo(s, *examples); });
}

}  // namespace tiv::cli
